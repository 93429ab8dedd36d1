// Transfers over the scripted port and clock, read by read: the waits, the ways a send ends,
// the silence that ends a reception. Any bytes: fuzz/; the real port: tests/faults.
#include "chunk_script.h"
#include "directory.h"
#include "files.h"
#include "rows.h"
#include "transfer.h"

#include <QTemporaryDir>

using Chunks = QList<QByteArray>;

namespace {
const B Pc = "PC\r" + Go;
const QString Timeout = QStringLiteral("Timeout - No answer from CNC");

// A link over fakes and a program P.tap in a temporary folder; the tool list notes the files
// it is given before the port or the pointer is touched.
struct Run : ToolListHook {
    FakeLink f;
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("P.tap"));
    QStringList toolCalls;
    Run(int type, const B &content) {
        f.g.ComSettings = QStringLiteral("COM2:9600,E,7,1");
        f.g.CncType = qint16(type);
        f.g.ToolDbEnabled = true;
        f.g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        f.g.TextTable[textIndex(TimeoutMessage, 1)] = Timeout;
        f.timer.ms = 2000; // as start-up leaves it for "504"
        f.link.toolList = this;
        writeFile(path, content);
    }
    QString toolFailure;     // what the count reports
    bool endInCount = false; // the operation is asked to end while the count runs
    void UpdateToolList(const QString &file) override {
        if (f.comm.opens == 0 && f.screen.pointers.isEmpty())
            toolCalls << file;
        if (endInCount)
            f.state.requestEnd();
    }
    QString failure() const override { return toolFailure; }
};
} // namespace

class TstScriptedPort : public QObject {
    Q_OBJECT
private slots:
    // Each wait starts afresh, whatever an earlier one left in TimedOut.
    void waits_data() {
        QTest::addColumn<bool>("xon");
        QTest::addColumn<Chunks>("chunks"); // one a pass, then silence
        QTest::addColumn<bool>("result");
        QTest::addColumn<B>("left"); // still unread at the end
        row("DLE and 7 in two reads", false, Chunks{Dle, "", "7"}, true, B());
        row("noise and DLE, then a lone 7", false, Chunks{"x" + Dle, "7"}, false, B("7"));
        row("X-off and X-on together", true, Chunks{Xoff + Xon}, true, B());
    }
    void waits() {
        QFETCH(bool, xon);
        QFETCH(Chunks, chunks);
        QFETCH(bool, result);
        Run r(1, B());
        FakeLink &f = r.f;
        f.comm.open = true;
        f.g.TimedOut = true;
        deliverChunks(f, chunks);
        QCOMPARE(xon ? WaitForXon(f.link) : WaitForAnswer(f.link), result);
        if (!result) {
            const RecordingScreen::Box box = f.screen.takeBox();
            QVERIFY(box.text == Timeout && box.icon == BoxIcon::None);
        }
        QTEST(f.comm.inbox, "left");
        QVERIFY(f.timer.starts == 1 && !f.timer.on && f.comm.writes.isEmpty());
    }

