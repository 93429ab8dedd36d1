// The journal of transfers: where dncctl writes it, what a journal in trouble does to a send
// (nothing), eight senders at once, what `dncctl journal` gives back to a script; the writer's
// keeping of rows and the window's rows in this process.
#include "journal_rows.h"
#include "journal_thread.h"
#include "journal_writer.h"
#include "rows.h"
#include "tool_db_fixture.h"
#include "vcontrol_process.h"
#include "window_rig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <memory>
#include <unistd.h>

namespace {

// A tool name with braces, a comma and a backslash, which an SQL array must hold as they are.
const QByteArray
    Part("(PART)\r\n/T4 DRILL 8.5\r\n/T7 MILL 12\r\n/T9 TAP {M6,X} \\B\r\nN10 G0 X0\r\n"
         "N20 M30\r\n");
const QByteArray PartOnWire = "R\r" + QByteArray(Part).replace('\n', "") + "\x04\r";

QByteArray sha(const QByteArray &bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

// A shop folder: dnc.ini with [Shop] on a "303", the program PART.tap, and a state folder of
// its own; a virtual control for each dncctl that runs at once.
class Shop {
public:
    std::vector<std::unique_ptr<VControlProcess>> controls;

    explicit Shop(int count = 1, const QByteArray &more = {}) {
        writeFile(path("PART.tap"), Part);
        writeFile(path("dnc.ini"), "[Shop]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=1\n"
                                   "CNC=303\n" +
                                       more);
        m_env.insert("XDG_CONFIG_HOME", m_dir.path());
        m_env.insert("XDG_STATE_HOME", path("state"));
        for (int i = 0; i < count; ++i) {
            controls.push_back(std::make_unique<VControlProcess>());
            if (!controls.back()->start({"--type", "303", "--dir", m_dir.path()}))
                qFatal("no virtual control: %s", qPrintable(controls.back()->errorString()));
        }
    }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString journal() const { return path("state/dnc/journal.db"); }
    QProcessEnvironment &env() { return m_env; }

    // dncctl with `args` on control `i`, started; `shell` runs it under /bin/sh -c with that
    // text before it.
    void launch(QProcess &p, const QStringList &args, int i = 0, const QString &shell = {}) {
        const QStringList line =
            QStringList{"-s", "Shop", "--port", controls[size_t(i)]->device()} + args;
        p.setProcessEnvironment(m_env);
        p.setWorkingDirectory(m_dir.path());
        if (shell.isEmpty()) {
            p.start(DNCCTL_PATH, line);
            return;
        }
        QString command = shell + QStringLiteral(" exec '%1'").arg(DNCCTL_PATH);
        for (const QString &a : line)
            command += QStringLiteral(" '%1'").arg(a);
        p.start("/bin/sh", {"-c", command});
    }
    int run(QProcess &p, const QStringList &args, int i = 0, const QString &shell = {}) {
        launch(p, args, i, shell);
        return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit ? p.exitCode()
                                                                                  : -1;
    }
    // dncctl journal ... : its standard output, empty on a status other than 0.
    QByteArray read(const QStringList &args) {
        QProcess p;
        p.setProcessEnvironment(m_env);
        p.start(DNCCTL_PATH, QStringList{"journal"} + args);
        return p.waitForFinished(30000) && p.exitCode() == 0 ? p.readAllStandardOutput() : "";
    }

private:
    QTemporaryDir m_dir;
    QProcessEnvironment m_env = QProcessEnvironment::systemEnvironment();
};

// The rows as Python's csv module, which reads what spreadsheets write, reads them.
QList<QStringList> parseCsv(const QByteArray &text) {
    QProcess p;
    p.start("python3", {"-c", "import csv, io, json, sys; print(json.dumps(list(csv.reader("
                              "io.TextIOWrapper(sys.stdin.buffer, 'utf-8', newline='')))))"});
    p.write(text);
    p.closeWriteChannel();
    QList<QStringList> rows;
    if (p.waitForFinished(30000))
        for (const QJsonValue row : QJsonDocument::fromJson(p.readAllStandardOutput()).array())
            rows << row.toVariant().toStringList();
    return rows;
}

// Whether the immutable flag (root) or the mode (anyone else) keeps `path` from being written.
bool setWritable(const QString &path, bool on) {
    if (::geteuid() == 0)
        return QProcess::execute("chattr", {on ? "-i" : "+i", path}) == 0;
    return QFile::setPermissions(path,
                                 on ? QFile::ReadOwner | QFile::WriteOwner : QFile::ReadOwner);
}

} // namespace

class TestJournal : public QObject {
    Q_OBJECT
private slots:
    // Without -d the journal is a file of the user's own, made on first use wherever the
    // state folder is; Journal=0 in the section turns it off. A journal that cannot be written
    // leaves the send as it was: the same bytes on the wire, the same exit status; it is said
    // once, and so is the row that is lost, which the next program to write the journal counts.
    void defaultJournal_data() {
        QTest::addColumn<bool>("xdg"); // XDG_STATE_HOME set, else only HOME
        QTest::addColumn<QByteArray>("more");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("rows");
        QTest::newRow("XDG_STATE_HOME") << true << QByteArray() << "" << 1;
        QTest::newRow("HOME only") << false << QByteArray() << "" << 1;
        QTest::newRow("Journal=0") << true << QByteArray("Journal=0\n") << "" << 0;
        for (const char *fault : {"locked", "read-only", "full"})
            QTest::newRow(fault) << true << QByteArray() << fault << 0;
    }
    void defaultJournal() {
        QFETCH(bool, xdg);
        QFETCH(QByteArray, more);
        QFETCH(QString, fault);
        QFETCH(int, rows);
        Shop shop(1, more);
        const QString file = xdg ? shop.journal() : shop.path("home/.local/state/dnc/journal.db");
        shop.env().insert("HOME", shop.path("home"));
        if (!xdg)
            shop.env().remove("XDG_STATE_HOME");
        QString none, shell;
        std::unique_ptr<ToolDbConnection> made;
        if (!fault.isEmpty()) {
            made = openJournalDatabase("test", {file, true}, &none);
            QVERIFY2(made && createJournalTables(*made).isEmpty(), qPrintable(none));
        }
        QSqlQuery lock(made ? made->database() : QSqlDatabase());
        if (fault == "locked")
            QVERIFY(lock.exec("BEGIN EXCLUSIVE"));
        if (fault == "read-only")
            QVERIFY(setWritable(file, false));
        // No file may grow past 512 bytes, and the signal that would say so is ignored.
        if (fault == "full")
            shell = "trap '' XFSZ; ulimit -f 1;";
        QProcess p;
        const int code = shop.run(p, {"send", "PART.tap"}, 0, shell);
        if (fault == "read-only")
            QVERIFY(setWritable(file, true));
        if (fault == "locked")
            lock.exec("ROLLBACK");
        QCOMPARE(code, 0);
        QCOMPARE(shop.controls[0]->rxSettled(PartOnWire.size()), PartOnWire);
        const QString err = QString::fromUtf8(p.readAllStandardError());
        QCOMPARE(err.count("cannot be written"), made ? 1 : 0);
        QVERIFY2(err.isEmpty() ||
                     (made && err.contains("1 row(s) of the journal could not be written and are "
                                           "lost")),
                 qPrintable(err));
        QCOMPARE(QFile::exists(file), rows > 0 || made);
        const QList<QVariantMap> got = journalRows(file);
        QCOMPARE(got.size(), rows);
        if (!made) { // the tools of a send that reached the control whole, by machine
            QStringList tools;
            for (const QVariantMap &t : journalRows(file, "tool_usage"))
                tools << t["tool"].toString() + '@' + t["machine"].toString();
            QCOMPARE(tools.size(), 3 * rows);
            QVERIFY(rows == 0 || (got[0]["sha256"].toByteArray() == sha(Part) &&
                                  tools.first() == "drill 8.5@Shop"));
            return;
        }

        // The next send that can write the journal writes the count of the row lost first.
        QCOMPARE(shop.run(p, {"send", "PART.tap"}), 0);
        QCOMPARE(p.readAllStandardError(), QByteArray());
        QStringList lines;
        for (const QVariantMap &r : journalRows(file))
            lines << QStringList{r["machine"].toString(), r["operation"].toString(),
                                 r["outcome"].toString(), r["lines"].toString()}
                         .join(u' ');
        QCOMPARE(lines, QStringList({"Shop journal rows_lost 1",
                                     "Shop send done " + QString::number(Part.count('\n'))}));
        QVERIFY(!QFile::exists(shop.path("state/dnc/journal-lost")));
    }

