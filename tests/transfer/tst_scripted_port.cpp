// Transfers over the scripted port and clock, read by read: the waits, the ways a send ends,
// the file chosen, the silence that ends a reception. The line reader and the reply loops on
// any bytes are checked by the fuzz targets (fuzz/), the transfers through the real port by
// tests/faults.
#include "chunk_script.h"
#include "files.h"
#include "profile.h"
#include "rows.h"
#include "transfer.h"

#include <QDir>
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
        f.g.TextTable[SendFilePrefix * 5 + 1] = QStringLiteral("Send file : ");
        f.g.TextTable[TimeoutMessage * 5 + 1] = Timeout;
        f.timer.ms = 2000; // as start-up leaves it for "504"
        f.link.toolList = this;
        writeFile(path, content);
    }
    void UpdateToolList(const QString &file) override {
        if (f.comm.opens == 0 && f.screen.pointers.isEmpty())
            toolCalls << file;
    }
    QString in(const QString &name) const { // in the folder unless it starts with "/"
        return name.startsWith('/') ? name : QDir::cleanPath(dir.path() + '/' + name);
    }
};
} // namespace

class TstScriptedPort : public QObject {
    Q_OBJECT
private slots:
    // Each wait starts afresh, whatever an earlier one left in TimedOut. The window closed in a
    // wait: tests/faults.
    void waits_data() {
        QTest::addColumn<bool>("xon");
        QTest::addColumn<Chunks>("chunks"); // one a pass, then silence
        QTest::addColumn<bool>("result");
        QTest::addColumn<B>("left"); // still unread at the end
        row("DLE and 7 in two reads", false, Chunks{Dle, "", "7"}, true, B());
        row("noise and DLE, then a lone 7", false, Chunks{"x" + Dle, "7"}, false, B("7"));
        row("7 before DLE", false, Chunks{"7" + Dle}, false, B());
        row("answer with the tick", false, Chunks{Go + Tick}, true, B());
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

    // The dialogue through the real port, its faults and the window closed in a wait are in
    // tests/faults; here the other ways a send ends. Only here is the queue seen between lines.
    void send_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<B>("file");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<B>("wire");
        QTest::addColumn<QString>("told"); // what the one box says; none if empty
        const B ten = numberedLines(10), all = Xon + numberedLines(10, "\r");
        row("303", 1, ten, "", "R\r" + numberedLines(10, "\r") + Eot, "");
        // The second line is blank once its blanks are gone: it ends the program.
        row("303, NoSpace", 1, B(" G1 X 10\tY2 \r\n   \r\nZ\r\n"), "NoSpace",
            "R\rG1X10\tY2\r" + Eot, "");
        row("XonXoff, blank line as CR", 3, B("A\r\n\r\nB\r\n"), "", Xon + "A\r\rB\r", "");
        row("no port set up", 1, ten, "no setup", B(), "Choose one with Setup.");
        row("missing file", 1, ten, "missing", B(), "nothere.tap: No such file");
        row("empty file", 1, B(), "", B(), "");
        row("XonXoff, window closed", 3, ten, "close at line 2", Xon + numberedLines(2, "\r"), "");
        row("XonXoff, opening X-on", 3, ten, "WaitXon, resume", all, "");
        row("XonXoff, no opening X-on", 3, ten, "WaitXon", Xon, Timeout);
    }
    void send() {
        QFETCH(int, type);
        QFETCH(B, file);
        QFETCH(QString, fault);
        QFETCH(B, wire);
        QFETCH(QString, told);
        Run r(type, file);
        const QString path = fault == "missing" ? r.in("nothere.tap") : r.path;
        if (fault == "no setup")
            r.f.g.ComSettings.clear();
        r.f.g.WaitXon = fault.startsWith("WaitXon");
        r.f.g.NoSpace = fault == "NoSpace";
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
            if (b == "L2\r" && fault == "close at line 2")
                r.f.state.requestEnd();
        };
        // A silent pass of a wait brings the X-on the row promises, or the clock's tick.
        r.f.yield.idle = [&] {
            if (r.f.timer.on && r.f.comm.inbox.isEmpty())
                fault.endsWith("resume") ? void(r.f.comm.inbox += Xon) : r.f.timer.fire();
        };
        SendData(r.f.link, path);

