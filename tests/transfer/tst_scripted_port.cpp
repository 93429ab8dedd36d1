// Transfers over the scripted port and clock, read by read: the waits, the lines as read from
// the file, every way through SendData and ReceiveFile, and the files chosen and saved.
#include "chunk_script.h"
#include "files.h"
#include "nc_line_reader.h"
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
    // Each wait starts afresh, whatever an earlier one left in TimedOut.
    void waits_data() {
        QTest::addColumn<bool>("xon");
        QTest::addColumn<Chunks>("chunks"); // one a pass, then silence or the window closing
        QTest::addColumn<bool>("closing");
        QTest::addColumn<bool>("result");
        QTest::addColumn<B>("left"); // still unread at the end
        row("DLE and 7 in two reads", false, Chunks{Dle, "", "7"}, false, true, B());
        row("noise and DLE, then a lone 7", false, Chunks{"x" + Dle, "7"}, false, false, B("7"));
        row("7 before DLE", false, Chunks{"7" + Dle}, false, false, B());
        row("answer with the tick", false, Chunks{Go + Tick}, false, true, B());
        row("window closed", false, Chunks{Dle}, true, false, Dle);
        row("X-off and X-on together", true, Chunks{Xoff + Xon}, false, true, B());
    }
    void waits() {
        QFETCH(bool, xon);
        QFETCH(Chunks, chunks);
        QFETCH(bool, closing);
        QFETCH(bool, result);
        Run r(1, B());
        FakeLink &f = r.f;
        f.comm.open = true;
        f.g.TimedOut = true;
        deliverChunks(f, chunks);
        if (closing)
            f.yield.idle = [&f] { f.state.requestEnd(); };
        QCOMPARE(xon ? WaitForXon(f.link) : WaitForAnswer(f.link), result);
        if (!result && !closing) { // an operation being ended tells nothing
            const RecordingScreen::Box box = f.screen.takeBox();
            QVERIFY(box.text == Timeout && box.icon == BoxIcon::None);
        }
        QTEST(f.comm.inbox, "left");
        QVERIFY(f.timer.starts == 1 && !f.timer.on && f.comm.writes.isEmpty());
    }

    void lines() {
        const B file("AB\r\nC\rD\nE\r\n\nF\n\r\r\nG\0\r\nH", 22);
        const Chunks lines{"AB", "C", "D\nE", "\nF\n", "", B("G\0", 2), "H"};
        Run r(1, file);
        // Small blocks put every CR LF across a block boundary somewhere.
        for (qint64 block : {1, 2, 3, 7, 65536}) {
            NcLineReader reader(r.path, block);
            QVERIFY(reader.open() && reader.size() == file.size());
            Chunks read;
            while (!reader.atEnd() && read.size() <= lines.size())
                read << reader.readLine();
            QVERIFY2(read == lines, qPrintable(QString::number(block)));
        }
    }

    // The exact dialogue of each type goes through the real port, and an X-off for good in
    // tests/faults; here the other ways it ends. Only here is every write seen, so a send that
    // goes on after the window closed shows.
    void send_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<B>("wire");
        QTest::addColumn<QString>("told"); // what the one box says; none if empty
        const B all = Xon + numberedLines(10, "\r");
        row("303", 1, "", "R\r" + numberedLines(10, "\r") + Eot, "");
        row("303, window closed", 1, "close at line 2", "R\r" + numberedLines(2, "\r") + Eot, "");
        row("no port set up", 1, "no setup", B(), "Choose one with Setup.");
        row("missing file", 1, "missing", B(), "nothere.tap: No such file");
        row("empty file", 1, "empty", B(), "");
        row("XonXoff, window closed", 3, "close at line 2", Xon + numberedLines(2, "\r"), "");
        row("XonXoff, opening X-on", 3, "WaitXon, resume", all, "");
        row("XonXoff, no opening X-on", 3, "WaitXon", Xon, Timeout);
        row("XonXoff, halted, resumed", 3, "halt \x13, resume", all, "");
        row("XonXoff, X-off and X-on together", 3, "halt \x13\x11", all, "");
    }
    void send() {
        QFETCH(int, type);
        QFETCH(QString, fault);
        QFETCH(B, wire);
        QFETCH(QString, told);
        Run r(type, fault == "empty" ? B() : numberedLines(10));
        const QString path = fault == "missing" ? r.in("nothere.tap") : r.path;
        if (fault == "no setup")
            r.f.g.ComSettings.clear();
        r.f.g.WaitXon = fault.startsWith("WaitXon");
        // Each line must find the queue drained by the one before (nothing drains behind "R").
        r.f.comm.stallOutput = 2;
        r.f.comm.drainPerPoll = 1;
        bool drained = true;
        B previous;
        r.f.comm.onOutput = [&](const B &b) {
            if (type != 3 && !previous.isEmpty() && previous != "R\r")
                drained = drained && (r.f.comm.queued == 2 || r.f.state.ending());
            previous = b;
            if (type != 3)
                r.f.comm.inbox += Go;
            if (b == "L2\r" && fault.startsWith("halt ")) // what the control halts with
                r.f.comm.inbox += fault.mid(5, fault.indexOf(',') - 5).toLatin1();
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
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("tapeDir"); // afterwards; "": the folder of the programs
        row("PART", 1, true, "PART", "", "-", "PART.tap", "");
        row("PA: no PA.tap", 2, true, "PA", "PART.tap", "PA*.tap tap", "PART.tap", "");
        row("PART.NC", 1, true, "PART.NC", "", "-", "PART.NC", "");
        row("*", 1, true, "*", "", "**.tap tap", "", "");
        row("Cancel in the input box", 1, true, "", "EMPTY.tap", "*.tap tap", "EMPTY.tap", "");
        row("XonXoff ignores -b", 3, true, "-", "CUT.LCC", " lcc", "CUT.LCC", "");
        row("Cancel in the dialog", 2, false, "-", "", " tap", "", "");
        row("root folder", 1, false, "-", "/dnc-none.tap", " tap", "/dnc-none.tap", "/");
    }
    void choose() {
        QFETCH(int, type);
        QFETCH(QString, answer);
        QFETCH(QString, gives);
        QFETCH(QString, shown);
        QFETCH(QString, sent);
        Run r(type, B()); // empty files: the port stays shut
        for (const char *name : {"PART.tap", "PART.NC", "EMPTY.tap", "CUT.LCC"})
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
        QFETCH(QString, tapeDir);
        QCOMPARE(GetProfile(r.f.g, r.f.g.ConfigSection, QStringLiteral("TapeDir")),
                 tapeDir.isEmpty() ? r.dir.path() : tapeDir);
        if (sent.startsWith('/'))
            r.f.screen.takeBox(); // the file does not exist
    }

    void receive_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<Chunks>("chunks"); // one a pass, then silence or the window closing
        QTest::addColumn<bool>("closing");
        QTest::addColumn<B>("written");
        QTest::addColumn<B>("program");
        QTest::addColumn<bool>("timedOut");
        // A chunk with an EOT anywhere ends it, before any CR in it is looked at. The lines
        // themselves are collected as in a listing (see the map).
        row("line and EOT together", 1, Chunks{"N1\r", "N2\r\x04"}, false, Pc + Go, B("N1\r\n"),
            false);
        row("EOT first", 1, Chunks{"\x04", "A\r"}, false, Pc, B(), false);
        row("two lines in one chunk", 1, Chunks{"A\rB\r", "\x04"}, false, Pc + Go, B("A\r\n"),
            false);
        row("time-out mid-line", 1, Chunks{"A\r", "BC"}, false, Pc + Go, B("A\r\nBC"), true);
        row("silence counted anew", 1, Chunks{"", "A\r", Tick, "\x04"}, false, Pc + Go, B("A\r\n"),
            false);
        row("window closed: still saved", 1, Chunks{"N1\r"}, true, Pc + Go, B("N1\r\n"), false);
        row("XonXoff: nothing asked, nothing waited", 3, Chunks{}, false, B(), B(), true);
    }
    void receive() {
        QFETCH(int, type);
        QFETCH(Chunks, chunks);
        QFETCH(bool, closing);
        QFETCH(B, program);
        Run r(type, B());
        FakeLink &f = r.f;
        f.g.TimedOut = true; // left by an earlier wait
        deliverChunks(f, chunks);
        if (closing)
            f.yield.idle = [&f] { f.state.requestEnd(); };
        ReceiveFile(f.link);

        QTEST(f.comm.written(), "written");
        QTEST(f.g.TimedOut, "timedOut");
        QCOMPARE(f.screen.captions.last(), QString::number(program.size()));
        QCOMPARE(f.screen.text1, QString::fromLatin1(program));
        QVERIFY(f.screen.text1Visible == !program.isEmpty() &&
                f.screen.saveRequests.size() == (program.isEmpty() ? 0 : 1));
        QCOMPARE(f.comm.opens, 1);
        QCOMPARE(leftOver(f), QString());
    }

    void save_data() {
        QTest::addColumn<QString>("answer"); // the dialog's; "": Cancel
        QTest::addColumn<QString>("cncDir"); // afterwards
        QTest::addColumn<bool>("told");
        row("longer file replaced", "p.tap", "", false);
        row("Cancel: nothing written, CNCDir kept", "", "start", false);
        // "/proc" is no file even for root: CNCDir is stored before the file is tried.
        row("root folder", "/proc", "/", true);
        row("unwritable path", "none/p.tap", "none", true);
    }
    void save() {
        QFETCH(QString, answer);
        Run r(1, B(5000, 'X'));
        QFile file(r.in(answer));
        QVERIFY(answer != "p.tap" || QFile::copy(r.path, file.fileName()));
        PutProfile(r.f.g, r.f.g.ConfigSection, "CNCDir", r.in("start"));
        const QStringList files = QDir(r.dir.path()).entryList(QDir::Files);
        if (!answer.isEmpty())
            r.f.screen.saveAnswers.push_back(r.in(answer));
        SaveFile(r.f.link, "N1\r\nN2");

        QCOMPARE(r.f.screen.saveRequests.size(), 1);
        const FileDialogRequest &d = r.f.screen.saveRequests[0];
        QVERIFY(d.initDir == r.in("start") && d.defaultExt == "tap");
        QFETCH(QString, cncDir);
        QCOMPARE(GetProfile(r.f.g, r.f.g.ConfigSection, "CNCDir"), r.in(cncDir));
        QFETCH(bool, told);
        if (told) {
            const RecordingScreen::Box box = r.f.screen.takeBox();
            QVERIFY2(box.text.startsWith(file.fileName() + ": ") && !box.text.endsWith(": ") &&
                         box.icon == BoxIcon::Critical,
                     qPrintable(box.text));
        } else if (answer.isEmpty()) {
            QCOMPARE(QDir(r.dir.path()).entryList(QDir::Files), files);
        } else {
            QCOMPARE(readFile(file.fileName()), B("N1\r\nN2\r\n"));
        }
    }
};

QTEST_GUILESS_MAIN(TstScriptedPort)
#include "tst_scripted_port.moc"