    // The journal's own file, where no -d names a database, is called the journal whatever
    // keeps it from being used: the operator has no tool database to look for.
    void defaultJournalUnusable_data() {
        QTest::addColumn<QString>("blocker"); // what stands where the file would be
        QTest::addColumn<QString>("told");
        QTest::newRow("a folder in its place") << "journal.db"
                                               << "The journal \"%1\" is not a file.";
        QTest::newRow("a file in its folder's place") << "state"
                                                      << "The folder \"%2\" cannot be created.";
        QTest::newRow("no database") << ""
                                     << "The journal's tables cannot be made in \"%1\": ";
    }
    void defaultJournalUnusable() {
        QFETCH(QString, blocker);
        QFETCH(QString, told);
        QTemporaryDir dir;
        const QString folder = dir.filePath("state");
        const QString file = folder + "/journal.db";
        if (blocker == "journal.db")
            QVERIFY(QDir().mkpath(file));
        else if (blocker == "state")
            QVERIFY(writeFile(folder, "x"));
        else
            QVERIFY(QDir().mkpath(folder) && writeFile(file, QByteArray(4096, 'x')));
        QString why;
        auto made = openJournalDatabase("test", {file, true}, &why);
        if (made)
            why = createJournalTables(*made);
        QVERIFY2(why.startsWith(told.replace("%1", file).replace("%2", folder)) &&
                     !why.contains("tool database"),
                 qPrintable(why));
    }

