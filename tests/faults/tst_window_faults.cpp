// The window closed during a wait, through the whole window, the real port, clock and event
// loop against the virtual control: what came is offered for saving, then the window closes
// with nothing left running. The same fault on each operation: the other tables here.

#include "commands_by_type.h"
#include "dnc_window.h"
#include "fault_support.h"
#include "real_link_parts.h"
#include "window_guard.h"

#include <QtWidgets>

class TstWindowFaults : public QObject {
    Q_OBJECT
private slots:
    void closedInTheReceptionWait() {
        QTemporaryDir dir;
        const QString savePath = dir.filePath(QStringLiteral("GOT.tap"));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("P.NC")), numberedLines(5, "\r")));
        const QString link = dir.filePath(QStringLiteral("ttyUSB0"));
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "303", "--stall-mid-line", "2", "--dir", dir.path(), "--link",
                           link, "--pc-program", "P.NC"}),
                 qPrintable(vc.errorString()));
        qputenv("DNC_COM1", QFile::encodeName(link));

        Globals g;
        g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        QVERIFY(writeFile(g.iniPath, "[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\n"
                                     "Stop=1\nCNC=303\n"));
        OperationState state;
        RealLinkParts parts(g, state, QString(), 5);
        DncWindow w(g, state, parts.comm, parts.timer, parts.yield, QString());
        w.show();
        WindowGuard guard;
        guard.expect<QFileDialog>([&](QFileDialog *files) {
            files->selectFile(savePath);
            static_cast<QDialog *>(files)->accept();
        });
        Trigger trigger;
        armFault(trigger, QStringLiteral("close at STALLED"), vc, link, [&] { w.close(); });
        const qint64 ms = msTaken([&] { w.Command1_Click(ReceiveCommand); });

        guard.check();
        const B saved("L1\r\nL\r\n"), inFile = readFile(savePath);
        QCOMPARE(inFile, saved);
        QVERIFY(!w.isVisible() && !parts.comm.portOpen() && !parts.timer.enabled() &&
                !w.Label1->isVisible());
        QCOMPARE(openDescriptors(savePath), 0);
        QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

        recordFault(QStringLiteral("window: receive: window closed in the reception wait"),
                    QStringLiteral("no box, window closed"), bytesLost(saved, inFile), ms);
    }
};

QTEST_MAIN(TstWindowFaults)
#include "tst_window_faults.moc"
