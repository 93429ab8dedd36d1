// dnc-web over HTTP: every page, the filters, the CSV, the status codes and the escaping, on a
// journal seeded with names that carry markup, quotes and formulas; and the requests a shop
// network may bring that must not stop the server.

#include "accept_language.h"
#include "http_exchange.h"
#include "journal_db_fixture.h"
#include "svg_chart.h"
#include "web_options.h"
#include "web_server.h"

#include <QtTest>

namespace {

const QString HostileMachine = QStringLiteral("Lathe <script>alert(1)</script>");
const QString HostileFile = QStringLiteral("/srv/nc/\"quoted\" & <b>.tap");
const QString HostileTool = QStringLiteral("<script>tool</script>");
const QVariant NoPercent(QMetaType::fromType<int>());

// Noon of a fixed local day: the pages' "today".
QDateTime daysAgo(int days, int hour = 12) {
    return QDateTime(QDate(2026, 11, 24).addDays(-days), QTime(hour, 0)).toUTC();
}
QDateTime fixedNow() {
    return daysAgo(0);
}

// The journal and a server on it whose clock the test sets.
struct Rig {
    explicit Rig(ToolDbEngine engine, const ConnectionLimits &limits = {})
        : db(engine), source(db.path()), server(source, limits, [this] { return now; }) {
        port = server.listen(QHostAddress::LocalHost, 0);
    }
    JournalDbFixture db;
    JournalSource source;
    QDateTime now = fixedNow();
    WebServer server;
    quint16 port = 0;
};

void seed(JournalDbFixture &db) {
    QVERIFY(db.transaction());
    db.transfer(daysAgo(0, 11), HostileMachine, "send", "O1<img src=x onerror=alert(1)>", "done",
                HostileFile, "", "/dev/ttyS0");
    db.transfer(daysAgo(1, 9), "Mill 2", "receive", "O2", "timeout");
    db.transfer(daysAgo(1, 10), "Mill 2", "send", "=HYPERLINK(\"x\")", "done", HostileFile);
    db.transfer(daysAgo(0, 10), "Press & Co", "request", "O4", "refused", "",
                "no \"such\" file <x>");
    for (int i = 0; i < 120; ++i)
        db.transfer(daysAgo(2).addSecs(i), "Mill 2", "send", QStringLiteral("F%1").arg(i), "done");
    db.station("Mill 2", "listening", NoPercent, daysAgo(0, 8), fixedNow().addSecs(-10),
               "/dev/ttyUSB0");
    db.station("Mill 3", "sending", 42, daysAgo(0, 8), fixedNow().addSecs(-95));
    db.station("Press & Co", "waiting", NoPercent, daysAgo(0, 8), fixedNow().addSecs(-30));
    // 25 tools, the hostile one most used; T01 on two days only.
    for (int i = 0; i < 30; ++i)
        db.toolUse(HostileTool, daysAgo(i % 20));
    for (int t = 2; t <= 25; ++t)
        for (int n = 0; n < 27 - t; ++n)
            db.toolUse(QStringLiteral("T%1").arg(t, 2, 10, QLatin1Char('0')), daysAgo(5));
    for (int day : {0, 0, 0, 3, 3, 40}) // the last outside the period
        db.toolUse("T01", daysAgo(day, 9));
    QVERIFY(db.commit());
}

} // namespace

class WebServerTest : public QObject {
    Q_OBJECT

private slots:
    void acceptLanguage_data() {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<int>("language");
        QTest::newRow("none") << QByteArray() << 1;
        QTest::newRow("French of Switzerland") << QByteArray("fr-CH, fr;q=0.9, en;q=0.8") << 2;
        QTest::newRow("German, upper case") << QByteArray("DE-at") << 3;
        QTest::newRow("English first") << QByteArray("en-US,en;q=0.9,de;q=0.8") << 1;
        QTest::newRow("weights, not order") << QByteArray("da, de;q=0.8, fr;q=0.9") << 2;
        QTest::newRow("refused with q=0") << QByteArray("de;q=0, it") << 1;
        QTest::newRow("equal weights keep order") << QByteArray("de;q=0.5, fr;q=0.5") << 3;
        QTest::newRow("garbage weight") << QByteArray("fr;q=abc, de;q=0.1") << 3;
    }
    void acceptLanguage() {
        QFETCH(QByteArray, header);
        QTEST(int(languageOfAcceptLanguage(header)), "language");
    }

