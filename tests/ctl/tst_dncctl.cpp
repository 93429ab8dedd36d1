// dncctl run as a process, as a script would run it, against the virtual control through the
// real port on a pseudo-terminal: the bytes that reach the control, the exit status, what
// stands on standard output and error, and that the port was closed on every way out.
#include "files.h"
#include "pty_pair.h"
#include "tool_db_fixture.h"
#include "vcontrol_process.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

namespace {

const QByteArray Go("\x10\x37");
const QByteArray Part("(PART)\r\n/T4 DRILL 8.5\r\nN10 G0 X0\r\nN20 M30\r\n");
const QByteArray PartOnWire("(PART)\r/T4 DRILL 8.5\rN10 G0 X0\rN20 M30\r");
const QByteArray A1("N1 G0 X0\rN2 M30\r"); // the control's programs, as it holds them
const QByteArray B2("N1\r");

// A program long enough to be cut short: at 9600 baud it takes about 15 s.
QByteArray longProgram() {
    QByteArray p;
    for (int i = 1; i <= 600; ++i)
        p += QStringLiteral("N%1 G01 X%2.5 Y-12.5 F300\r\n").arg(i).arg(i % 500).toLatin1();
    return p;
}

// The first `n` lines of a CR LF `program` as they go on the wire, each ended by CR.
QByteArray firstLines(const QByteArray &program, int n) {
    QByteArray out;
    const QList<QByteArray> lines = program.split('\n');
    for (int i = 0; i < n; ++i)
        out += lines[i]; // keeps its CR
    return out;
}

struct Result {
    int code = -1;
    QByteArray out;
    QByteArray err;
};

// A home for one run of dncctl: its settings folder, its files (PART.tap), its wire trace.
class Home {
public:
    Home() {
        m_env.insert("XDG_CONFIG_HOME", m_dir.path());
        m_env.insert("DNC_TRACE", path("trace.log"));
        m_env.insert("DNC_CLOCK_DIVISOR", "20"); // a 5 s time-out takes 250 ms
        m_env.remove("DNC_COM1");
        writeFile(path("PART.tap"), Part);
    }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    // "@name" stands for a file of this home.
    QStringList resolve(const QStringList &args) const {
        QStringList out;
        for (const QString &a : args)
            out << (a.startsWith(u'@') ? path(a.mid(1)) : a);
        return out;
    }
    void write(const QString &name, const QByteArray &bytes) const {
        QVERIFY(writeFile(path(name), bytes));
    }
    QByteArray read(const QString &name) const { return readFile(path(name)); }
    // dnc.ini with one section [Shop] for the control on COM1:, which names `device`.
    void setUp(const QString &type, const QString &device, int baud = 115200) {
        write("dnc.ini", QStringLiteral("[Shop]\nPort=COM1:\nBaud=%1\nParity=N\nData=8\nStop=1\n"
                                        "CNC=%2\n")
                             .arg(baud)
                             .arg(type)
                             .toUtf8());
        m_env.insert("DNC_COM1", device);
    }

    // Starts dncctl; `during` runs while it works (e.g. to send it a signal).
    Result run(const QStringList &args, const std::function<void(QProcess &)> &during = {},
               const QString &stderrFile = {}) {
        QProcess p;
        p.setProcessEnvironment(m_env);
        if (!stderrFile.isEmpty())
            p.setStandardErrorFile(stderrFile);
        p.start(QStringLiteral(DNCCTL_PATH), resolve(args));
        Result r;
        if (!p.waitForStarted(5000))
            return r;
        if (during)
            during(p);
        if (!p.waitForFinished(60000)) {
            p.kill();
            p.waitForFinished();
            return r;
        }
        r.out = p.readAllStandardOutput();
        r.err = p.readAllStandardError();
        r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        return r;
    }

    // Openings and closings of the port that the trace shows.
    int traced(const char *word) const {
        const QRegularExpression event(QStringLiteral("^\\S+ \\S+ %1 COM").arg(word),
                                       QRegularExpression::MultilineOption);
        return int(QString::fromLatin1(read("trace.log")).count(event));
    }

private:
    QTemporaryDir m_dir;
    QProcessEnvironment m_env = QProcessEnvironment::systemEnvironment();
};

// The virtual control with the programs A1.NC and "B 2.NC" in its store.
struct Control {
    VControlProcess vc;
    QTemporaryDir store;
    bool start(const QString &type, const QStringList &faults = {}) {
        for (const auto &[name, bytes] : {std::pair{"A1.NC", A1}, std::pair{"B 2.NC", B2}})
            if (!writeFile(store.filePath(QString::fromLatin1(name)), bytes))
                return false;
        return vc.start(QStringList{"--type", type, "--dir", store.path(), "--end-gap", "200"} +
                        faults);
    }
    QStringList programs() const { return QDir(store.path()).entryList(QDir::Files); }
    QByteArray program(const QString &name) const { return readFile(store.filePath(name)); }
};

const QStringList Both{"A1.NC", "B 2.NC"};

} // namespace

