// Sends through the real port, clock and event loop on a pseudo-terminal against the virtual
// control, for what only the real parts can show: the line's speed. The dialogues byte by byte,
// halts and faults through the real port are in tests/faults and tests/ctl.
#include "files.h"
#include "real_link.h"
#include "rows.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QTemporaryDir>

class TstRealPort : public QObject {
    Q_OBJECT
private slots:
    // A send keeps up with the line: a loop that slept between lines, or a drain or a wait for
    // the answer that ended at some later tick, would take two to three times as long.
    void lineSpeed() {
        const int baud = 115200, answer = 2; // characters the control sends back for each line
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "303"}), qPrintable(vc.errorString()));
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("P.tap"));
        B file;
        for (int i = 1; i <= 300; ++i)
            file += "N" + B::number(i) + " G01 X12.345 Y-67.890 F300\r\n";
        QVERIFY(writeFile(path, file));
        RealLink r(vc.device(), Cnc303);
        r.g.ComSettings = QStringLiteral("COM1:%1,N,8,1").arg(baud);
        const qint64 characters = file.size() + file.count('\n') * (answer - 1);
        const double lineMs = double(characters) * 10 * 1000 / baud;
        QElapsedTimer clock;
        clock.start();
        SendData(r.link, path);
        const double ms = double(clock.elapsed());
        QVERIFY2(ms <= 1.5 * lineMs + 300,
                 qPrintable(QStringLiteral("%1 ms, the line needs %2 ms").arg(ms).arg(lineMs)));
    }
};

QTEST_GUILESS_MAIN(TstRealPort)
#include "tst_real_port.moc"
