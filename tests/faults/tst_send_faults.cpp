// Faults that hit a send, through the real port on a pseudo-terminal against the virtual
// control. Each case checks what reached the control byte for byte, the one message, and the
// end state: port and file closed, clock stopped, counter hidden, pointer back.

#include "fault_support.h"
#include "real_link.h"
#include "tool_scan.h"
#include "transfer.h"

namespace {
const QStringList C303{"--type", "303"};
const QStringList CXon{"--type", "XonXoff", "--rate", "200000", "--end-gap", "200"};
const QStringList HaltForever{"--halt-after-line", "2", "--halt-char", "13", "--halt-ms", "600000"};
const B End("\x04\r");
const QString Timeout = QStringLiteral("Timeout - No answer from CNC");
} // namespace

class TstSendFaults : public QObject {
    Q_OBJECT
private slots:
    void send_data() {
        QTest::addColumn<QStringList>("control"); // the program is set up for its type
        QTest::addColumn<B>("content");           // lines end CR LF unless given; "zero"
        QTest::addColumn<QString>("fault");       // see armFault
        // At the control, exactly; halted for good: the X-on, then two or more whole lines.
        QTest::addColumn<B>("arrived");
        QTest::addColumn<QString>("told"); // the one box: the time-out, or words of a critical one
        QTest::addColumn<QString>("outcome"); // the kind the record is left with

        const B ten = numberedLines(10), all = everyByte(), r3 = "R\r" + numberedLines(3, "\r");
        const B allOnWire = all.left(13) + "\r" + all.mid(14) + "\r";
        const QStringList quietFrom3 = C303 + QStringList{"--silent-from-line", "3"};
        const B halted = numberedLines(300, "\r");
        row("far end closed mid-send", quietFrom3, ten, "stop at 3", r3, "unplugged",
            "port failure");
        row("USB adapter pulled mid-send", quietFrom3, ten, "pull at 3", r3, "unplugged",
            "port failure");
        row("control silent after the start", C303 + QStringList{"--silent"}, ten, "", "R\r" + End,
            Timeout, "time-out");
        row("control holds X-off forever", CXon + HaltForever, halted, "", Xon, Timeout,
            "time-out");
        row("window closed in the go-ahead wait", quietFrom3, ten, "close at 3", r3 + End, "",
            "interrupted");
        row("window closed in the opening X-on wait", CXon, ten, "close at 0", Xon, "",
            "interrupted");
        row("window closed while held by X-off", CXon + HaltForever, halted, "close at HALT", Xon,
            "", "interrupted");
        row("10 MB line", C303, B(10 << 20, 'A') + "\r\n", "",
            "R\r" + B(10 << 20, 'A') + "\r" + End, "", "done");
        row("every byte value, 303", C303, all, "", "R\r" + allOnWire + End, "", "done");
        row("every byte value, XonXoff", CXon, all, "", Xon + allOnWire, "", "done");
        row("NC file links to /dev/zero", C303, B("zero"), "", B(), "is a character device",
            "file failure");
        row("17 MB without a line end", C303, B(17 << 20, 'B'), "", B(),
            "line 1 is longer than 16 MB", "file failure");
    }
    void send() {
        QFETCH(QStringList, control);
        QFETCH(B, content);
        QFETCH(QString, fault);
        QTemporaryDir dir;
        const QString link = dir.filePath(QStringLiteral("ttyUSB0"));
        VControlProcess vc;
        QVERIFY2(vc.start(control + QStringList{"--link", link, "--dir", dir.path()}),
                 qPrintable(vc.errorString()));
        const QString path = dir.filePath(QStringLiteral("P.tap"));
        QVERIFY(content == "zero" ? QFile::link(QStringLiteral("/dev/zero"), path)
                                  : writeFile(path, content));

        const bool big = content.size() > (1 << 20);
        RealLink r(link, control[1] == u"XonXoff" ? 3 : 1, big ? 2 : 20);
        if (big) // a 10 MB line at the line's speed: the fastest a pseudo-terminal is set to
            r.g.ComSettings = QStringLiteral("COM1:4000000,N,8,1");
        r.g.WaitXon = fault == u"close at 0";
        r.g.TextTable[textIndex(TimeoutMessage, 1)] = Timeout;
        Trigger trigger;
        if (const QString why = armFault(trigger, fault, vc, link, [&] { r.state.requestEnd(); });
            !why.isEmpty())
            QSKIP(qPrintable(why));
        const qint64 ms = msTaken([&] { SendData(r.link, path); });

        QFETCH(B, arrived);
        const B got = vc.rxSettled(arrived.size());
        const bool haltedForGood = control.contains("--halt-after-line");
        if (haltedForGood) { // whole lines in order, as many as left before the halt was seen
            const int lines = int(got.count('\r'));
            QVERIFY2(lines >= 2, qPrintable(QString::number(lines)));
            QCOMPARE(got, arrived + numberedLines(lines, "\r"));
        } else {
            QCOMPARE(got, arrived);
        }
        QFETCH(QString, told);
        QCOMPARE(takeBox(r.screen, told, told == Timeout ? BoxIcon::None : BoxIcon::Critical),
                 QString());
        // The record: how it ended, and for a whole send the program's characters as the
        // control took them and the fingerprint of the file as it lies on disk.
        const OutcomeRecord &o = r.link.outcome;
        QTEST(outcomeWord(o.kind), "outcome");
        QCOMPARE(o.operation, OperationName::SendData);
        QVERIFY(o.started.isValid() && o.ended >= o.started);
        if (o.kind == OutcomeKind::Done) {
            const B program = control[1] == u"XonXoff" ? got.mid(1) : got.mid(2).chopped(2);
            QCOMPARE(o.bytes, program.size());
            QCOMPARE(o.lines, program.count('\r'));
            QCOMPARE(o.sha256, sha256Hex(content));
        }
        QCOMPARE(leftOver(r), QString());
        QCOMPARE(openDescriptors(path), 0);
        // No hang: within twice what the line needs at 4 Mbaud, and a margin for a loaded machine.
        const qint64 hungAfter = 20000 + 2 * content.size() / 400;
        QVERIFY2(ms < hungAfter, qPrintable(QString::number(ms)));

        const QString outcome = told.isEmpty()    ? QStringLiteral("no box")
                                : told == Timeout ? QStringLiteral("time-out box")
                                                  : QStringLiteral("critical: ") + told;
        recordFault(QStringLiteral("send: ") + QTest::currentDataTag(), outcome,
                    haltedForGood ? 0 : bytesLost(arrived, got), ms, hungAfter);
    }