    // What goes on the wire; only here is the queue seen between lines.
    void send_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<B>("file");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<B>("wire");
        QTest::addColumn<QString>("outcome"); // the kind the record is left with
        QTest::addColumn<int>("leftOut");     // lines the record says the control did not get
        const B ten = numberedLines(10);
        row("303", 1, ten, "", "R\r" + numberedLines(10, "\r") + Eot, "done", 0);
        // The second line is blank once its blanks are gone: it ends the program. Of the lines
        // behind it, those that hold anything are missing at the control.
        row("303, NoSpace", 1, B(" G1 X 10\tY2 \r\n   \r\nZ\r\n\r\nM30\r\n"), "NoSpace",
            "R\rG1X10\tY2\r" + Eot, "done", 2);
        row("XonXoff, blank line as CR", 3, B("A\r\n\r\nB\r\n"), "", Xon + "A\r\rB\r", "done", 0);
        row("LF line ends: one line", 1, B("A\nB\nC\n"), "", "R\rA\nB\nC\n\r" + Eot, "done", 3);
        row("missing file", 1, ten, "missing", B(), "file failure", 0);
        row("the count fails: sent all the same", 3, ten, "count fails",
            Xon + numberedLines(10, "\r"), "not counted", 0);
        // Nothing may go out: a control that took the start would store an empty program.
        row("ended while the count waits", 1, ten, "end in count", B(), "interrupted", 0);
    }
    void send() {
        QFETCH(int, type);
        QFETCH(B, file);
        QFETCH(QString, fault);
        QFETCH(B, wire);
        Run r(type, file);
        const QString path = fault == "missing" ? r.dir.filePath("nothere.tap") : r.path;
        r.f.g.NoSpace = fault == "NoSpace";
        r.endInCount = fault == "end in count";
        if (fault == "count fails")
            r.toolFailure = QStringLiteral("database is locked");
        // Each line must find the queue drained by the one before (nothing drains behind "R").
        r.f.comm.stallOutput = 2;
        r.f.comm.drainPerPoll = 1;
        bool drained = true;
        B previous;
        r.f.comm.onOutput = [&](const B &b) {
            if (type != 3 && !previous.isEmpty() && previous != "R\r")
                drained = drained && r.f.comm.queued == 2;
            previous = b;
            if (type != 3)
                r.f.comm.inbox += Go;
        };
        SendData(r.f.link, path);

        QCOMPARE(r.f.comm.written(), wire);
        QVERIFY(drained);
        if (fault == "missing") {
            const RecordingScreen::Box box = r.f.screen.takeBox();
            QVERIFY2(box.text.contains("nothere.tap: No such file") &&
                         box.icon == BoxIcon::Critical,
                     qPrintable(box.text));
        }
        QCOMPARE(r.toolCalls, QStringList{path}); // counted also when the file then fails
        const OutcomeRecord &o = r.f.link.outcome;
        QTEST(outcomeWord(o.kind), "outcome");
        QTEST(int(o.linesLeftOut), "leftOut");
        QCOMPARE(o.shortfall != Shortfall::None, o.linesLeftOut > 0);
        QVERIFY(r.f.comm.opens == int(!wire.isEmpty()) && r.f.comm.closes == r.f.comm.opens);
        if (!wire.isEmpty()) { // the line as set up, the clock at the time-out of a line
            QVERIFY(r.f.comm.port == 2 && r.f.comm.settings == "9600,E,7,1" && r.f.comm.dtr);
            QCOMPARE(r.f.timer.interval(), 5000);
        }
        QCOMPARE(leftOver(r.f), QString());
    }

    // One port across operations, as the window keeps it: DTR is down at each opening until
    // the first send raises it, and up at every opening after that.
    void dtrPerOperation() {
        Run r(1, numberedLines(2));
        FakeLink &f = r.f;
        f.comm.onOutput = [&](const B &b) {
            if (b.endsWith("\r"))
                f.comm.inbox += Go;
        };
        f.yield.idle = [&] { f.timer.fire(); }; // the directory's reply ends in silence
        const QList<QPair<const char *, std::function<void()>>> operations{
            {"CC before any send", [&] { ChangeContext(f.link); }},
            {"map before any send", [&] { MapContext(f.link); }},
            {"send", [&] { SendData(f.link, r.path); }},
            {"map after a send", [&] { MapContext(f.link); }},
            {"CE after a send", [&] { ChangeExecute(f.link); }},
        };
        for (const auto &[name, operation] : operations) {
            const int opens = f.comm.opens;
            operation();
            QVERIFY2(f.comm.opens == opens + 1, name);
            QCOMPARE(leftOver(f), QString());
        }
        QCOMPARE(f.comm.dtrAtOpens, (QList<bool>{false, false, true, true, true}));
    }

    // The silence that ends a reception, which fuzz/fuzz_reply_loops does not state: a tick
    // while a chunk is being taken does not count, the silence is counted anew. And what the
    // dialogue's rules drop is counted in the record.
    void receive_data() {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<B>("answered"); // the go-aheads after the request
        QTest::addColumn<QString>("kept");
        QTest::addColumn<int>("dropped");
        row("a tick while a chunk is taken", Chunks{"", "A\r", Tick, "\x04"}, Go, "A\r\n", 0);
        row("two lines in one chunk", Chunks{"A\rB\r", "C\r", "\x04"}, Go + Go, "A\r\nC\r\n", 1);
        row("a line and the start of the next", Chunks{"A\rB", "C\r", "\x04"}, Go + Go,
            "A\r\nC\r\n", 1);
        row("a line in the chunk of the EOT", Chunks{"A\r", "B\r\x04"}, Go, "A\r\n", 1);
    }
    void receive() {
        QFETCH(Chunks, chunks);
        Run r(1, B());
        FakeLink &f = r.f;
        f.g.TimedOut = true; // left by an earlier wait
        deliverChunks(f, chunks);
        ReceiveFile(f.link);
        QFETCH(B, answered);
        QCOMPARE(f.comm.written(), Pc + answered);
        QVERIFY(!f.g.TimedOut);
        QTEST(f.screen.text1, "kept");
        QCOMPARE(f.screen.saveRequests.size(), 1);
        QCOMPARE(leftOver(f), QString());
        const OutcomeRecord &o = f.link.outcome;
        QCOMPARE(o.kind, OutcomeKind::Cancelled); // nobody chose a file to save to
        QCOMPARE(o.received, f.screen.text1.toLatin1());
        QCOMPARE(o.bytes, o.received.size() - o.received.count('\n'));
        QTEST(int(o.linesLeftOut), "dropped");
    }
};

QTEST_GUILESS_MAIN(TstScriptedPort)
#include "tst_scripted_port.moc"