class TestDncctl : public QObject {
    Q_OBJECT
private slots:
    void commands_data();
    void commands();
    void faults_data();
    void faults();
    void interrupt_data();
    void interrupt();
    void progress_data();
    void progress();
    void overridesLeaveTheSettingsAlone();
    void toolDatabase();
};

namespace {
// The columns of the commands' table and of the faults' table alike.
void addColumns() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("faults"); // of the control
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QByteArray>("rx");        // all that the control read
    QTest::addColumn<int>("code");             // exit status
    QTest::addColumn<QByteArray>("out");       // standard output
    QTest::addColumn<QString>("err");          // a part of the reason given; empty: none
    QTest::addColumn<QStringList>("programs"); // the control's store afterwards; empty: any
    QTest::addColumn<QByteArray>("saved");     // @got.tap afterwards; null: not there
}
} // namespace

void TestDncctl::commands_data() {
    addColumns();
    const QByteArray listing = "MC,/ISO\r" + Go + Go + Go;
    const QStringList withNew = Both + QStringList{"PROG1.NC"};
    const auto row = [](const char *name, const char *type, const QStringList &args,
                        const QByteArray &rx, int code, const QByteArray &out = {},
                        const QStringList &programs = Both, const QByteArray &saved = {}) {
        QTest::newRow(name) << QString::fromLatin1(type) << QStringList() << args << rx << code
                            << out << QString() << programs << saved;
    };
    row("send 303", "303", {"send", "@PART.tap"}, "R\r" + PartOnWire + "\x04\r", 0, {}, withNew);
    row("send 504", "504", {"send", "@PART.tap"}, "R\r" + PartOnWire + "\x04\r", 0, {}, withNew);
    row("send XonXoff", "XonXoff", {"send", "@PART.tap"}, "\x11" + PartOnWire, 0, {},
        Both + QStringList{"PROG1.LCC"});
    row("receive 303 into a file", "303", {"receive", "@got.tap"}, "PC\r" + Go + Go + Go, 0, {},
        Both, "N1 G0 X0\r\nN2 M30\r\n\r\n");
    row("receive 504 by name to standard output", "504", {"receive", "A1.NC", "-"},
        listing + "PC,/ISO/A1.NC\r" + Go + Go + Go, 0, "N1 G0 X0\r\nN2 M30\r\n\r\n");
    row("receive 504, a name with a blank", "504", {"receive", "B 2.NC", "@got.tap"},
        listing + "PC,/ISO/B 2.NC\r" + Go + Go, 0, {}, Both, "N1\r\n\r\n");
    row("receive 504, name not listed", "504", {"receive", "NOPE", "@got.tap"}, listing, 6);
    row("list 303", "303", {"list"}, "MC\r" + Go + Go + Go, 0, "A1.NC\nB 2.NC\n");
    row("list 504", "504", {"list"}, listing, 0, "A1.NC\nB 2.NC\n");
    row("change 303", "303", {"change"}, "CC", 0);
    row("execute 303", "303", {"execute"}, "CE", 0);
    row("delete 504", "504", {"delete", "B 2.NC"}, listing + "DC,/ISO/B 2.NC\r" + Go, 0, {},
        {"A1.NC"});
    row("delete 504, name not listed", "504", {"delete", "NOPE"}, listing, 6);
    // Refused before the port is opened.
    row("change on 504: not offered", "504", {"change"}, {}, 8);
    row("execute on XonXoff: not offered", "XonXoff", {"execute"}, {}, 8);
    row("delete on 303: not offered", "303", {"delete", "A1.NC"}, {}, 8);
    row("receive on 303 with a name", "303", {"receive", "A1.NC", "@got.tap"}, {}, 2);
    row("receive on 504 without a name", "504", {"receive", "@got.tap"}, {}, 2);
    row("send a missing file", "303", {"send", "@none.tap"}, {}, 5);
    row("receive into a missing folder", "303", {"receive", "@no/such/got.tap"}, {}, 5);
}

