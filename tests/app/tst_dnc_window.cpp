// The main window: start-up states by control type, the command frame, setup's effect,
// help and closing during an operation.

#include "dnc_window.h"
#include "fake_link.h"
#include "setup_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

QString ini(const QString &cnc, const QString &port = QStringLiteral("COM1:"))
{
    return QStringLiteral("[Default]\nPort=%1\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=%2\n"
                          "Wait-Xon=0\nSpace=0\n")
        .arg(port, cnc);
}

// A window over fakes, with its own settings file.
struct Rig {
    QTemporaryDir dir;
    FakeLink f;
    std::unique_ptr<DncWindow> w;

    explicit Rig(const QString &iniText, const QString &commandLine = QString())
    {
        f.g.IniPath = dir.filePath(QStringLiteral("dnc.ini"));
        if (!iniText.isNull()) {
            QFile file(f.g.IniPath);
            file.open(QIODevice::WriteOnly);
            file.write(iniText.toUtf8());
        }
        w = std::make_unique<DncWindow>(f.g, f.comm, f.timer, f.yield, commandLine);
        w->show();
    }

    // "01237" style string of the enabled Command1 indices, with Q for Command2.
    QString enabled() const
    {
        QString s;
        for (int i = 0; i < 8; ++i)
            if (w->Command1[i]->isEnabled())
                s += QString::number(i);
        if (w->Command2->isEnabled())
            s += QLatin1Char('Q');
        return s;
    }
};

// Runs `act` on the modal dialog that the window opens next.
void onModal(std::function<void(QWidget *)> act)
{
    QTimer::singleShot(0, [act] {
        QWidget *modal = QApplication::activeModalWidget();
        QVERIFY(modal);
        act(modal);
    });
}

} // namespace

class TestDncWindow : public QObject {
    Q_OBJECT
private slots:
    void startUpByControlType_data();
    void startUpByControlType();
    void captionsFollowTheLanguage_data();
    void captionsFollowTheLanguage();
    void noSettingsFile();
    void frameDisablesAndHidesThenGivesBack();
    void setupChangesCaptionAndButtonsButNotInterval();
    void helpDuringAnOperationLeavesTheFrameAlone();
    void helpWhileIdleHidesTheTextAreas();
    void closingDuringAnOperationEndsItThenTheWindow();
};

void TestDncWindow::startUpByControlType_data()
{
    QTest::addColumn<QString>("cnc");
    QTest::addColumn<QString>("enabled");
    QTest::addColumn<int>("interval");
    QTest::newRow("303") << "303" << "0123457Q" << 5000;
    QTest::newRow("504") << "504" << "012367Q" << 2000;
    QTest::newRow("XonXoff") << "XonXoff" << "0127Q" << 50000;
    QTest::newRow("unknown type") << "xonxoff" << "0127Q" << 10000;
}

void TestDncWindow::startUpByControlType()
{
    QFETCH(QString, cnc);
    QFETCH(QString, enabled);
    QFETCH(int, interval);
    Rig r(ini(cnc));
    QCOMPARE(r.enabled(), enabled);
    QCOMPARE(r.f.timer.interval(), interval);
    QVERIFY(!r.f.timer.enabled());
    QCOMPARE(r.w->windowTitle(), QStringLiteral("DNC VELDA - V2.6.0 - COM1:9600,E,7,2"));
    QVERIFY(!r.w->Text1->isVisible());
    QVERIFY(!r.w->List1->isVisible());
    QVERIFY(!r.w->Label1->isVisible());
    QCOMPARE(r.f.g.PromptSeq, QByteArray("\x10\x37"));
    QCOMPARE(r.f.g.CR, QByteArray("\r"));
    QCOMPARE(r.f.comm.opens, 0); // the port is not touched at start-up
}

void TestDncWindow::captionsFollowTheLanguage_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("captions"); // Command1(0..7), then Command2
    QTest::newRow("English") << "" << QStringList{"S&etup", "&Send", "&Reveive", "&Map Context",
                                                  "CC", "CE", "DC", "Help", "&Quit"};
    QTest::newRow("French") << "-c 033"
                            << QStringList{"&Configuration", "&Envoi", "&Reception",
                                           "&MC Contenu CN", "Change prg.", "Change exe.",
                                           "Effacer", "Aide", "&Quitter"};
    QTest::newRow("German") << "-c 049"
                            << QStringList{"E&instellungen", "&Senden", "&Empfangen",
                                           "&MC Inhalt CNC", "Prg.Wahl", "Produktion",
                                           QString::fromUtf8("Löschen"), "Hilfe", "&Beenden"};
    QTest::newRow("English 039") << "-c 039"
                                 << QStringList{"&Setup", "&Send", "&Receive", "&Map Context",
                                                "CC", "CE", "DC", "Help", "&Quit"};
}

