// Send and receive through the real port, clock and event loop on a pseudo-terminal against
// the virtual control: every byte that reaches the control, and the program saved. Faults, and
// files of every byte value, are in tests/faults.
#include "files.h"
#include "real_link.h"
#include "rows.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QTemporaryDir>

namespace {
const QStringList C303{"--type", "303"}, C504{"--type", "504"};
const QStringList CXon{"--type", "XonXoff", "--rate", "200000", "--end-gap", "200"};
} // namespace

class TstRealPort : public QObject {
    Q_OBJECT
private slots:
    void send_data() {
        QTest::addColumn<QStringList>("control");
        QTest::addColumn<int>("type");
        QTest::addColumn<B>("file");
        QTest::addColumn<B>("rx");
        const B blank("A\r\n\r\nB\r\n"), end = "\r" + Eot;
        const QStringList halt{"--halt-after-line", "2", "--halt-char", "3f", "--halt-ms", "150"};
        row("WaitXon", CXon + QStringList{"--xon-at-start"}, 3, numberedLines(3),
            Xon + numberedLines(3, "\r"));
        row("303, no line end", C303, 1, B("N10 G0"), "R\rN10 G0" + end);
        row("303, blank line ends", C303, 1, blank, "R\rA" + end);
        row("XonXoff, blank line as CR", CXon, 3, blank, Xon + "A\r\rB\r");
        row("303, NoSpace", C303, 1, B(" G1 X 10\tY2 \r\n   \r\nZ\r\n"), "R\rG1X10\tY2" + end);
        // Kept below the X-off mark: only the halt may stop the sender.
        row("XonXoff, halted and resumed", CXon + halt, 3, numberedLines(300),
            Xon + numberedLines(300, "\r"));
    }
    void send() {
        QFETCH(QStringList, control);
        QFETCH(B, file);
        VControlProcess vc;
        QVERIFY2(vc.start(control), qPrintable(vc.errorString()));
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("P.tap"));
        QVERIFY(writeFile(path, file));
        QFETCH(int, type);
        RealLink r(vc.device(), qint16(type));
        r.g.NoSpace = B(QTest::currentDataTag()).contains("NoSpace");
        r.g.WaitXon = B(QTest::currentDataTag()).contains("WaitXon");
        SendData(r.link, path);

        QFETCH(B, rx);
        QCOMPARE(vc.rxSettled(rx.size()), rx);
        QVERIFY(vc.eventTexts("OVERRUN").isEmpty());
        // Halted, the sender puts nothing more on the line until the X-on.
        const auto &e = vc.events();
        const auto halt =
            std::find_if(e.begin(), e.end(), [](auto &v) { return v.word == "HALT"; });
        const auto xon = std::find_if(halt, e.end(), [](auto &v) { return v.word == "XON"; });
        QCOMPARE(xon != e.end(), control.contains("--halt-after-line"));
        for (const auto &c : vc.chunks())
            QVERIFY(xon == e.end() || !c.rx || c.us < halt->us + 50000 || c.us > xon->us);
        QCOMPARE(leftOver(r), QString());
    }

    void lineSpeed_data() {
        QTest::addColumn<QStringList>("control");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("baud");
        QTest::addColumn<int>("answer"); // characters the control sends back for each line
        QTest::newRow("303 at 115 200 baud") << C303 << 1 << 115200 << 2;
        QTest::newRow("504 at 115 200 baud") << C504 << 2 << 115200 << 2;
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

    // A 504 lists its programs and the operator picks the second; what it sends is saved.
    void receive() {
        const B nc("N1 G0 X0\rN2 M30\r"), got("N1 G0 X0\r\nN2 M30\r\n\r\n");
        QTemporaryDir store, out;
        for (const char *name : {"A.NC", "PROG.NC"})
            QVERIFY(writeFile(store.filePath(name), nc));
        VControlProcess vc;
        QVERIFY2(vc.start(C504 + QStringList{"--dir", store.path()}), qPrintable(vc.errorString()));
        RealLink r(vc.device(), 2);
        r.g.iniPath = out.filePath("dnc.ini");
        r.screen.pick = 1;
        r.screen.saveAnswers.push_back(out.filePath("got.tap"));
        ReceiveFile(r.link);

        const B rx = "MC,/ISO\r" + Go.repeated(3) + "PC,/ISO/PROG.NC\r" + Go.repeated(3);
        QCOMPARE(vc.rxSettled(rx.size()), rx);
        QCOMPARE(readFile(out.filePath("got.tap")), got);
        QCOMPARE(r.screen.text1, QString::fromLatin1(got.chopped(2)));
        QCOMPARE(r.screen.captions.last(), QString::number(got.size() - 2));
        QCOMPARE(leftOver(r), QString());
    }
};

QTEST_GUILESS_MAIN(TstRealPort)
#include "tst_real_port.moc"
