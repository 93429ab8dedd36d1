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
    void lineSpeed_data() {
        QTest::addColumn<QStringList>("control");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("baud");
        QTest::addColumn<int>("answer"); // characters the control sends back for each line
        QTest::newRow("303 at 115 200 baud") << QStringList{"--type", "303"} << 1 << 115200 << 2;
        // A machine that takes it all: nothing holds the stream up but the line.
        QTest::newRow("XonXoff at 921 600 baud")
            << QStringList{"--type", "XonXoff",  "--buffer",  "1000000",
                           "--rate", "10000000", "--end-gap", "200"}
            << 3 << 921600 << 0;
    }
    // A send keeps up with the line: a loop that slept between lines, or a drain that waited
    // for some later tick, would take two to three times as long.
    void lineSpeed() {
        QFETCH(QStringList, control);
        QFETCH(int, type);
        QFETCH(int, baud);
        QFETCH(int, answer);
        VControlProcess vc;
        QVERIFY2(vc.start(control), qPrintable(vc.errorString()));
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("P.tap"));
        B file;
        for (int i = 1; i <= (type == 3 ? 1000 : 300); ++i)
            file += "N" + B::number(i) + " G01 X12.345 Y-67.890 F300\r\n";
        QVERIFY(writeFile(path, file));
        RealLink r(vc.device(), qint16(type));
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