    // A server login that may count tools but not make tables: the send and its count go on,
    // the run is told once that it has no journal, and nothing is kept for later.
    void noRightToMakeTables_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        engineRow("login without CREATE", PostgresOnly);
    }
    void noRightToMakeTables() {
        if (!QTest::currentDataTag())
            QSKIP("a server's case, and this run has no server");
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        const QString clerk = qEnvironmentVariable("DNC_PG_CLERK_URI");
        QVERIFY2(!clerk.isEmpty(), "DNC_PG_CLERK_URI unset: the test server has no such login");
        ToolDbFixture db(engine);
        QVERIFY(db.exec("DROP TABLE IF EXISTS transfer_journal, tool_usage, station_state"));
        QVERIFY(db.exec("GRANT SELECT, INSERT, UPDATE ON tool_list TO dnc_clerk"));
        Shop shop;
        QProcess p;
        QCOMPARE(shop.run(p, {"-d", clerk, "send", "PART.tap"}), 0);
        QCOMPARE(shop.controls[0]->rxSettled(PartOnWire.size()), PartOnWire);
        const QString err = QString::fromUtf8(p.readAllStandardError());
        QVERIFY2(err.count("There is no journal of this run.") == 1 &&
                     err.contains("permission denied") && !err.contains("lost"),
                 qPrintable(err));
        QCOMPARE(db.rows("SELECT tool, util FROM tool_list ORDER BY tool"),
                 QStringList({"drill 8.5:1", "mill 12:1", "tap {m6,x} \\b:1"}));
        QVERIFY(!db.exec("SELECT 1 FROM transfer_journal"));
        QVERIFY(!QFile::exists(shop.path("state/dnc/journal-lost")));
    }

    // Rows that cannot be written are kept in order and written with the next that can be;
    // beyond what is kept, the oldest go and a row says how many.
    void keptRows() {
        QTemporaryDir dir;
        const JournalTarget target{dir.filePath("journal.db"), true};
        QString none;
        const auto other = openJournalDatabase("other", target, &none);
        QVERIFY(other && createJournalTables(*other).isEmpty());
        QStringList said;
        {
            JournalWriter writer(
                target, [&said](const QString &t) { said << t; }, 0, 3);
            QSqlQuery lock(other->database());
            QVERIFY(lock.exec("BEGIN EXCLUSIVE"));
            JournalRow row;
            row.time = QDateTime::currentDateTimeUtc();
            row.operation = "send";
            row.outcome = "done";
            for (int i = 1; i <= 5; ++i) {
                row.machine = "M" + QString::number(i);
                writer.add(row);
            }
            QCOMPARE(writer.kept(), 3);
            QCOMPARE(writer.lost(), 2);
            QCOMPARE(said.size(), 1); // said once, not at every row
            QVERIFY(lock.exec("ROLLBACK"));
            QVERIFY(writer.flush());
        }
        QStringList got;
        for (const QVariantMap &r : journalRows(target.name))
            got << r["machine"].toString() + ':' + r["operation"].toString() + ':' +
                       r["lines"].toString();
        QCOMPARE(got, QStringList({"M5:journal:2", "M3:send:0", "M4:send:0", "M5:send:0"}));
        QCOMPARE(said.size(), 1);
    }