    void commandLine_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("error"); // a part of the error; empty: none
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("listen");
        const auto row = [](const char *name, const QStringList &arguments, const char *error,
                            const char *database = "", const char *listen = "") {
            QTest::newRow(name) << arguments << QString(error) << QString(database)
                                << QString(listen);
        };
        row("nothing", {}, "", "", "127.0.0.1:8080");
        row("both", {"--listen", "0.0.0.0:80", "-d", "postgresql://dnc@s/dnc"}, "",
            "postgresql://dnc@s/dnc", "0.0.0.0:80");
        row("IPv6", {"--listen", "[::1]:80"}, "", "", "::1:80");
        for (const char *bad :
             {"::1:80", ":80", "shopfloor:80", "127.0.0.1:0", "127.0.0.1:65536", "127.0.0.1"})
            row(bad, {"--listen", bad}, bad);
        row("-d without its value", {"-d"}, "-d");
        row("-d with an empty value", {"-d", ""}, "-d");
        row("unknown", {"--port", "80"}, "--port");
    }
    void commandLine() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        const WebOptions o = WebCommandLine::parse(arguments);
        QCOMPARE(o.error.isEmpty(), error.isEmpty());
        QVERIFY2(o.error.contains(error), qPrintable(o.error));
        if (error.isEmpty()) {
            QTEST(o.database, "database");
            QTEST(o.address.toString() + ':' + QString::number(o.port), "listen");
        }
    }

    void ticks_data() {
        QTest::addColumn<qint64>("max");
        QTest::addColumn<qint64>("step");
        QTest::newRow("one") << qint64(1) << qint64(1);
        QTest::newRow("seven") << qint64(7) << qint64(2);
        QTest::newRow("thirty") << qint64(30) << qint64(10);
        QTest::newRow("1234") << qint64(1234) << qint64(500);
        QTest::newRow("nothing") << qint64(0) << qint64(1);
    }
    void ticks() {
        QFETCH(qint64, max);
        QTEST(tickStep(max, 5), "step");
    }

    void pages_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QByteArray>("marker"); // counted in the body
        QTest::addColumn<int>("markers");
        const auto page = [](const char *name, std::optional<ToolDbEngine> only, const char *target,
                             int status, const QStringList &present, const char *marker = "",
                             int markers = 0, const char *language = "") {
            engineRow(name, only, QByteArray(target), QByteArray(language), status, present,
                      QByteArray(marker), markers);
        };
        const QString machine = "Lathe &lt;script&gt;alert(1)&lt;/script&gt;";
        const char *machineRow = "<tr class=\"machine\">", *journalRow = "<tr><td>";
        page("machines", BothEngines, "/", 200,
             {machine, "O1&lt;img src=x onerror=alert(1)&gt;", "Listening", "Offline",
              "Waiting out a request&#39;s delay", "No station", "Press &amp; Co",
              "/journal?machine=Lathe%20%3Cscript%3E", "<html lang=\"en\">"},
             machineRow, 4);
        page("machines in French", BothEngines, "/", 200,
             {"À l&#39;écoute", "Hors ligne", "Pas de poste", "<html lang=\"fr\">"}, machineRow, 4,
             "fr-FR,fr;q=0.9");
        page("machines in German", BothEngines, "/", 200,
             {"Wartet auf die Steuerung", "Nicht erreichbar", "Maschinen"}, machineRow, 4, "de");
        page("journal, first page", BothEngines, "/journal", 200,
             {machine, "/srv/nc/&quot;quoted&quot; &amp; &lt;b&gt;.tap",
              "no &quot;such&quot; file &lt;x&gt;", "class=\"older\"", "Page 1"},
             journalRow, 50);
        page("journal, last page", BothEngines, "/journal?page=3", 200,
             {"class=\"newer\" href=\"/journal?page=2\"", "Page 3"}, journalRow, 24);
        page("journal by machine and outcome", BothEngines,
             "/journal?machine=Mill+2&outcome=timeout", 200,
             {"O2", "<option value=\"Mill 2\" selected>", "<option value=\"timeout\" selected>"},
             journalRow, 1);
        page("journal by day", BothEngines, "/journal?date=2026-11-23", 200,
             {"O2", "=HYPERLINK(&quot;x&quot;)"}, journalRow, 2);
        page("journal by a hostile machine", BothEngines,
             "/journal?machine=Lathe+%3Cscript%3Ealert(1)%3C%2Fscript%3E", 200,
             {"<option value=\"" + machine + "\" selected>",
              "/journal.csv?machine=Lathe%20%3Cscript%3Ealert%281%29%3C%2Fscript%3E"},
             journalRow, 1);
        page("journal, filter that cannot be read", BothEngines,
             "/journal?outcome=%27%3B+DROP+TABLE&date=yesterday&page=-4", 200, {"Page 1"},
             journalRow, 50);
        page("journal, no row", BothEngines, "/journal?date=2020-01-01", 200,
             {"No journal row matches."}, journalRow, 0);
        page("tools", BothEngines, "/tools", 200,
             {"&lt;script&gt;tool&lt;/script&gt;: 30",
              "href=\"/tools?tool=%3Cscript%3Etool%3C%2Fscript%3E\"",
              "Uses of &lt;script&gt;tool&lt;/script&gt; per day", "T20: 7"},
             "<g class=\"bar\">", 20);
        page("one tool per day", BothEngines, "/tools?tool=T01", 200,
             {"Uses of T01 per day", "24.11: 3", "21.11: 2", "20.11: 0", "Day"},
             "<circle class=\"point\"", 30);
        page("unknown page", SqliteOnly, "/nowhere", 404, {"There is no such page."});
        page("a path out of the root", SqliteOnly, "/../../etc/passwd", 404, {}, "root:");
        page("an encoded path out", SqliteOnly, "/%2e%2e/%2e%2e/etc/passwd", 404, {}, "root:");
        page("under the style sheet", SqliteOnly, "/style.css/../../../../etc/passwd", 404, {},
             "root:");
        page("style sheet", SqliteOnly, "/style.css", 200, {"svg .bar rect"});
        page("icon", SqliteOnly, "/icon.svg", 200, {"<svg"});
    }
    void pages() {
        QFETCH(ToolDbEngine, engine);
        QFETCH(QByteArray, target);
        QFETCH(QByteArray, language);
        QFETCH(QStringList, present);
        QFETCH(QByteArray, marker);
        REQUIRE_TOOL_DB(engine);
        Rig rig(engine);
        QVERIFY(rig.port);
        seed(rig.db);

        const HttpReply reply = httpExchange(rig.port, httpRequest("GET", target, language));
        QTEST(reply.status, "status");
        const QString body = QString::fromUtf8(reply.body);
        for (const QString &text : present)
            QVERIFY2(body.contains(text), qPrintable(text));
        if (!marker.isEmpty())
            QTEST(int(reply.body.count(marker)), "markers");
        // Whatever the page, nothing of the database comes through as markup.
        for (const char *raw : {"<script", "<img", "<b>", "<x>", "\"quoted\""})
            QVERIFY2(!reply.body.contains(raw), raw);
        QCOMPARE(reply.headers.value("content-security-policy").left(18), "default-src 'none'");
        QCOMPARE(reply.headers.value("x-content-type-options"), "nosniff");
    }

    void csv_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<int>("lines"); // without the header
        QTest::addColumn<QStringList>("present");
        engineRow("everything", BothEngines, QByteArray("/journal.csv"), 124,
                  QStringList{"\"Lathe <script>alert(1)</script>\"",
                              "\"/srv/nc/\"\"quoted\"\" & <b>.tap\"",
                              "\"'=HYPERLINK(\"\"x\"\")\""});
        engineRow(
            "one machine's failures", BothEngines,
            QByteArray("/journal.csv?machine=Mill%202&outcome=timeout"), 1,
            QStringList{"\"Mill 2\",\"\",\"\",\"receive\",\"\",\"O2\",1234,0,\"\",\"timeout\""});
        engineRow("one day", BothEngines, QByteArray("/journal.csv?date=2026-11-22"), 120,
                  QStringList{"\"F119\""});
    }
    void csv() {
        QFETCH(ToolDbEngine, engine);
        QFETCH(QByteArray, target);
        QFETCH(int, lines);
        QFETCH(QStringList, present);
        REQUIRE_TOOL_DB(engine);
        Rig rig(engine);
        seed(rig.db);
        const HttpReply reply = httpExchange(rig.port, httpRequest("GET", target));
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.headers.value("content-type"), "text/csv; charset=utf-8");
        QVERIFY(reply.headers.value("content-disposition").startsWith("attachment"));
        const QList<QByteArray> rows = reply.body.split('\n');
        QVERIFY(rows.first().startsWith("time,host,machine,"));
        QCOMPARE(rows.size() - 2, lines); // the header, and nothing after the last line end
        for (const QString &text : present)
            QVERIFY2(QString::fromUtf8(reply.body).contains(text), qPrintable(text));
        // Newest first, in UTC.
        QVERIFY(lines < 2 || rows.at(1).left(24) >= rows.at(2).left(24));
        QVERIFY(rows.at(1).left(24).endsWith('Z'));
    }

    void methods_data() {
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<int>("status");
        for (const char *m : {"POST", "PUT", "DELETE", "PATCH", "OPTIONS"})
            QTest::newRow(m) << QByteArray(m) << QByteArray("/journal") << 405;
        QTest::newRow("POST to no page") << QByteArray("POST") << QByteArray("/nowhere") << 405;
        QTest::newRow("HEAD") << QByteArray("HEAD") << QByteArray("/journal") << 200;
        QTest::newRow("HEAD of the CSV") << QByteArray("HEAD") << QByteArray("/journal.csv") << 200;
    }
    void methods() {
        QFETCH(QByteArray, method);
        QFETCH(QByteArray, target);
        QFETCH(int, status);
        Rig rig(ToolDbEngine::Sqlite);
        seed(rig.db);
        const HttpReply get = httpExchange(rig.port, httpRequest("GET", target));
        QByteArray request = httpRequest(method, target);
        if (method != "HEAD")
            request.replace("\r\n\r\n", "\r\nContent-Length: 7\r\n\r\nmachine");
        const HttpReply reply = httpExchange(rig.port, request);
        QCOMPARE(reply.status, status);
        if (status == 405) {
            QCOMPARE(reply.headers.value("allow"), "GET, HEAD");
            QVERIFY(!reply.body.contains("Mill 2"));
        } else { // GET's headers without its body, and the connection still in step
            QCOMPARE(reply.headers.value("content-length"), get.headers.value("content-length"));
            QCOMPARE(reply.headers.value("content-type"), get.headers.value("content-type"));
            QVERIFY(reply.body.isEmpty());
            QCOMPARE(httpExchange(rig.port, httpRequest("GET", "/style.css")).status, 200);
        }
        QCOMPARE(httpExchange(rig.port, httpRequest("GET", target)).body, get.body);
    }

    // A 4xx or the connection dropped, never a page; the others served meanwhile.
    void hostileRequests_data() {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<bool>("atOnce"); // not only when the request's time is out
        QTest::newRow("not HTTP") << QByteArray("GARBAGE\r\n\r\n") << true;
        QTest::newRow("binary") << QByteArray(1024, '\x01') + QByteArray(256, '\xff') << false;
        QTest::newRow("never ends") << QByteArray("GET / HTTP/1.1\r\nHost: x\r\n") << false;
        QTest::newRow("NUL in the path") << QByteArray("GET /\0x HTTP/1.1\r\n\r\n", 20) << true;
        QTest::newRow("huge header")
            << "GET / HTTP/1.1\r\nHost: x\r\nX-Big: " + QByteArray(200000, 'a') + "\r\n\r\n"
            << true;
        QTest::newRow("huge URL") << "GET /journal?machine=" + QByteArray(100000, 'a') +
                                         " HTTP/1.1\r\nHost: x\r\n\r\n"
                                  << true;
        QTest::newRow("huge body")
            << "GET / HTTP/1.1\r\nHost: x\r\nContent-Length: 10000000\r\n\r\n" +
                   QByteArray(300000, 'x')
            << true;
        QTest::newRow("many headers")
            << "GET / HTTP/1.1\r\n" + QByteArray("X-A: b\r\n").repeated(20000) + "\r\n"
            << true;
    }
    void hostileRequests() {
        QFETCH(QByteArray, request);
        QFETCH(bool, atOnce);
        ConnectionLimits limits;
        limits.requestTimeoutMs = atOnce ? 20000 : 300;
        Rig rig(ToolDbEngine::Sqlite, limits);
        seed(rig.db);
        QTcpSocket hostile;
        hostile.connectToHost(QStringLiteral("127.0.0.1"), rig.port);
        hostile.write(request);
        const auto closed = [&] { return hostile.state() == QAbstractSocket::UnconnectedState; };
        waitFor([&] { return hostile.bytesToWrite() == 0 || closed(); }, 2000);
        const HttpReply other = httpExchange(rig.port, httpRequest("GET", "/"));
        QCOMPARE(other.status, 200);
        QVERIFY(other.body.contains("Mill 2"));
        QByteArray answer;
        QVERIFY(waitFor(
            [&] {
                answer += hostile.readAll();
                return answer.size() >= 12 || closed();
            },
            3000));
        QVERIFY2(answer.isEmpty() ||
                     QRegularExpression("^HTTP/1\\.[01] 4\\d\\d ").match(answer).hasMatch(),
                 answer.left(40).constData());
    }

    void offlineAfter90s_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        QTest::addColumn<int>("age"); // seconds since the station's last word
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("since"); // what the Since column shows
        engineRow("just written", BothEngines, 0, QString("Sending, 7 %"), QString("11:00:00"));
        engineRow("one write missed", BothEngines, 89, QString("Sending, 7 %"),
                  QString("11:00:00"));
        engineRow("past 90 s", BothEngines, 91, QString("Offline"), QString("11:30:00"));
        engineRow("gone for a day", SqliteOnly, 86400, QString("Offline"),
                  QString("2026-11-24 11:30:00"));
    }
    void offlineAfter90s() {
        QFETCH(ToolDbEngine, engine);
        QFETCH(int, age);
        QFETCH(QString, state);
        QFETCH(QString, since);
        REQUIRE_TOOL_DB(engine);
        Rig rig(engine);
        const QDateTime written = fixedNow().addSecs(-1800);
        rig.db.station("Mill 9", "sending", 7, fixedNow().addSecs(-3600), written);
        rig.now = written.addSecs(age);
        const HttpReply reply = httpExchange(rig.port, httpRequest("GET", "/"));
        QCOMPARE(reply.status, 200);
        const QString body = QString::fromUtf8(reply.body);
        QVERIFY2(body.contains(">" + state + "<"), qPrintable(body));
        QVERIFY2(body.contains("<td>" + since + "</td>"), qPrintable(body));
    }

    // A journal not there yet: the default one is made on first use; a file named by -d is
    // not, and is read once it is there.
    void missingJournal_data() {
        QTest::addColumn<bool>("named");
        QTest::newRow("default") << false;
        QTest::newRow("named by -d") << true;
    }
    void missingJournal() {
        QFETCH(bool, named);
        QTemporaryDir dir;
        qputenv("XDG_STATE_HOME", dir.path().toUtf8());
        const QString path = dir.filePath(named ? "later.db" : "dnc/journal.db");
        JournalSource source(named ? path : QString());
        WebServer server(source, {}, &fixedNow);
        const quint16 port = server.listen(QHostAddress::LocalHost, 0);
        const HttpReply first = httpExchange(port, httpRequest("GET", "/"));
        qunsetenv("XDG_STATE_HOME");
        QCOMPARE(first.status, named ? 503 : 200);
        QVERIFY(!first.body.contains(path.toUtf8())); // no path of the server's disk
        QVERIFY(first.body.contains(named ? "The journal cannot be read"
                                          : "No station has reported and the journal is empty."));
        QCOMPARE(QFileInfo::exists(path), !named);
        {
            QString why;
            const auto db = openJournalDatabase("later", {path, true}, &why);
            QVERIFY(db && createJournalTables(*db).isEmpty());
            QVERIFY(QSqlQuery(db->database())
                        .exec("INSERT INTO transfer_journal (time, host, machine, operation, "
                              "outcome) VALUES ('2026-11-24T10:00:00.000Z', 'pc', 'Late 1', "
                              "'send', 'done')"));
        }
        for (const QByteArray target : {"/journal", "/tools"})
            QCOMPARE(httpExchange(port, httpRequest("GET", target)).status, 200);
        QVERIFY(httpExchange(port, httpRequest("GET", "/")).body.contains("Late 1"));
    }
};

QTEST_GUILESS_MAIN(WebServerTest)
#include "tst_web_server.moc"