void TestDncWindow::captionsFollowTheLanguage()
{
    QFETCH(QString, line);
    QFETCH(QStringList, captions);
    Rig r(ini(QStringLiteral("303")), line);
    for (int i = 0; i < 8; ++i)
        QCOMPARE(r.w->Command1[i]->text(), captions[i]);
    QCOMPARE(r.w->Command2->text(), captions[8]);
}

void TestDncWindow::noSettingsFile()
{
    Rig r{QString()};
    QCOMPARE(r.enabled(), QStringLiteral("0127Q"));
    QCOMPARE(r.w->windowTitle(), QStringLiteral("DNC VELDA - V2.6.0 - "));
    QCOMPARE(r.f.timer.interval(), 10000);
}

void TestDncWindow::frameDisablesAndHidesThenGivesBack()
{
    Rig r(ini(QStringLiteral("504")));
    r.w->Text1->show();
    r.w->List1->show();
    QString during;
    bool text1Shown = true, list1Shown = true;
    // Map on a silent control: look at the window in the first pass of its wait, then let
    // the clock run out.
    r.f.yield.then([&] {
        during = r.enabled();
        text1Shown = r.w->Text1->isVisible();
        list1Shown = r.w->List1->isVisible();
    });
    r.f.yield.then([&] { r.f.timer.fire(); });
    QTest::mouseClick(r.w->Command1[3], Qt::LeftButton);
    QCOMPARE(during, QStringLiteral("7"));
    QVERIFY(!text1Shown);
    QVERIFY(!list1Shown);
    QCOMPARE(r.enabled(), QStringLiteral("012367Q"));
    QVERIFY(!r.w->busy());
}

void TestDncWindow::setupChangesCaptionAndButtonsButNotInterval()
{
    Rig r(ini(QStringLiteral("303")));
    onModal([](QWidget *modal) {
        auto *setup = qobject_cast<SetupDialog *>(modal);
        QVERIFY(setup);
        setup->Combo[0]->setCurrentText(QStringLiteral("COM3:"));
        setup->Combo[5]->setCurrentText(QStringLiteral("504"));
        QTest::mouseClick(setup->Command1, Qt::LeftButton);
    });
    QTest::mouseClick(r.w->Command1[0], Qt::LeftButton);
    QCOMPARE(r.w->windowTitle(), QStringLiteral("DNC VELDA - V2.6.0 - COM3:9600,E,7,2"));
    QCOMPARE(r.f.g.CncType, qint16(2));
    // Map stays, CC and CE go, DC comes.
    QVERIFY(r.w->Command1[3]->isEnabled());
    QVERIFY(r.w->Command1[6]->isEnabled());
    QCOMPARE(r.f.timer.interval(), 5000);
}

void TestDncWindow::helpDuringAnOperationLeavesTheFrameAlone()
{
    Rig r(ini(QStringLiteral("303")));
    QString afterHelp;
    r.f.yield.then([&] {
        QTest::mouseClick(r.w->Command1[7], Qt::LeftButton);
        afterHelp = r.enabled();
    });
    r.f.yield.then([&] { r.f.timer.fire(); });
    QTest::mouseClick(r.w->Command1[3], Qt::LeftButton);
    QCOMPARE(afterHelp, QStringLiteral("7"));
    bool helpShown = false;
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (auto *box = qobject_cast<QMessageBox *>(top); box && box->isVisible()) {
            helpShown = box->text().startsWith(QStringLiteral("Command line option :"));
            box->close();
        }
    }
    QVERIFY(helpShown);
    QCOMPARE(r.enabled(), QStringLiteral("0123457Q"));
}

void TestDncWindow::helpWhileIdleHidesTheTextAreas()
{
    Rig r(ini(QStringLiteral("303")));
    r.w->Text1->show();
    r.w->List1->show();
    QString text;
    onModal([&](QWidget *modal) {
        auto *box = qobject_cast<QMessageBox *>(modal);
        QVERIFY(box);
        text = box->text();
        box->accept();
    });
    QTest::mouseClick(r.w->Command1[7], Qt::LeftButton);
    QVERIFY(text.startsWith(QStringLiteral("Command line option :\n\r")));
    QVERIFY(!r.w->Text1->isVisible());
    QVERIFY(!r.w->List1->isVisible());
    QCOMPARE(r.enabled(), QStringLiteral("0123457Q"));
}

void TestDncWindow::closingDuringAnOperationEndsItThenTheWindow()
{
    Rig r(ini(QStringLiteral("303")));
    bool stillShownAfterClose = false;
    r.f.yield.then([&] {
        r.w->close();
        stillShownAfterClose = r.w->isVisible();
    });
    QTest::mouseClick(r.w->Command1[3], Qt::LeftButton);
    QVERIFY(stillShownAfterClose); // the operation ends first
    QVERIFY(r.f.g.Closing);
    QVERIFY(!r.f.comm.open);
    QCOMPARE(r.f.comm.closes, 1);
    QVERIFY(!r.w->isVisible());
    QCOMPARE(QApplication::overrideCursor(), nullptr);
}

QTEST_MAIN(TestDncWindow)
#include "tst_dnc_window.moc"
