// dncctl run as a process, as a script would run it, against the virtual control through the
// real port on a pseudo-terminal: the bytes that reach the control, the exit status, and what
// stands on standard output and error.
#include "files.h"
#include "journal_rows.h"
#include "tool_db_fixture.h"
#include "vcontrol_process.h"

#include <QProcess>
#include <QTest>

#include <csignal>
#include <sys/stat.h>

namespace {

const QByteArray Go("\x10\x37");
const QByteArray Part("(PART)\r\n/T4 DRILL 8.5\r\nN10 G0 X0\r\nN20 M30\r\n");

// The virtual control, holding A1.NC and "B 2.NC", and a folder for dncctl to run in: its
// settings with a section [Shop] for the control and its files (PART.tap).
class Rig {
public:
    VControlProcess vc;

    bool start(const QString &type, const QStringList &faults = {}, int baud = 115200) {
        writeFile(path("PART.tap"), Part);
        writeFile(path("-part.tap"), "N1\r\n");
        writeFile(path("BLANK.tap"), "N1\r\n\r\nN2\r\nN3\r\n");
        writeFile(path("LF.tap"), "N1\nN2\n");
        ::mkfifo(QFile::encodeName(path("FIFO.tap")).constData(), 0600);
        if (!writeFile(stored("A1.NC"), "N1 G0 X0\rN2 M30\r") ||
            !writeFile(stored("B 2.NC"), "N1\r") ||
            !vc.start(QStringList{"--type", type, "--dir", m_store.path(), "--end-gap", "200"} +
                      faults))
            return false;
        m_env.insert("XDG_CONFIG_HOME", m_dir.path());
        m_env.insert("XDG_STATE_HOME", m_dir.path());
        m_env.insert("DNC_CLOCK_DIVISOR", "20"); // a 5 s time-out takes 250 ms
        m_env.insert("DNC_COM1", vc.device());
        // [Zero] names a port that is none.
        return writeFile(path("dnc.ini"), QStringLiteral("[Shop]\nPort=COM1:\nBaud=%1\nParity=N\n"
                                                         "Data=8\nStop=1\nCNC=%2\n[Zero]\n"
                                                         "Port=COM0:\nBaud=9600\nParity=N\n"
                                                         "Data=8\nStop=1\nCNC=%2\n")
                                              .arg(baud)
                                              .arg(type)
                                              .toUtf8());
    }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString journal() const { return m_dir.filePath(QStringLiteral("dnc/journal.db")); }
    QString stored(const QString &name) const { return m_store.filePath(name); }

    // Starts dncctl, or `program`, in this folder.
    void launch(QProcess &p, const QStringList &args,
                const QString &program = QStringLiteral(DNCCTL_PATH)) const {
        p.setProcessEnvironment(m_env);
        p.setWorkingDirectory(m_dir.path());
        p.start(program, args);
    }
    // Runs dncctl to its end: its exit status, -1 unless it ends normally within a minute.
    int run(QProcess &p, const QStringList &args,
            const QString &program = QStringLiteral(DNCCTL_PATH)) const {
        launch(p, args, program);
        return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit ? p.exitCode()
                                                                                  : -1;
    }

private:
    QTemporaryDir m_dir;
    QTemporaryDir m_store;
    QProcessEnvironment m_env = QProcessEnvironment::systemEnvironment();
};

} // namespace