void TestDncctl::commands() {
    QFETCH(QString, type);
    QFETCH(QStringList, faults);
    QFETCH(QStringList, args);
    QFETCH(QByteArray, rx);
    QFETCH(int, code);
    QFETCH(QString, err);
    QFETCH(QStringList, programs);
    QFETCH(QByteArray, saved);
    Control control;
    QVERIFY2(control.start(type, faults), qPrintable(control.vc.errorString()));
    Home home;
    home.setUp(type, control.vc.device());

    const Result r = home.run(QStringList{"-s", "Shop"} + args);
    QCOMPARE(r.code, code);
    QTEST(r.out, "out");
    // Nothing but a reason on standard error, and only when something went wrong.
    QVERIFY2(r.err.isEmpty() == (code == 0), r.err.constData());
    QVERIFY2(QString::fromUtf8(r.err).contains(err), r.err.constData());
    if (!programs.isEmpty())
        QTRY_COMPARE(control.programs(), programs);
    QTest::qWait(50); // nothing more may follow
    control.vc.refresh();
    QCOMPARE(control.vc.rx(), rx);
    for (const QString &name : programs)
        if (name.startsWith(u"PROG"))
            QCOMPARE(control.program(name), PartOnWire);
    QCOMPARE(QFile::exists(home.path("got.tap")), !saved.isNull());
    QCOMPARE(home.read("got.tap"), saved);
    // Opened once and closed again; never opened when refused beforehand.
    QCOMPARE(home.traced("OPEN"), rx.isEmpty() ? 0 : 1);
    QCOMPARE(home.traced("CLOSE"), home.traced("OPEN"));
}

void TestDncctl::faults_data() {
    addColumns();
    const QString timeout = QStringLiteral("Timeout - No answer from CNC");
    const QString gone = QStringLiteral("it was unplugged, or closed at the other end");
    const auto row = [](const char *name, const char *type, const QStringList &faults,
                        const QStringList &args, const QByteArray &rx, int code,
                        const QString &err) {
        QTest::newRow(name) << QString(type) << faults << args << rx << code << QByteArray() << err
                            << QStringList() << QByteArray();
    };
    const QStringList silent{"--silent"};
    row("send 303 to a silent control: EOT all the same", "303", silent, {"send", "@PART.tap"},
        "R\r\x04\r", 3, timeout);
    row("receive from a silent 303", "303", silent, {"receive", "@got.tap"}, "PC\r" + Go, 3,
        timeout);
    row("list a silent 504, in German", "504", silent, {"-c", "049", "list"}, "MC,/ISO\r" + Go, 3,
        QStringLiteral("Wartezeit überschritten - Keine Antwort von CNC erhalten"));
    row("delete on a silent 504", "504", silent, {"delete", "A1.NC"}, "MC,/ISO\r" + Go, 3, timeout);
    row("send 303, the device vanishes", "303", {"--crash-after-line", "3"}, {"send", "@PART.tap"},
        "R\r" + firstLines(Part, 3), 4, gone);
    row("an absent device", "303", {}, {"--port", "/dev/no-such-tty", "change"}, {}, 4,
        QStringLiteral("/dev/no-such-tty): cannot be opened"));
}

void TestDncctl::faults() {
    commands();
}

void TestDncctl::interrupt_data() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("signal");
    const auto row = [](const char *name, const char *type, const char *command, int signal) {
        QTest::newRow(name) << QString(type) << QString(command) << signal;
    };
    row("SIGINT in a send to a 303", "303", "send", SIGINT);
    row("SIGTERM in a send to a 504", "504", "send", SIGTERM);
    row("SIGINT in a send to an XonXoff", "XonXoff", "send", SIGINT);
    row("SIGINT in a reception from a 303", "303", "receive", SIGINT);
}

void TestDncctl::interrupt() {
    QFETCH(QString, type);
    QFETCH(QString, command);
    QFETCH(int, signal);
    const QByteArray program = longProgram();
    const QByteArray wire = QByteArray(program).replace("\r\n", "\r");
    Control control;
    QVERIFY(writeFile(control.store.filePath("LONG.NC"), wire));
    QVERIFY2(control.start(type, {"--pc-program", "LONG.NC"}),
             qPrintable(control.vc.errorString()));
    Home home;
    home.write("long.tap", program);
    home.setUp(type, control.vc.device(), 9600);
    const bool send = command == u"send";

    const Result r =
        home.run({"-s", "Shop", command, send ? "@long.tap" : "@got.tap"}, [&](QProcess &p) {
            // Twenty lines on their way, then the signal.
            QVERIFY(control.vc.waitUntil(
                [&] { return (send ? control.vc.rx() : control.vc.tx()).count('\r') > 20; },
                10000));
            ::kill(pid_t(p.processId()), signal);
        });
    QCOMPARE(r.code, 128 + signal);
    QVERIFY2(r.err.contains("interrupted"), r.err.constData());
    QCOMPARE(home.traced("OPEN"), 1);
    QCOMPARE(home.traced("CLOSE"), 1);
    QTest::qWait(100);
    control.vc.refresh();
    const QByteArray rx = control.vc.rx();
    if (!send) {
        // Cut short: not saved as if it were whole.
        QVERIFY(!QFile::exists(home.path("got.tap")));
        QVERIFY2(r.err.contains("not saved"), r.err.constData());
        QVERIFY(rx.startsWith("PC\r" + Go));
        return;
    }
    if (type == u"XonXoff") {
        // No end mark in this dialogue: the stream stops, and all that went out arrived.
        QVERIFY(rx.startsWith('\x11'));
        QVERIFY(wire.startsWith(rx.mid(1)));
        QVERIFY(rx.size() > 400 && rx.size() < wire.size());
        QVERIFY(control.vc.waitForEvent("STORED"));
        QCOMPARE(control.program("PROG1.LCC"), rx.mid(1));
        return;
    }
    // Whole lines, each acknowledged, then EOT CR: the control keeps what it took.
    const int lines = int(rx.count('\r')) - 2;
    QVERIFY2(lines >= 20 && lines < 600, rx.right(80).constData());
    QCOMPARE(rx, "R\r" + firstLines(program, lines) + "\x04\r");
    QVERIFY(control.vc.waitForEvent("STORED"));
    QCOMPARE(control.program("PROG1.NC"), firstLines(program, lines));
}

