// Loaded into an installed program with LD_PRELOAD: when the program quits, the texts of its
// buttons and labels go to the file named by DNC_TEXT_PROBE, one a line, so that a shell test
// can read what the operator saw without a screen.

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QWidget>

namespace {

void writeTexts() {
    QFile out(qEnvironmentVariable("DNC_TEXT_PROBE"));
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    for (QWidget *top : QApplication::topLevelWidgets()) {
        out.write(("window: " + top->windowTitle() + '\n').toUtf8());
        for (const QAbstractButton *b : top->findChildren<QAbstractButton *>())
            out.write(("button: " + b->text() + '\n').toUtf8());
        for (const QLabel *l : top->findChildren<QLabel *>())
            out.write(("label: " + l->text() + '\n').toUtf8());
    }
}

void hookQuit() {
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, writeTexts);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(hookQuit)
