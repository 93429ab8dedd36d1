// Takes one picture of the program as an operator sees it: the window as it starts, the setup
// dialog, or the window during a send. The window, the port and the clock are the program's
// own; only the operator's hand is played here.
//
//   screenshot OUT.png window  [-- dnc options]
//   screenshot OUT.png setup   [-- dnc options]
//   screenshot OUT.png send NAME PERCENT -- -b [dnc options]
//
// "send" answers the quick choice (-b) with NAME and takes the picture once the running text
// shows PERCENT or more; the send is then ended as closing the window ends it.

#include "command_line.h"
#include "dnc_window.h"
#include "profile.h"
#include "real_link_parts.h"
#include "serial_devices.h"
#include "setup_dialog.h"

#include <QApplication>
#include <QIcon>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <cstdio>

namespace {

constexpr int GiveUpMs = 60000;
constexpr int PollMs = 20;
// Time to be shown and painted before being touched or taken: the window, the setup dialog.
constexpr int WindowShownMs = 500;
constexpr int DialogShownMs = 300;
int failed = 0; // the exit status once the window has closed

int usage() {
    std::fputs("usage: screenshot OUT.png window|setup|send NAME PERCENT [-- dnc options]\n",
               stderr);
    return 2;
}

// Runs `step` every PollMs until it returns true.
void poll(QObject *owner, std::function<bool()> step) {
    auto *t = new QTimer(owner);
    QObject::connect(t, &QTimer::timeout, owner, [t, step] {
        if (step()) {
            t->stop();
            t->deleteLater();
        }
    });
    t->start(PollMs);
}

void save(QWidget *w, const QString &out) {
    if (w->grab().save(out))
        return;
    std::fprintf(stderr, "screenshot: cannot write %s\n", qPrintable(out));
    failed = 1;
}

} // namespace

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    app.setWindowIcon(QIcon(QStringLiteral(":/dnc/dnc.png")));
    QStringList args = app.arguments().mid(1);
    const qsizetype dashes = args.indexOf(QStringLiteral("--"));
    const QStringList dncArgs = dashes < 0 ? QStringList() : args.mid(dashes + 1);
    if (dashes >= 0)
        args = args.first(dashes);
    if (args.size() < 2)
        return usage();
    const QString out = args[0];
    const QString mode = args[1];
    if (!(mode == QLatin1String("window") && args.size() == 2) &&
        !(mode == QLatin1String("setup") && args.size() == 2) &&
        !(mode == QLatin1String("send") && args.size() == 4))
        return usage();

    Globals g;
    g.iniPath = defaultIniPath();
    OperationState state;
    RealLinkParts parts(g, state);
    DncWindow window(g, state, parts.comm, parts.timer, parts.yield, commandLineFromArgs(dncArgs));
    window.setSerialDeviceScan([] { return presentSerialDevices(); });
    window.show();

    QTimer::singleShot(GiveUpMs, &app, [] {
        std::fputs("screenshot: gave up waiting\n", stderr);
        QCoreApplication::exit(1);
    });

    QTimer::singleShot(WindowShownMs, &window, [&] {
        if (mode == QLatin1String("window")) {
            save(&window, out);
            window.close();
            return;
        }
        if (mode == QLatin1String("setup")) {
            poll(&window, [&] {
                auto *setup = qobject_cast<SetupDialog *>(QApplication::activeModalWidget());
                if (!setup || !setup->isVisible())
                    return false;
                QTimer::singleShot(DialogShownMs, setup, [&, setup] {
                    save(setup, out);
                    setup->reject();
                });
                return true;
            });
            window.Command1[0]->click();
            window.close();
            return;
        }
        const QString name = args[2];
        const int percent = args[3].toInt();
        poll(&window, [&, name] {
            auto *box = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
            if (!box)
                return false;
            box->setTextValue(name);
            box->accept();
            return true;
        });
        poll(&window, [&, percent] {
            static const QRegularExpression shown(QStringLiteral("(\\d+)%$"));
            const auto m = shown.match(window.Label1->text());
            if (!window.Label1->isVisible() || !m.hasMatch() || m.captured(1).toInt() < percent)
                return false;
            save(&window, out);
            window.close(); // ends the send at its next pass, then the window
            return true;
        });
        window.Command1[1]->click();
        if (window.isVisible()) {
            std::fputs("screenshot: the send ended before the picture was taken\n", stderr);
            failed = 1;
            window.close();
        }
    });
    const int status = app.exec();
    return status != 0 ? status : failed;
}