// Standard error as a terminal; as a pipe it stays empty on success (commands).
void TestDncctl::progress_data() {
    QTest::addColumn<bool>("quiet");
    QTest::newRow("a progress line") << false;
    QTest::newRow("--quiet: none") << true;
}

void TestDncctl::progress() {
    QFETCH(bool, quiet);
    Control control;
    QVERIFY2(control.start("303"), qPrintable(control.vc.errorString()));
    Home home;
    home.setUp("303", control.vc.device());
    PtyPair tty;
    QVERIFY2(tty.isOpen(), qPrintable(tty.error()));

    QStringList args{"-s", "Shop", "send", "@PART.tap"};
    if (quiet)
        args.prepend("--quiet");
    Result r = home.run(args, {}, tty.slavePath());
    QCOMPARE(r.code, 0);
    QVERIFY(r.out.isEmpty());
    for (QByteArray got; !(got = tty.receive(4096, 200)).isEmpty();)
        r.err += got;
    if (quiet) {
        QCOMPARE(r.err, QByteArray());
        return;
    }
    // Redrawn in place, ending at the last caption of the send, then a line end.
    QVERIFY2(r.err.startsWith("\rSend file : "), r.err.constData());
    QVERIFY(r.err.contains(" characters/s"));
    QVERIFY2(r.err.contains("PART.tap - 81%  "), r.err.constData()); // 35 of 43 bytes
    QVERIFY(r.err.endsWith("\033[K\n"));
}

void TestDncctl::overridesLeaveTheSettingsAlone() {
    Control control;
    QVERIFY2(control.start("303"), qPrintable(control.vc.errorString()));
    Home home;
    const QByteArray ini = "; the shop's own\n[Shop]\nPort=COM2:\nBaud=300\nParity=E\nData=7\n"
                           "Stop=2\nCNC=504\n";
    home.write("dnc.ini", ini);
    const QStringList line{
        "--port", control.vc.device(), "--baud", "115200", "--parity", "N", "--data", "8", "--stop",
        "1"};

    Result r = home.run(QStringList{"-s", "Shop"} + line + QStringList{"--cnc", "303", "change"});
    QCOMPARE(r.code, 0);
    QVERIFY(control.vc.waitUntil([&] { return control.vc.rx() == "CC"; }, 3000));
    QCOMPARE(home.read("dnc.ini"), ini);

    // A section that is not there: the line alone does not say which control it is.
    r = home.run(QStringList{"-s", "Nowhere"} + line + QStringList{"change"});
    QCOMPARE(r.code, 8);
    QVERIFY2(r.err.contains("--cnc"), r.err.constData());
    QCOMPARE(home.read("dnc.ini"), ini);
    QCOMPARE(home.traced("OPEN"), 1);

    QCOMPARE(home.run({"--baud", "fast", "change"}).code, 2); // a line value no port takes
}

void TestDncctl::toolDatabase() {
    Control control;
    QVERIFY2(control.start("303"), qPrintable(control.vc.errorString()));
    Home home;
    home.setUp("303", control.vc.device());
    ToolDbFixture db;

    Result r = home.run({"-s", "Shop", "-d", db.path(), "-x", ".", "send", "@PART.tap"});
    QCOMPARE(r.code, 0);
    const QStringList rows = db.rows();
    QCOMPARE(rows.size(), 1);
    QVERIFY2(rows[0].startsWith("drill 8:1:"), qPrintable(rows[0])); // cut before the "."
    QVERIFY(control.vc.waitForEvent("STORED"));

    // A database that cannot be used: nothing is sent, so no count goes missing unseen.
    r = home.run({"-s", "Shop", "-d", home.path("none.db"), "send", "@PART.tap"});
    QCOMPARE(r.code, 7);
    QVERIFY(!QFile::exists(home.path("none.db")));
    QCOMPARE(home.traced("OPEN"), 1);
}

QTEST_GUILESS_MAIN(TestDncctl)
#include "tst_dncctl.moc"
