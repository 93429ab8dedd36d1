// The tool list: the scan of a program's head on bytes alone; counting through the entry the
// send path uses, the waits for a lock, many stations at once and the grid, each case on a real
// SQLite file and on the PostgreSQL test server alike.

#include "fake_link.h"
#include "tool_count.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "tool_list_model.h"
#include "tool_scan.h"
#include "update_tool_list.h"

#include <QtTest>
#include <latch>
#include <mutex>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const QString Old = QStringLiteral("2020-01-01 00:00:00");
const QString DateForm = QStringLiteral("yyyy-MM-dd HH:mm:ss");

// DoEvents as the window has it: runs what is pending, and sleeps until something is.
struct EventYield : Yield {
    void DoEvents() override { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }
};

struct Sender {
    ToolDbFixture db;
    Globals g;
    RecordingScreen screen;
    ToolListUpdater updater;
    explicit Sender(ToolDbEngine engine, int busyTimeoutMs = 200, Yield *yield = nullptr)
        : db(engine), updater(g, screen, busyTimeoutMs, yield) {
        g.DatabasePath = db.path();
    }
    void send(const QByteArray &program) { updater.UpdateToolList(db.program(program)); }
};

void scan(const char *name, const QByteArray &file, const QStringList &names, bool fails = false,
          const QStringList &limits = {}) {
    QTest::newRow(name) << file << names << fails << limits;
}

// A port on the loopback that nobody listens on: a connect to it is refused at once.
int deadPort() {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof a;
    const bool bound = ::bind(fd, reinterpret_cast<sockaddr *>(&a), size) == 0 &&
                       ::getsockname(fd, reinterpret_cast<sockaddr *>(&a), &size) == 0;
    ::close(fd);
    return bound ? ntohs(a.sin_port) : 0;
}

// What of a password must never be seen: the whole in any spelling, and any longer piece.
QStringList leaksOf(const QString &password) {
    if (password.isEmpty())
        return {};
    const QString decoded = QUrl::fromPercentEncoding(password.toUtf8());
    QStringList leaks{password, decoded, QString::fromLatin1(QUrl::toPercentEncoding(decoded))};
    for (const QString &piece : password.split(QRegularExpression(QStringLiteral("[^A-Za-z0-9]"))))
        if (piece.size() >= 4)
            leaks << piece;
    return leaks;
}

// Letters that do not compress, so that a server's index meets the name at its full length.
QByteArray letters(int count, quint32 seed) {
    QRandomGenerator random(seed);
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += char('a' + random.bounded(26));
    return text;
}

// Every message Qt and its drivers give while it lives, from any thread.
class MessageCapture {
public:
    MessageCapture() {
        s_messages = &m_messages;
        m_previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
                const std::lock_guard lock(s_mutex);
                *s_messages << text;
            });
    }
    ~MessageCapture() { qInstallMessageHandler(m_previous); }
    QStringList messages() const {
        const std::lock_guard lock(s_mutex);
        return m_messages;
    }

private:
    static inline std::mutex s_mutex;
    static inline QStringList *s_messages = nullptr;
    QStringList m_messages;
    QtMessageHandler m_previous;
};

} // namespace

class TstToolList : public QObject {
    Q_OBJECT
private slots:
    void scanLines_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<QStringList>("limits");

        scan("blanks around and after the slash, inside kept",
             "   /T12 Drill   \r/ t12 big  drill\r", {"drill", "big  drill"});
        scan("number 0, no slash", "/t0 drill\rt12 drill\r", {});
        scan("no name", "/t12\r", {}, true);
        scan("limit leaves trailing blank", "/t12 drill (new)\r", {"drill "}, false, {"("});
        scan("limits in listed order, a capital never matches", "/t1 a(b-c\r/t2 Drill\r",
             {"a(b", "drill"}, false, {"-", "(", "D"});
        scan("limit at start leaves empty name", "/t1 drill\r", {""}, false, {"dr"});

        scan("percent inside a line ends the head", "/t1 a\r/t2 b%c\r/t3 c\r", {"a"});
        scan("half to even", "/t0.5 a\r/t0.6 b\r/t1.5 c\r/t2.5 d\r", {"b", "c", "d"});
        scan("16 bits: 32767 fits, 32768 stops", "/t32767 a\r/t32768 b\r/t2 c\r", {"a"}, true);
        scan("16 bits: -40000 stops", "/t-40000 b\r", {}, true);
        // A tab is no blank: ahead of the line or the t, after the name, before the name.
        scan("tabs", "\t/t1 a\r/\tt1 b\r/t1 c\t\r/t1\tdrill\r", {"c\t"}, true);