class TestDncctl : public QObject {
    Q_OBJECT
private slots:
    void commands_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QByteArray>("rx");      // all that the control read
        QTest::addColumn<int>("code");           // exit status
        QTest::addColumn<QByteArray>("out");     // standard output
        QTest::addColumn<QByteArray>("saved");   // got.tap afterwards; null: not there
        QTest::addColumn<QStringList>("faults"); // of the control
        QTest::addColumn<QString>("err");        // a part of the reason given; empty: none
        QTest::addColumn<QString>("journal");    // "operation outcome" of its row; empty: none
        const auto row = [](const char *name, const char *type, const QStringList &args,
                            const QByteArray &rx, int code, const char *journal,
                            const QByteArray &out = {}, const QByteArray &saved = {},
                            const QStringList &faults = {}, const QString &err = {}) {
            QTest::newRow(name) << QString::fromLatin1(type) << args << rx << code << out << saved
                                << faults << err << QString::fromLatin1(journal);
        };
        const QByteArray listing = "MC,/ISO\r" + Go + Go + Go;
        const QByteArray program = "N1 G0 X0\r\nN2 M30\r\n\r\n";
        const QByteArray partOnWire = QByteArray(Part).replace('\n', "");
        row("send 303", "303", {"send", "PART.tap"}, "R\r" + partOnWire + "\x04\r", 0, "send done");
        row("receive 303 into a file", "303", {"receive", "got.tap"}, "PC\r" + Go + Go + Go, 0,
            "receive done", {}, program);
        row("receive 504 by name to standard output", "504", {"receive", "A1.NC", "-"},
            listing + "PC,/ISO/A1.NC\r" + Go + Go + Go, 0, "receive done", program);
        row("list 504", "504", {"list"}, listing, 0, "list done", "A1.NC\nB 2.NC\n");
        row("change 303", "303", {"change"}, "CC", 0, "change done");
        row("delete 504", "504", {"delete", "B 2.NC"}, listing + "DC,/ISO/B 2.NC\r" + Go, 0,
            "delete done");
        // Refused before anything reaches the control.
        row("change on 504: not offered", "504", {"change"}, {}, 8, "");
        row("receive into a missing folder", "303", {"receive", "no/such/got.tap"}, {}, 5, "");
        // Each command whose result a silence spoils says so, in the language of -c.
        const QStringList silent{"--silent"};
        const QString timeout = QStringLiteral("Timeout - No answer from CNC");
        row("send 303 to a silent control: EOT all the same", "303", {"send", "PART.tap"},
            "R\r\x04\r", 3, "send timeout", {}, {}, silent, timeout);
        row("list a silent 504, in German", "504", {"-c", "049", "list"}, "MC,/ISO\r" + Go, 3,
            "list timeout", {}, {}, silent,
            QStringLiteral("Wartezeit überschritten - Keine Antwort von CNC erhalten"));
        row("send 303, the device vanishes", "303", {"send", "PART.tap"},
            "R\r(PART)\r/T4 DRILL 8.5\rN10 G0 X0\r", 4, "send port_failure", {}, {},
            {"--crash-after-line", "3"}, "it was unplugged, or closed at the other end");
        // Ended well on the wire, but the control lacks lines: a status of their own.
        row("send 303, a blank line stops it", "303", {"send", "BLANK.tap"}, "R\rN1\r\x04\r", 10,
            "send done", {}, {}, {}, "the 2 lines with text behind it were not sent");
        row("send 303, LF line ends only", "303", {"send", "LF.tap"}, "R\rN1\nN2\n\r\x04\r", 10,
            "send done", {}, {}, {}, "its 2 lines ended by LF went out as one line");
        row("receive 303, two lines a chunk", "303", {"receive", "got.tap"}, "PC\r" + Go + Go, 10,
            "receive done", {}, "N1 G0 X0\r\n\r\n", {"--two-lines"},
            "1 lines the control sent were not kept");
        row("delete a name not on the control", "504", {"delete", "C3.NC"}, listing, 6,
            "delete not_on_control", {}, {}, {}, "C3.NC: no such program");
        // Part-way: the head (this one has neither number nor %), then from the place on; a
        // place the file does not hold is a file failure, with nothing sent.
        row("send from a line", "303", {"--from-line", "3", "send", "PART.tap"},
            "R\rN10 G0 X0\rN20 M30\r\x04\r", 0, "send done");
        row("send from a block it does not hold", "303",
            {"--from-block", "N99", "send", "PART.tap"}, {}, 5, "send file_failure", {}, {}, {},
            "no line of it is block N99");
        // Mistakes of a script's, told before the port opens.
        row("a file named with a dash, after --", "303", {"send", "--", "-part.tap"},
            "R\rN1\r\x04\r", 0, "send done");
        row("an empty limit string", "303", {"-x", "", "send", "PART.tap"}, {}, 2, "", {}, {}, {},
            "-x takes");
        row("a section whose port is COM0:", "303", {"-s", "Zero", "send", "PART.tap"}, {}, 8, "",
            {}, {}, {}, "Port=COM0: in section [Zero]");
        // The faults an operator meets first, in the language of -c, naming the port or file.
        row("--port naming no device, in German", "303",
            {"-c", "049", "--port", "/dev/ttyDNCNONE", "list"}, {}, 4, "list port_failure", {}, {},
            {},
            "Die Schnittstelle COM1: (/dev/ttyDNCNONE) kann nicht geöffnet werden: dieses Gerät "
            "gibt es nicht.");
        row("a FIFO to send, in German", "303", {"-c", "049", "send", "FIFO.tap"}, {}, 5, "", {},
            {}, {}, "dncctl: FIFO.tap: keine normale Datei\n");
    }
    void commands() {
        QFETCH(QString, type);
        QFETCH(QStringList, args);
        QFETCH(QByteArray, rx);
        QFETCH(int, code);
        QFETCH(QByteArray, saved);
        QFETCH(QStringList, faults);
        QFETCH(QString, err);
        Rig rig;
        QVERIFY2(rig.start(type, faults), qPrintable(rig.vc.errorString()));

        QProcess p;
        QCOMPARE(rig.run(p, QStringList{"-s", "Shop"} + args), code);
        const QByteArray out = p.readAllStandardOutput();
        QTEST(out, "out");
        // Nothing but a reason on standard error, and only when something went wrong.
        const QByteArray reason = p.readAllStandardError();
        QVERIFY2(reason.isEmpty() == (code == 0), reason.constData());
        QVERIFY2(QString::fromUtf8(reason).contains(err), reason.constData());
        // A device named for the run is not to be chosen in the window's dialog.
        QVERIFY2(!args.contains("--port") || !reason.contains("Setup"), reason.constData());
        QCOMPARE(rig.vc.rxSettled(rx.size()), rx);
        QCOMPARE(QFile::exists(rig.path("got.tap")), !saved.isNull());
        QCOMPARE(readFile(rig.path("got.tap")), saved);

        // One row for an operation that ran, none for a command refused before the port.
        QFETCH(QString, journal);
        const QList<QVariantMap> rows = journalRows(rig.journal());
        QCOMPARE(rows.size(), journal.isEmpty() ? 0 : 1);
        if (journal.isEmpty())
            return;
        const QVariantMap &r = rows[0];
        QCOMPARE(r["operation"].toString() + ' ' + r["outcome"].toString(), journal);
        QCOMPARE(r["machine"].toString(), QStringLiteral("Shop"));
        QCOMPARE(r["control"].toString(), type);
        QVERIFY(!r["user_name"].toString().isEmpty());
        const QByteArray sent = readFile(rig.path(args.last()));
        const QByteArray kept = args.last() == "-" ? out : saved;
        const auto sha = [](const QByteArray &b) {
            return QCryptographicHash::hash(b, QCryptographicHash::Sha256).toHex();
        };
        if (journal == "send done") {
            // The program's part of what the control read: without the start and the end mark.
            QCOMPARE(r["bytes"].toLongLong(), rx.size() - 4);
            QCOMPARE(r["sha256"].toByteArray(), sha(sent));
        } else if (journal == "receive done") {
            // What came over the line: the lines kept, without the LF the save adds to each
            // and the empty line it closes the file with.
            QCOMPARE(r["bytes"].toLongLong(), QByteArray(kept).replace("\r\n", "\r").size() - 1);
            QCOMPARE(r["sha256"].toByteArray(), sha(kept));
        }
    }

    // What an operation does when it is ended is checked where the window ends it; here, that
    // a signal ends it as the window would, and sets the exit status.
    void interrupt_data() {
        QTest::addColumn<bool>("send"); // to a "504"; else a reception from a "303"
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM in a send") << true << SIGTERM;
        QTest::newRow("SIGINT in a reception") << false << SIGINT;
    }
    void interrupt() {
        QFETCH(bool, send);
        QFETCH(int, signal);
        QByteArray program; // about 15 s at 9600 baud: long enough to be cut short
        for (int i = 1; i <= 600; ++i)
            program += "N" + QByteArray::number(i) + " G01 X12.5 Y-12.5 F300\r\n";
        Rig rig;
        QVERIFY(writeFile(rig.stored("LONG.NC"), QByteArray(program).replace('\n', "")));
        QVERIFY(writeFile(rig.path("long.tap"), program));
        QVERIFY2(rig.start(send ? "504" : "303", {"--pc-program", "LONG.NC"}, 9600),
                 qPrintable(rig.vc.errorString()));

        QProcess p;
        rig.launch(p, {"-s", "Shop", send ? "send" : "receive", send ? "long.tap" : "got.tap"});
        // Twenty lines on their way, then the signal.
        QVERIFY(rig.vc.waitUntil(
            [&] { return (send ? rig.vc.rx() : rig.vc.tx()).count('\r') > 20; }, 10000));
        ::kill(pid_t(p.processId()), signal);
        QVERIFY(p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit);
        QCOMPARE(p.exitCode(), 128 + signal);
        const QByteArray reason = p.readAllStandardError();
        QVERIFY2(reason.contains("interrupted"), reason.constData());
        // A send ends with its end mark, so that the control keeps what it took.
        if (send)
            QVERIFY(rig.vc.waitForEvent("STORED"));
        QVERIFY(!QFile::exists(rig.path("got.tap")));
        QCOMPARE(reason.contains("not saved"), !send);
    }

    // Standard output closed or full: the program is not lost unseen, and never goes down the
    // line in place of the terminal.
    void standardOutput_data() {
        QTest::addColumn<QString>("redirect");
        QTest::addColumn<QString>("err");
        QTest::addColumn<QByteArray>("rx");
        const QByteArray asked = "MC,/ISO\r" + Go + Go + Go + "PC,/ISO/A1.NC\r" + Go + Go + Go;
        QTest::newRow("closed") << ">&-"
                                << "standard output is closed" << QByteArray();
        QTest::newRow("full") << ">/dev/full"
                              << "No space left on device" << asked;
    }
    void standardOutput() {
        QFETCH(QString, redirect);
        QFETCH(QByteArray, rx);
        Rig rig;
        QVERIFY2(rig.start("504"), qPrintable(rig.vc.errorString()));
        QProcess p;
        const QString line = QStringLiteral("exec '%1' -s Shop receive A1.NC - %2")
                                 .arg(QStringLiteral(DNCCTL_PATH), redirect);
        QCOMPARE(rig.run(p, {"-c", line}, QStringLiteral("/bin/sh")), 5);
        QFETCH(QString, err);
        const QByteArray reason = p.readAllStandardError();
        QVERIFY2(reason.contains(err.toUtf8()), reason.constData());
        QCOMPARE(rig.vc.rxSettled(rx.size()), rx);
    }

    // Ended while the count waits for a database another station holds: the control is told
    // nothing, not even the start, so that it stores no empty program.
    void interruptWhileCounting() {
        Rig rig;
        QVERIFY2(rig.start("303"), qPrintable(rig.vc.errorString()));
        ToolDbFixture db;
        QVERIFY(db.exec(QStringLiteral("BEGIN IMMEDIATE"))); // readers may, writers wait
        QProcess p;
        rig.launch(p, {"-s", "Shop", "-d", db.path(), "send", "PART.tap"});
        QTest::qWait(700); // started, and waiting for the lock (it waits 2 s)
        ::kill(pid_t(p.processId()), SIGTERM);
        QVERIFY(p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit);
        QCOMPARE(p.exitCode(), 128 + SIGTERM);
        QCOMPARE(rig.vc.rxSettled(0), QByteArray());
        QVERIFY(db.exec(QStringLiteral("ROLLBACK")));
    }

    // A script's send with its own line and the tools counted: the line holds for this run
    // only, the shop's settings stay as they were.
    void lineAndToolDatabase() {
        Rig rig;
        QVERIFY2(rig.start("303"), qPrintable(rig.vc.errorString()));
        const QByteArray ini = "; the shop's own\n[Shop]\nPort=COM2:\nBaud=300\nParity=E\nData=7\n"
                               "Stop=2\nCNC=504\n";
        QVERIFY(writeFile(rig.path("dnc.ini"), ini));
        const QStringList line{
            "-s", "Shop",   "--port", rig.vc.device(), "--baud", "115200", "--parity",
            "N",  "--data", "8",      "--stop",        "1",      "--cnc",  "303"};
        ToolDbFixture db;
        QProcess p;
        QCOMPARE(rig.run(p, line + QStringList{"-d", db.path(), "-x", ".", "send", "PART.tap"}), 0);
        const QStringList rows = db.rows();
        QCOMPARE(rows.size(), 1);
        QVERIFY2(rows[0].startsWith("drill 8:1:"), qPrintable(rows[0])); // cut before the "."
        QVERIFY(readFile(rig.path("dnc.ini")).startsWith(ini)); // the send adds its TapeDir

        // A database that cannot be used: nothing is sent, so no count goes missing unseen.
        QCOMPARE(rig.run(p, line + QStringList{"-d", "none.db", "send", "PART.tap"}), 7);
        QVERIFY(!QFile::exists(rig.path("none.db")));
        QCOMPARE(rig.vc.rxSettled(0).count("\x04\r"), 1); // the first send's end only
    }
};

QTEST_GUILESS_MAIN(TestDncctl)
#include "tst_dncctl.moc"