    // Not a fault: a send keeps up with the line. A loop that slept between lines, or a drain or
    // a wait for the answer that ended at some later tick, would take two to three times as long.
    void lineSpeed() {
        const int baud = 115200, answer = 2; // characters the control sends back for each line
        VControlProcess vc;
        QVERIFY2(vc.start(C303), qPrintable(vc.errorString()));
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("P.tap"));
        B file;
        for (int i = 1; i <= 300; ++i)
            file += "N" + B::number(i) + " G01 X12.345 Y-67.890 F300\r\n";
        QVERIFY(writeFile(path, file));
        RealLink r(vc.device(), Cnc303);
        r.g.ComSettings = QStringLiteral("COM1:%1,N,8,1").arg(baud);
        const double lineMs = double(file.size() + file.count('\n') * (answer - 1)) * 10000 / baud;
        const qint64 ms = msTaken([&] { SendData(r.link, path); });
        QVERIFY2(ms <= 1.5 * lineMs + 300,
                 qPrintable(QStringLiteral("%1 ms, the line needs %2 ms").arg(ms).arg(lineMs)));
    }

    // The tool scan that runs before a send reads at most one bound's worth of a line: a device
    // picked by mistake is reported, not read into memory. The bound's rule: fuzz/.
    void toolScanOfADevice() {
        QFile zero(QStringLiteral("/dev/zero"));
        QVERIFY(zero.open(QIODevice::ReadOnly));
        const ToolScan scan = scanToolLines(zero, {}, 0);
        QVERIFY2(scan.failure.contains("line 1 is longer than 16 MB"), qPrintable(scan.failure));
        recordFault(QStringLiteral("tool scan: /dev/zero"), QStringLiteral("reported"), 0, 0);
    }
};

QTEST_GUILESS_MAIN(TstSendFaults)
#include "tst_send_faults.moc"
