// Faults through the whole window: the real port on a pseudo-terminal against the virtual
// control, the real clock (run faster) and event loop, the operator's dialogs answered as they
// open. After each, the buttons are back (or the window has closed when that was asked), the
// counter hidden, the port closed; the guard fails a case on any box or wait cursor left over.

#include "commands_by_type.h"
#include "dnc_window.h"
#include "event_loop_yield.h"
#include "fault_support.h"
#include "qt_link_timer.h"
#include "serial_comm.h"
#include "window_guard.h"

#include <QtWidgets>

class TstWindowFaults : public QObject {
    Q_OBJECT
private slots:
    void receive_data() {
        QTest::addColumn<QStringList>("control");
        QTest::addColumn<QString>("fault"); // see armFault; "close" closes the window
        QTest::addColumn<B>("saved");       // the received program's file
        QTest::addColumn<QString>("told");  // words of the one box; none if empty
        const QStringList c303{"--type", "303"};
        row("receive: USB adapter pulled mid-program",
            c303 + QStringList{"--silent-from-line", "3"}, "pull at SILENT", B("L1\r\nL2\r\n\r\n"),
            "unplugged");
        row("receive: window closed in the reception wait",
            c303 + QStringList{"--stall-mid-line", "2"}, "close at STALLED", B("L1\r\nL\r\n"), "");
    }
    void receive() {
        QTemporaryDir dir;
        const QString savePath = dir.filePath(QStringLiteral("GOT.tap"));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("P.NC")), numberedLines(5, "\r")));
        QFETCH(QStringList, control);
        const QString link = dir.filePath(QStringLiteral("ttyUSB0"));
        VControlProcess vc;
        QVERIFY2(vc.start(control +
                          QStringList{"--dir", dir.path(), "--link", link, "--pc-program", "P.NC"}),
                 qPrintable(vc.errorString()));
        qputenv("DNC_COM1", QFile::encodeName(link));

        Globals g;
        g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        QVERIFY(writeFile(g.iniPath, "[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\n"
                                     "Stop=1\nCNC=303\n"));
        OperationState state;
        SerialComm comm;
        comm.setOperationState(&state);
        QtLinkTimer timer(g, 5);
        EventLoopYield yield(comm, timer);
        DncWindow w(g, state, comm, timer, yield, QString());
        w.show();
        // The operator: the box, then what came is saved.
        QFETCH(QString, told);
        QFETCH(B, saved);
        WindowGuard guard;
        QStringList boxes;
        if (!told.isEmpty())
            guard.expect<QMessageBox>([&](QMessageBox *box) {
                boxes << box->text();
                box->accept();
            });
        guard.expect<QFileDialog>([&](QFileDialog *files) {
            files->selectFile(savePath);
            static_cast<QDialog *>(files)->accept();
        });
        QFETCH(QString, fault);
        Trigger trigger;
        if (const QString why = armFault(trigger, fault, vc, link, [&] { w.close(); });
            !why.isEmpty())
            QSKIP(qPrintable(why));
        const qint64 ms = msTaken([&] { w.Command1_Click(ReceiveCommand); });

        guard.check();
        QVERIFY2(boxes.join(u'|').contains(told), qPrintable(boxes.join(u'|')));
        const B inFile = readFile(savePath);
        QCOMPARE(inFile, saved);
        const bool closed = fault.startsWith(u"close");
        QCOMPARE(!w.isVisible(), closed);
        // Buttons come back all together: the one pressed and Quit stand for them.
        QVERIFY(closed || (w.Command1[ReceiveCommand]->isEnabled() && w.Command2->isEnabled()));
        QVERIFY(!comm.portOpen() && !timer.enabled() && !w.Label1->isVisible());
        QCOMPARE(openDescriptors(savePath), 0);
        QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

        recordFault(
            QStringLiteral("window: ") + QTest::currentDataTag(),
            (told.isEmpty() ? QStringLiteral("no box") : "box: " + told) +
                (closed ? QStringLiteral(", window closed") : QStringLiteral(", buttons back")),
            bytesLost(saved, inFile), ms);
    }
};

QTEST_MAIN(TstWindowFaults)
#include "tst_window_faults.moc"