        QCOMPARE(r.f.comm.written(), wire);
        QVERIFY(drained);
        if (!told.isEmpty()) {
            const RecordingScreen::Box box = r.f.screen.takeBox();
            QVERIFY2(box.text.contains(told), qPrintable(box.text));
            QCOMPARE(box.icon, told == Timeout ? BoxIcon::None : BoxIcon::Critical);
        }
        QCOMPARE(r.toolCalls, QStringList{path}); // counted also when the file then fails
        QVERIFY(r.f.comm.opens == int(!wire.isEmpty()) && r.f.comm.closes == r.f.comm.opens);
        if (!wire.isEmpty()) { // the line as set up, the clock at the time-out of a line
            QVERIFY(r.f.comm.port == 2 && r.f.comm.settings == "9600,E,7,1" && r.f.comm.dtr);
            QCOMPARE(r.f.timer.interval(), 5000);
        }
        QCOMPARE(leftOver(r.f), QString());
    }

    void caption() {
        Run r(1, "A\r\nB\r\n" + B(394, 'C')); // 400 bytes: 0.25%, 0.5% and 99% sent
        r.f.comm.onOutput = [&](const B &) { r.f.comm.inbox += Go; };
        SendData(r.f.link, r.path);
        const QString p = "Send file : " + r.path + " - ";
        QCOMPARE(r.f.screen.captions, (QStringList{p, p + "%", p + "1%", p + "99%"}));
    }

    void choose_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("simple");    // -b
        QTest::addColumn<QString>("answer"); // in the input box; "-": none asked, "": Cancel
        QTest::addColumn<QString>("gives");  // the file dialog's answer
        QTest::addColumn<QString>("shown");  // its name field and extension; "-": no dialog
        QTest::addColumn<QString>("sent");   // its folder is remembered
        row("PA: no PA.tap", 2, true, "PA", "PART.tap", "PA*.tap tap", "PART.tap");
        row("PART.NC", 1, true, "PART.NC", "", "-", "PART.NC");
        row("XonXoff ignores -b", 3, true, "-", "CUT.LCC", " lcc", "CUT.LCC");
        row("Cancel in the dialog", 2, false, "-", "", " tap", "");
        row("root folder", 1, false, "-", "/dnc-none.tap", " tap", "/dnc-none.tap");
    }
    void choose() {
        QFETCH(int, type);
        QFETCH(QString, answer);
        QFETCH(QString, gives);
        QFETCH(QString, shown);
        QFETCH(QString, sent);
        Run r(type, B()); // empty files: the port stays shut
        for (const char *name : {"PART.tap", "PART.NC", "CUT.LCC"})
            QVERIFY(QFile(r.in(name)).open(QIODevice::WriteOnly));
        QFETCH(bool, simple);
        r.f.g.SimpleFileDialog = simple;
        PutProfile(r.f.g, r.f.g.ConfigSection, QStringLiteral("TapeDir"), r.dir.path());
        if (answer != "-")
            r.f.screen.inputAnswers.push_back(answer);
        if (!gives.isEmpty())
            r.f.screen.openAnswers.push_back(r.in(gives));
        SendFile(r.f.link);

        QCOMPARE(r.f.screen.inputPrompts.size(), answer == "-" ? 0 : 1);
        QStringList dialogs;
        for (const FileDialogRequest &d : r.f.screen.openRequests) {
            QCOMPARE(d.initDir, r.dir.path());
            dialogs << d.fileName + ' ' + d.defaultExt;
        }
        QCOMPARE(dialogs.join('|'), shown == "-" ? QString() : shown);
        if (type == 3) // the stream's list of patterns ends in ';', which names none
            QCOMPARE(r.f.screen.openRequests.value(0).filter,
                     "Bystronic file *.LCC (*.LCC);;All files *.* (*.*)");
        QCOMPARE(r.toolCalls, sent.isEmpty() ? QStringList() : QStringList{r.in(sent)});
        QCOMPARE(GetProfile(r.f.g, r.f.g.ConfigSection, QStringLiteral("TapeDir")),
                 sent.isEmpty() ? r.dir.path() : QFileInfo(r.in(sent)).absolutePath());
        if (sent.startsWith('/'))
            r.f.screen.takeBox(); // the file does not exist
    }

    // What a reception keeps of any chunks, and how it saves it, is checked by
    // fuzz/fuzz_reply_loops; not so when the silence that ends it is counted from. A tick while
    // a chunk is being taken does not count: the silence is counted anew.
    void receive() {
        Run r(1, B());
        FakeLink &f = r.f;
        f.g.TimedOut = true; // left by an earlier wait
        PutProfile(f.g, f.g.ConfigSection, QStringLiteral("CNCDir"), r.in("start"));
        const QStringList files = QDir(r.dir.path()).entryList(QDir::Files);
        deliverChunks(f, Chunks{"", "A\r", Tick, "\x04"});
        ReceiveFile(f.link);
        QCOMPARE(f.comm.written(), Pc + Go);
        QVERIFY(!f.g.TimedOut);
        QCOMPARE(f.screen.text1, QStringLiteral("A\r\n"));
        // Offered for saving where the last one went; Cancel writes nothing.
        QCOMPARE(f.screen.saveRequests.size(), 1);
        QVERIFY(f.screen.saveRequests[0].initDir == r.in("start") &&
                f.screen.saveRequests[0].defaultExt == "tap");
        QCOMPARE(QDir(r.dir.path()).entryList(QDir::Files), files);
        QCOMPARE(leftOver(f), QString());

        Run stream(3, B()); // nothing to ask a stream control for, nothing to wait for
        ReceiveFile(stream.f.link);
        QVERIFY(stream.f.comm.written().isEmpty() && stream.f.yield.idlePasses == 0);
        QVERIFY(stream.f.comm.opens == 1 && stream.f.screen.saveRequests.isEmpty());
        QCOMPARE(leftOver(stream.f), QString());
    }
};

QTEST_GUILESS_MAIN(TstScriptedPort)
#include "tst_scripted_port.moc"