    // Eight dncctl sending at once into one database: a row each, none lost, the tools of
    // each counted in the tool list and in the usage.
    void eightAtOnce_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        engineRow("eight senders", BothEngines);
    }
    void eightAtOnce() {
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        ToolDbFixture db(engine);
        if (db.postgres())
            QVERIFY(db.exec("DROP TABLE IF EXISTS transfer_journal, tool_usage, station_state"));
        Shop shop(8);
        std::vector<std::unique_ptr<QProcess>> senders;
        for (int i = 0; i < 8; ++i) {
            senders.push_back(std::make_unique<QProcess>());
            shop.launch(*senders.back(), {"-d", db.path(), "send", "PART.tap"}, i);
        }
        for (int i = 0; i < 8; ++i) {
            QProcess &p = *senders[size_t(i)];
            QVERIFY(p.state() == QProcess::NotRunning || p.waitForFinished(60000));
            QVERIFY2(p.exitCode() == 0, p.readAllStandardError().constData());
            QCOMPARE(shop.controls[size_t(i)]->rxSettled(PartOnWire.size()), PartOnWire);
            QCOMPARE(p.readAllStandardError(), QByteArray());
        }
        const QList<QVariantMap> rows = journalRows(db.path());
        QCOMPARE(rows.size(), 8);
        for (const QVariantMap &r : rows)
            QCOMPARE(r["outcome"].toString() + ' ' + r["sha256"].toString(),
                     "done " + QString::fromLatin1(sha(Part)));
        QMap<QString, int> used;
        for (const QVariantMap &t : journalRows(db.path(), "tool_usage"))
            ++used[t["tool"].toString()];
        QCOMPARE(used,
                 (QMap<QString, int>{{"drill 8.5", 8}, {"mill 12", 8}, {"tap {m6,x} \\b", 8}}));
        QCOMPARE(db.rows("SELECT tool, util FROM tool_list ORDER BY tool"),
                 QStringList({"drill 8.5:8", "mill 12:8", "tap {m6,x} \\b:8"}));
    }

    // What a script gets back: CSV a spreadsheet reads, JSON a parser reads, with the names
    // scripts rely on; rows chosen by time, machine and outcome; old rows removed.
    void readBack() {
        Shop shop;
        const QString odd = QStringLiteral("a,b \"c\".tap");
        QVERIFY(writeFile(shop.path(odd), Part));
        QProcess p;
        QCOMPARE(shop.run(p, {"send", odd}), 0);
        {
            JournalWriter writer({shop.journal(), true}, {});
            JournalRow old;
            old.time = QDateTime(QDate(2026, 1, 5), QTime(8, 30), Qt::UTC);
            old.machine = "Lathe";
            old.operation = "receive";
            old.outcome = "timeout";
            old.message = "line one\nline two";
            writer.add(old);
            old.time = old.time.addDays(1);
            old.outcome = "done";
            writer.add(old);
            QCOMPARE(writer.kept(), 0);
        }
        const QStringList names{
            "time",  "host",  "machine", "device", "control", "operation", "file",        "program",
            "bytes", "lines", "sha256",  "start",  "outcome", "message",   "duration_ms", "user"};
        const QByteArray text = shop.read({"--format", "csv"});
        const QList<QStringList> csv = parseCsv(text);
        QCOMPARE(csv.size(), 4);
        QCOMPARE(text.count("\r\n"), 4); // each row ended by CR LF, none inside a field
        QCOMPARE(csv[0], names);
        QCOMPARE(csv[1][names.indexOf("message")], QStringLiteral("line one\nline two"));
        QCOMPARE(csv[1][names.indexOf("time")], QStringLiteral("2026-01-05T08:30:00.000Z"));
        const QStringList sent = csv[3];
        QCOMPARE(sent.size(), names.size());
        QCOMPARE(sent[names.indexOf("file")], shop.path(odd));
        QCOMPARE(sent[names.indexOf("sha256")], QString::fromLatin1(sha(Part)));
        QCOMPARE(sent[names.indexOf("bytes")], QString::number(PartOnWire.size() - 4));
        QCOMPARE(sent[names.indexOf("operation")] + sent[names.indexOf("outcome")], "senddone");

        QJsonParseError error;
        const QJsonDocument json =
            QJsonDocument::fromJson(shop.read({"--format", "json", "--machine", "Shop"}), &error);
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(json.array().size(), 1);
        const QJsonObject o = json.array()[0].toObject();
        QStringList keys = o.keys(), sorted = names;
        sorted.sort();
        QCOMPARE(keys, sorted);
        QCOMPARE(o["bytes"].toInteger(), PartOnWire.size() - 4);
        QCOMPARE(o["file"].toString(), shop.path(odd));
        QCOMPARE(QDateTime::fromString(o["time"].toString(), Qt::ISODateWithMs).timeSpec(),
                 Qt::UTC);

        // Chosen by time (a day given alone is taken in whole) and by outcome.
        const auto count = [&](const QStringList &args) {
            return shop.read(QStringList{"--format", "csv"} + args).count("\r\n") - 1;
        };
        QCOMPARE(count({"--until", "2026-01-05"}), 1);
        QCOMPARE(count({"--since", "2026-01-05T12:00", "--until", "2026-01-06"}), 1);
        QCOMPARE(count({"--outcome", "timeout"}), 1);
        QCOMPARE(count({"--machine", "Lathe", "--outcome", "done"}), 1);
        shop.read({"--prune-before", "2026-01-06"});
        QCOMPARE(count({}), 2);
    }

    // The window's rows come from the same records: a send through the window, as the port
    // took it. A journal held by another writer's lock does not hold the window.
    void windowSend() {
        if (qEnvironmentVariable("DNC_TOOL_ENGINES", "sqlite") == "postgres")
            QSKIP("one engine is enough");
        QTemporaryDir dir;
        writeFile(dir.filePath("P.tap"), Part);
        WindowRig r("303", "TapeDir=" + dir.path().toUtf8());
        r.f.comm.onOutput = [&r](const QByteArray &) { r.f.comm.inbox += Go; };
        r.open("-b"); // the file chosen by name
        const JournalTarget target{dir.filePath("journal.db"), true};
        QString none;
        const auto other = openJournalDatabase("other", target, &none);
        QVERIFY(other && createJournalTables(*other).isEmpty());
        QSqlQuery lock(other->database());
        QVERIFY(lock.exec("BEGIN EXCLUSIVE"));
        auto journal = std::make_unique<JournalThread>(target, [](const QString &) {});
        r.w->setJournal([&](const OutcomeRecord &record) {
            journal->add([record, g = r.f.g] {
                return journalRow(record, journalContext(g, "/dev/ttyS0"), g);
            });
        });
        r.guard.expect<QInputDialog>([](QInputDialog *box) {
            box->setTextValue(QStringLiteral("P"));
            box->accept();
        });
        QElapsedTimer took;
        took.start();
        QTest::mouseClick(r.w->Command1[1], Qt::LeftButton);
        QVERIFY2(took.elapsed() < JournalBusyTimeoutMs / 2,
                 qPrintable(QString::number(took.elapsed())));
        QVERIFY(lock.exec("ROLLBACK"));
        journal.reset(); // its last try writes what the lock held back
        const QByteArray wire = r.f.comm.written();
        QVERIFY2(wire.endsWith("N20 M30\r" + Eot), wire.toHex().constData());
        const QList<QVariantMap> rows = journalRows(dir.filePath("journal.db"));
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0]["operation"].toString() + ' ' + rows[0]["outcome"].toString(),
                 QStringLiteral("send done"));
        QCOMPARE(rows[0]["sha256"].toByteArray(), sha(Part));
        QCOMPARE(rows[0]["bytes"].toLongLong(), QByteArray(Part).replace('\n', "").size());
        QVERIFY(wire.contains(QByteArray(Part).replace('\n', "")));
        QCOMPARE(rows[0]["device"].toString(), QStringLiteral("/dev/ttyS0"));
    }
};

QTEST_MAIN(TestJournal)
#include "tst_journal.moc"