        scan("CR LF, last line without end", "/t1 a\r\n/t2 b", {"a", "b"});
        scan("lone LF stays inside", "/t1 a\n/t2 b\r", {"a\n/t2 b"});
        scan("CR CR LF, CR LF LF", "/t1 a\r\r\n/t2 b\r\n\n/t3 c\r", {"a", "b"});
    }
    void scanLines() {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, limits);
        std::array<QString, 11> table;
        std::copy(limits.begin(), limits.end(), table.begin() + 1);
        const ToolScan scan = scanToolLines(file, table, qint16(limits.size()));
        QTEST(scan.names, "names");
        QTEST(scan.failed(), "fails");
    }

    // Rows as "tool:util:Date", the Date "old" when untouched and "now" when counted.
    void counts_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        QTest::addColumn<QVariant>("xUtil");
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("failure"); // a part of the box's text; empty: no box
        const auto row = [](const char *name, std::optional<ToolDbEngine> only, QVariant xUtil,
                            const QByteArray &program, const QString &rows,
                            const QString &box = {}) {
            engineRow(name, only, xUtil, program, rows, box);
        };
        const QByteArray bad = "/t1 a\r/t2 x\r/t3 b\r";
        row("single quote and SQL are a plain name", BothEngines, 3,
            "/t1 o'hara\r/t1 o'hara\r/t1 x'); drop table tool_list; --\r",
            "x:3:old|DRILL:5:old|o'hara:2:now|x'); drop table tool_list; --:1:now");
        row("util at 32767", BothEngines, 32767, bad, "x:32767:old|DRILL:5:old|a:1:now", "32767");
        row("util empty", BothEngines, QVariant(QMetaType::fromType<int>()), bad,
            "x::old|DRILL:5:old|a:1:now", "x");
        // A server's smallint cannot hold it in the first place.
        row("util beyond 16 bits", SqliteOnly, 40000, bad, "x:40000:old|DRILL:5:old|a:1:now",
            "40000");
        row("double quote in a name", BothEngines, 3, "/t1 a\r/t2 \"x\" or 1=1\r/t3 b\r",
            "x:3:old|DRILL:5:old|a:1:now", "double quote");
        row("line without name", BothEngines, 3, "/t1 a\r/t2\r/t3 b\r",
            "x:3:old|DRILL:5:old|a:1:now", "/t2");
        // All lines of a program count together; the line that stops them, stops them there.
        row("a count reaches its highest inside the program", BothEngines, 32766,
            "/t1 x\r/t2 x\r/t3 b\r", "x:32767:now|DRILL:5:old", "32767");
        row("names repeated, a known one under another case", BothEngines, 32767,
            "/t1 drill\r/t2 new\r/t3 new\r/t1 drill\r/t4 x\r/t1 drill\r/t5 late\r",
            "x:32767:old|drill:7:now|new:2:now", "32767");
        // What a server can neither index nor hold is refused on either engine alike.
        const QByteArray longest = letters(2000, 1), tooLong = letters(3000, 2);
        row("a name of 2000 bytes", BothEngines, 3, "/t1 " + longest + "\r",
            "x:3:old|DRILL:5:old|" + longest + ":1:now");
        row("a name over 2000 bytes", BothEngines, 3, "/t1 a\r/t2 " + tooLong + "\r/t3 b\r",
            "x:3:old|DRILL:5:old|a:1:now", "3000 bytes long; a tool name may hold at most 2000");
        row("1001 characters of 2 bytes", BothEngines, 3,
            "/t1 a\r/t2 " + QByteArray(1001, '\xe9') + "\r/t3 b\r", "x:3:old|DRILL:5:old|a:1:now",
            "2002 bytes long");
        row("a NUL in a name", BothEngines, 3, QByteArray("/t1 a\r/t2 x") + '\0' + "y\r/t3 b\r",
            "x:3:old|DRILL:5:old|a:1:now", "\"x\u2400y\" holds a NUL");
    }
    void counts() {
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        QFETCH(QVariant, xUtil);
        QFETCH(QByteArray, program);
        QFETCH(QString, failure);
        Sender s{engine};
        QVERIFY(s.db.exec("INSERT INTO tool_list (tool, util, Date) VALUES ('x', ?, ?), "
                          "('DRILL', 5, ?)",
                          {xUtil, Old, Old}));
        const QString before = QDateTime::currentDateTime().toString(DateForm);
        s.send(program);
        const QString after = QDateTime::currentDateTime().toString(DateForm);
        QTEST(
            s.db.rows().join(u'|').replace(Old, "old").replace(before, "now").replace(after, "now"),
            "rows");
        if (!failure.isEmpty()) { // the screen fails the test on any other box
            const RecordingScreen::Box box = s.screen.takeBox();
            QVERIFY2(box.icon == BoxIcon::Critical && box.text.contains(failure),
                     qPrintable(box.text));
        }
    }

    // Another writer holds the lock a count needs: the operator is told that the database is
    // busy and for how long the send waits, the caller's events go on meanwhile (the window
    // paints), and the count goes through once the lock is let go within that time. A reader
    // in the middle of a read (the grid, a report) holds off nothing.
    void busyDuringSend_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        QTest::addColumn<QString>("hold"); // "exclusive": another program's, not even the schema
        QTest::addColumn<bool>("through"); // let go after 150 ms of 3 s; else held past 300 ms
        engineRow("another station counts the same tool, lets go within the wait", BothEngines,
                  QString("count"), true);
        engineRow("another station holds the tool past the wait", BothEngines, QString("count"),
                  false);
        engineRow("an exclusive transaction ends within the wait", SqliteOnly, QString("exclusive"),
                  true);
        engineRow("a read stays open", BothEngines, QString("read"), true);
    }
    void busyDuringSend() {
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        QFETCH(QString, hold);
        QFETCH(bool, through);
        const bool reading = hold == "read";
        const int releaseMs = 150, busyMs = through ? 3000 : 300;
        const QString wait = through ? QStringLiteral("3 s") : QStringLiteral("300 ms");
        EventYield yield;
        Sender s(engine, busyMs, &yield);
        QVERIFY(s.db.exec("INSERT INTO tool_list (tool, util, Date) VALUES ('drill', ?, ?)",
                          {reading ? 4 : 5, Old}));
        if (reading)
            s.send("/t1 drill\r"); // the first connection sets the file's mode
        ToolDbConnection other(QStringLiteral("other"), s.db.path(), 5000);
        QSqlDatabase otherDb = other.database();
        QSqlQuery read(otherDb);
        QSqlError error;
        if (reading)
            QVERIFY(read.exec("BEGIN") && read.exec("SELECT * FROM tool_list") && read.next());
        else
            QVERIFY(hold == "exclusive"
                        ? QSqlQuery(otherDb).exec(QStringLiteral("BEGIN EXCLUSIVE"))
                        : other.dialect().beginCount(otherDb, {"drill"}, 5000, {}, error));
        bool held = true;
        const auto release = [&] {
            if (std::exchange(held, false))
                read.exec(QStringLiteral("ROLLBACK"));
        };
        if (through && !reading)
            QTimer::singleShot(releaseMs, release);
        int ticks = 0;
        QString shown; // what the label showed while the send waited
        QTimer paint;
        connect(&paint, &QTimer::timeout, [&] {
            ++ticks;
            if (s.screen.label1Visible)
                shown = s.screen.captions.last();
        });
        paint.start(20);
        QElapsedTimer clock;
        clock.start();
        s.send("/t1 drill\r/t2 mill\r");
        const qint64 took = clock.elapsed();
        release();

        QVERIFY2(reading || ticks >= (through ? releaseMs : busyMs) / 40,
                 qPrintable(QString::number(ticks)));
        QVERIFY2(reading ? shown.isEmpty() : shown.contains("busy") && shown.contains(wait),
                 qPrintable(shown));
        QVERIFY(!s.screen.label1Visible);
        QCOMPARE(s.db.rows("SELECT tool, util FROM tool_list ORDER BY {key}"),
                 (through ? QStringList{"drill:6", "mill:1"} : QStringList{"drill:5"}));
        if (through) {
            QVERIFY(took < releaseMs + 1000);
        } else {
            const QString box = s.screen.takeBox().text;
            QVERIFY2(box.contains("busy") && box.contains(wait) && box.contains("\"drill\""),
                     qPrintable(box));
            QVERIFY2(took >= busyMs && took < busyMs + 1500, qPrintable(QString::number(took)));
        }
    }

    // Eight stations count programs with the same names at once, each send with a connection of
    // its own and the time-out the program waits for a lock, half of the names known under
    // another case and half new: no send is refused as busy, every line counts once, and every
    // name keeps one row.
    void concurrentStations_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        QTest::addColumn<int>("programs"); // per station
        engineRow("8 stations", BothEngines, 40);
    }
    void concurrentStations() {
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        QFETCH(int, programs);
        constexpr int Stations = 8;
        ToolDbFixture db{engine};
        QByteArray program;
        QStringList want;
        for (int i = 0; i < 6; ++i) {
            const QString name = QStringLiteral("tool %1").arg(i);
            program += "/t" + QByteArray::number(i + 1) + ' ' + name.toLatin1() + '\r';
            const int known = i % 2 ? 0 : 100 + i;
            if (known)
                QVERIFY(db.exec("INSERT INTO tool_list (tool, util, Date) VALUES (?, ?, ?)",
                                {name.toUpper(), known, Old}));
            want << name + ':' + QString::number(known + Stations * programs);
        }
        const QString file = db.program(program);
        QList<QStringList> failures(Stations);
        MessageCapture capture; // nothing of the driver's from any station's thread
        {
            std::latch ready(Stations); // all start counting together
            std::vector<std::jthread> stations;
            for (int k = 0; k < Stations; ++k)
                stations.emplace_back([&, k] {
                    Globals g;
                    g.DatabasePath = db.path();
                    RecordingScreen screen;
                    ToolListUpdater updater(g, screen);
                    ready.arrive_and_wait();
                    for (int j = 0; j < programs; ++j)
                        updater.UpdateToolList(file);
                    for (const RecordingScreen::Box &box : std::exchange(screen.boxes, {}))
                        failures[k] << box.text;
                });
        }
        for (const QStringList &f : failures)
            QVERIFY2(f.isEmpty(), qPrintable(f.join(u'|')));
        QVERIFY2(capture.messages().isEmpty(), qPrintable(capture.messages().join(u'\n')));
        QCOMPARE(db.rows("SELECT tool, util FROM tool_list ORDER BY tool"), want);
    }

    // A server that drops a session while a count waits for a lock, or under the grid: the
    // operator is told in words of this program, and nothing of the driver's reaches standard
    // error; the grid comes back by itself.
    void droppedSession_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        engineRow("terminated by the server", PostgresOnly);
    }
    void droppedSession() {
        if (!QTest::currentDataTag())
            QSKIP("a server's case, and this run has no server");
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        ToolDbFixture db{engine};
        QVERIFY(db.exec("INSERT INTO tool_list (tool, util, Date) VALUES ('drill', 5, ?)", {Old}));
        const auto dropOthers = [&](const QString &which) {
            QStringList dropped;
            db.exec("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = "
                    "current_database() AND pid <> pg_backend_pid() AND " +
                        which,
                    {}, &dropped);
            return dropped.size();
        };
        MessageCapture capture; // until every connection of the case is gone
        {
            ToolListModel grid(db.path(), 200);
            QVERIFY(grid.refresh());
            QCOMPARE(dropOthers("true"), 1);
            QVERIFY(!grid.setData(grid.index(0, 1), 9));
            QVERIFY(grid.refresh());
            QCOMPARE(grid.index(0, 1).data().toInt(), 5);
        }
        {
            ToolDbConnection other(QStringLiteral("other"), db.path(), 5000);
            QSqlDatabase otherDb = other.database();
            QSqlError error;
            QVERIFY(other.dialect().beginCount(otherDb, {"drill"}, 5000, {}, error));
            ToolCount count;
            std::jthread station([&] {
                const ToolDbConnection connection(QStringLiteral("station"), db.path(), 5000);
                count = countTools(connection, {"drill"}, QDateTime::currentDateTime());
            });
            QDeadlineTimer deadline(3000);
            int dropped = 0;
            while (!(dropped = dropOthers("wait_event_type = 'Lock'")) && !deadline.hasExpired())
                QThread::msleep(10);
            station.join();
            QSqlQuery(otherDb).exec(QStringLiteral("ROLLBACK"));
            QCOMPARE(dropped, 1);
            QVERIFY2(count.failure.contains("The tools of this program were not counted") &&
                         count.counted == 0,
                     qPrintable(count.failure));
        }
        QCOMPARE(db.rows("SELECT tool, util FROM tool_list"), QStringList{"drill:5"});
        QVERIFY2(capture.messages().isEmpty(), qPrintable(capture.messages().join(u'\n')));
    }

    // No message holds a password, whatever the URI looks like: at start-up, at a send, in the
    // grid, nor in a driver's words that quote a login (one libpq took from elsewhere).
    void passwordNeverShown_data() {
        QTest::addColumn<QString>("uri"); // {host} for a port nobody listens on
        QTest::addColumn<QString>("password");
        for (const char *password : {"50%offQX", "Kx#Yq7w", "Vb9 Zr4t", "Pw@Qz8k", "Rk2%23Lm7"})
            QTest::newRow(password)
                << QStringLiteral("postgresql://dnc:%1@{host}/tools").arg(password)
                << QString(password);
        QTest::newRow("no password") << "postgresql://dnc@{host}/tools"
                                     << "";
        QTest::newRow("password only") << "postgresql://:Mn5Hj@{host}/tools"
                                       << "Mn5Hj";
        QTest::newRow("in the query")
            << "postgresql://dnc@{host}/tools?sslmode=disable&password=Ty6Gh"
            << "Ty6Gh";
    }
    void passwordNeverShown() {
        QFETCH(QString, uri);
        QFETCH(QString, password);
        const int port = deadPort();
        QVERIFY(port > 0);
        const QString name = uri.replace("{host}", "127.0.0.1:" + QString::number(port));
        const QString elsewhere = QStringLiteral("Hq3Wd");

        QStringList shown{startToolDatabase(name).message};
        QTemporaryDir dir;
        const QString program = dir.filePath(QStringLiteral("P.tap"));
        writeFile(program, "/t1 drill\r");
        Globals g;
        g.DatabasePath = name;
        RecordingScreen screen;
        ToolListUpdater(g, screen, 200).UpdateToolList(program);
        shown << screen.takeBox().text;
        ToolListModel grid(name, 200);
        QVERIFY(!grid.refresh());
        shown << grid.errorText();
        for (const QString &text : shown)
            QVERIFY2(text.contains(toolDbDisplayName(name)), qPrintable(text));
        shown << toolDbSafeText(
            QStringLiteral(R"(no login for "%1": userinfo = "dnc:%2", password='%2')")
                .arg(name, elsewhere),
            name);

        const QStringList leaks = leaksOf(password) << elsewhere;
        for (const QString &text : shown) {
            for (const QString &leak : leaks)
                QVERIFY2(!text.contains(leak), qPrintable(leak + " in: " + text));
        }
    }

    // More rows than one fetch of the model: a half-read table would hold a count's write.
    void grid_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        engineRow("most used first, editable", BothEngines);
    }
    void grid() {
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        Sender s{engine};
        QVariantList binds;
        for (int i = 0; i < 600; ++i)
            binds << QString::number(i) << Old;
        QVERIFY(s.db.exec("INSERT INTO tool_list (tool, util, Date) VALUES " +
                              QStringList(600, QStringLiteral("(?, 2, ?)")).join(',') +
                              ", ('a', 3, ?), ('b', 4, ?)",
                          binds << Old << Old));
        ToolGrid grid(s.db.path());
        QVERIFY(grid.refresh());
        ToolListModel &model = *grid.toolModel();
        const auto top = [&] {
            return model.index(0, 0).data().toString() + model.index(1, 0).data().toString();
        };
        QCOMPARE(top(), QStringLiteral("ba"));

        s.send("/t1 a\r/t1 a\r/t1 new\r"); // with no box
        QVERIFY(grid.refresh());
        QCOMPARE(model.rowCount(), 603);
        QCOMPARE(top(), QStringLiteral("ab"));

        QVERIFY(model.setData(model.index(1, 1), "42")); // read anew: "b" leads
        QVERIFY(model.setData(model.index(1, 0), "c"));
        QVERIFY(!model.setData(model.index(1, 1), 40000)); // util is a 16-bit integer
        QCOMPARE(top(), QStringLiteral("bc"));
        QCOMPARE(s.db.rows("SELECT tool, util FROM tool_list WHERE util > 2 ORDER BY {key}"),
                 (QStringList{"c:5", "b:42"}));
    }
};

QTEST_MAIN(TstToolList)
#include "tst_tool_list.moc"
