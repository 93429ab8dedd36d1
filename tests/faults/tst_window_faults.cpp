// Faults through the whole window: the real port on a pseudo-terminal against the virtual
// control, the real clock (run faster) and event loop, the operator's boxes and file dialogs
// answered as they open. After each, the buttons of the control type are back (or the window
// has closed when that was asked), the pointer is back, the counter hidden, the port closed.

#include "dnc_window.h"
#include "event_loop_yield.h"
#include "fault_support.h"
#include "modal_catcher.h"
#include "qt_link_timer.h"
#include "serial_comm.h"
#include "vcontrol_process.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>

using B = QByteArray;

class TestWindowFaults : public QObject {
    Q_OBJECT
private slots:
    void command_data();
    void command();
};

void TestWindowFaults::command_data() {
    QTest::addColumn<int>("button");
    QTest::addColumn<QStringList>("control");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<B>("saved");      // the received program's file; none if empty
    QTest::addColumn<QString>("told"); // words of the one box; none if empty
    QTest::addColumn<bool>("closed");  // the window has closed
    const QStringList c303{"--type", "303"};
    row("send: far end closed mid-send", 1, c303 + QStringList{"--crash-after-line", "3"}, "", B(),
        "unplugged", false);
    row("send: control silent", 1, c303 + QStringList{"--silent"}, "", B(),
        "Timeout - No answer from CNC", false);
    row("receive: USB adapter pulled mid-program", 2, c303 + QStringList{"--silent-from-line", "3"},
        "pull at SILENT", B("L1\r\nL2\r\n\r\n"), "unplugged", false);
    row("receive: window closed in the reception wait", 2,
        c303 + QStringList{"--stall-mid-line", "2"}, "close at STALLED", B("L1\r\nL\r\n"), "",
        true);
    row("map: window closed in the listing wait", 3, c303 + QStringList{"--silent"}, "close at 0",
        B(), "", true);
}

void TestWindowFaults::command() {
    QTemporaryDir dir;
    const QString program = dir.filePath(QStringLiteral("P.tap"));
    const QString savePath = dir.filePath(QStringLiteral("GOT.tap"));
    {
        QFile f(dir.filePath(QStringLiteral("P.NC")));
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(numberedLines(5)) > 0);
        f.close();
        QVERIFY(QFile::copy(f.fileName(), program));
    }
    QFETCH(QStringList, control);
    const QString link = dir.filePath(QStringLiteral("ttyUSB0"));
    VControlProcess vc;
    QVERIFY2(vc.start(control +
                      QStringList{"--dir", dir.path(), "--link", link, "--pc-program", "P.NC"}),
             qPrintable(vc.errorString()));
    qputenv("DNC_COM1", QFile::encodeName(link));

    Globals g;
    g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
    QFile ini(g.iniPath);
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=1\nCNC=303\nTapeDir=" +
              QFile::encodeName(dir.path()) + "\n");
    ini.close();
    OperationState state;
    SerialComm comm;
    comm.setOperationState(&state);
    QtLinkTimer timer(g, 5);
    EventLoopYield yield(comm, timer);
    // Send takes the quick choice: the operator types the program's name.
    DncWindow w(g, state, comm, timer, yield, QStringLiteral("-b"));
    w.show();

    QFETCH(int, button);
    ModalCatcher operatorAt;
    operatorAt.typed = QStringLiteral("P");
    operatorAt.fileName = savePath;
    QFETCH(QString, fault);
    if (const QString why = hangUpUnavailable(); fault.startsWith(u"pull at") && !why.isEmpty())
        QSKIP(qPrintable(why));
    Trigger trigger;
    const QString event = fault.section(u' ', -1);
    auto when = [&] {
        vc.refresh();
        // A stalled control: once the program has taken what came, so that it counts.
        return event == u"0" ||
               (!vc.eventTexts(event).isEmpty() && (event != u"STALLED" || waitingAt(link) == 0));
    };
    if (fault.startsWith(u"pull"))
        trigger.onceWhen(when, [&] {
            const QString why = hangUp(link);
            QVERIFY2(why.isEmpty(), qPrintable(why));
            QFile::remove(link);
        });
    else if (fault.startsWith(u"close"))
        trigger.onceWhen(when, [&] { w.close(); });

    QElapsedTimer clock;
    clock.start();
    w.Command1_Click(button);
    const qint64 ms = clock.elapsed();

    QFETCH(QString, told);
    QCOMPARE(operatorAt.boxes.size(), told.isEmpty() ? 0 : 1);
    if (!told.isEmpty())
        QVERIFY2(operatorAt.boxes[0].contains(told), qPrintable(operatorAt.boxes[0]));
    QFETCH(B, saved);
    B inFile;
    if (QFile file(savePath); file.open(QIODevice::ReadOnly))
        inFile = file.readAll();
    QCOMPARE(inFile, saved);
    QCOMPARE(QFile::exists(savePath), !saved.isEmpty());
    QFETCH(bool, closed);
    QCOMPARE(!w.isVisible(), closed);
    if (!closed) {
        QString enabled;
        for (int i = 0; i < 8; ++i)
            enabled += w.Command1[i]->isEnabled() ? QString::number(i) : QString();
        QCOMPARE(enabled + (w.Command2->isEnabled() ? "Q" : ""), QStringLiteral("0123457Q"));
    }
    QVERIFY(!comm.portOpen() && !timer.enabled() && !w.Label1->isVisible());
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    QCOMPARE(openDescriptors(program), 0);
    QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

    recordFault(QStringLiteral("window: ") + QTest::currentDataTag(),
                (told.isEmpty() ? QStringLiteral("no box") : "box: " + told) +
                    (closed ? QStringLiteral(", window closed") : QStringLiteral(", buttons back")),
                bytesLost(saved, inFile), ms);
}

QTEST_MAIN(TestWindowFaults)
#include "tst_window_faults.moc"
