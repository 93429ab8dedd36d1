// The station's row in station_state: written when what it does changes, and every 30 s when
// nothing does, so that dnc-web can tell a station at work from one that is gone.

#include "journal_db_fixture.h"
#include "station_state_writer.h"

#include <QtTest>

class StationStateTest : public QObject {
    Q_OBJECT

private slots:
    void percent_data();
    void percent();
    void writes_data();
    void writes();
    void failedWriteIsTriedAgain();
};

void StationStateTest::percent_data() {
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("percent"); // -1: none
    QTest::newRow("under way") << "Send file : 42%" << 42;
    QTest::newRow("before the first percent") << "Send file : %" << 0;
    QTest::newRow("whole") << "Sende Datei : 100%" << 100;
    QTest::newRow("no counter") << "Send file : " << -1;
    QTest::newRow("nothing") << "" << -1;
}

void StationStateTest::percent() {
    QFETCH(QString, caption);
    QFETCH(int, percent);
    const std::optional<int> p = percentOfCaption(caption);
    QCOMPARE(p ? *p : -1, percent);
}

namespace {

// state:percent:program:since:updated, times as seconds after the start.
QString rowOf(JournalDbFixture &db, const QDateTime &start, const QString &machine) {
    QSqlQuery q(QSqlDatabase::database(db.connectionName()));
    q.prepare(
        "SELECT state, percent, program, since, updated FROM station_state WHERE machine = ?");
    q.addBindValue(machine);
    if (!q.exec() || !q.next())
        return QStringLiteral("none");
    const auto seconds = [&](const QVariant &v) {
        const QDateTime t = v.metaType().id() == QMetaType::QDateTime
                                ? v.toDateTime()
                                : QDateTime::fromString(v.toString(), Qt::ISODateWithMs);
        return QString::number(start.msecsTo(t) / 1000.0);
    };
    return QStringList{q.value(0).toString(), q.isNull(1) ? "-" : q.value(1).toString(),
                       q.value(2).toString(), seconds(q.value(3)), seconds(q.value(4))}
        .join(u':');
}

} // namespace

void StationStateTest::writes_data() {
    QTest::addColumn<ToolDbEngine>("engine");
    engineRow("a day's work", BothEngines);
}

void StationStateTest::writes() {
    QFETCH(ToolDbEngine, engine);
    REQUIRE_TOOL_DB(engine);
    JournalDbFixture db(engine);
    ToolDbConnection connection("state", db.path(), 1000);
    QVERIFY(connection.isOpen());
    const QDateTime start = QDateTime(QDate(2026, 11, 24), QTime(8, 0), Qt::UTC);
    QDateTime now = start;
    StationActivity doing{"listening", {}, {}, "/dev/ttyS0"};
    StationStateWriter writer(
        connection, "Lathe 1", "pc1", [&] { return doing; }, [&] { return now; });
    db.station("Mill 2", "receiving", QVariant(QMetaType::fromType<int>()), start, start);

    struct Step {
        int at; // seconds after the start
        StationActivity activity;
        const char *row;
    };
    const Step steps[] = {
        {0, {"listening", {}, {}, "/dev/ttyS0"}, "listening:-::0:0"},
        {10, {"listening", {}, {}, "/dev/ttyS0"}, "listening:-::0:0"}, // nothing new
        {12, {"waiting", {}, "O1234", "/dev/ttyS0"}, "waiting:-:O1234:12:12"},
        {15, {"sending", 5, "O1234", "/dev/ttyS0"}, "sending:5:O1234:15:15"},
        {16, {"sending", 6, "O1234", "/dev/ttyS0"}, "sending:6:O1234:15:16"},
        {45, {"sending", 6, "O1234", "/dev/ttyS0"}, "sending:6:O1234:15:16"},
        {46, {"sending", 6, "O1234", "/dev/ttyS0"}, "sending:6:O1234:15:46"}, // 30 s since
        {50, {"device_gone", {}, {}, "/dev/ttyS0"}, "device_gone:-::50:50"},
        {200, {"device_gone", {}, {}, "/dev/ttyS0"}, "device_gone:-::50:200"},
    };
    for (const Step &s : steps) {
        now = start.addSecs(s.at);
        doing = s.activity;
        writer.look();
        QCOMPARE(writer.error(), QString());
        QCOMPARE(rowOf(db, start, "Lathe 1"), QString::fromLatin1(s.row));
    }
    now = start.addSecs(201);
    writer.write({"stopped", {}, {}, "/dev/ttyS0"});
    QCOMPARE(rowOf(db, start, "Lathe 1"), QString("stopped:-::201:201"));
    // Another station's row is its own.
    QCOMPARE(rowOf(db, start, "Mill 2"), QString("receiving:-::0:0"));
}

void StationStateTest::failedWriteIsTriedAgain() {
    JournalDbFixture db(ToolDbEngine::Sqlite);
    ToolDbConnection connection("state", db.path(), 1000);
    const QDateTime start = QDateTime(QDate(2026, 11, 24), QTime(8, 0), Qt::UTC);
    QDateTime now = start;
    StationStateWriter writer(
        connection, "Lathe 1", "pc1",
        [] {
            return StationActivity{"listening", {}, {}, {}};
        },
        [&] { return now; });
    QVERIFY(db.exec("ALTER TABLE station_state RENAME TO away"));
    writer.look();
    QVERIFY(!writer.error().isEmpty());
    QVERIFY(db.exec("ALTER TABLE away RENAME TO station_state"));
    now = start.addSecs(1); // long before the 30 s: the failed write is not taken as done
    writer.look();
    QCOMPARE(writer.error(), QString());
    QCOMPARE(rowOf(db, start, "Lathe 1"), QString("listening:-::0:1"));
}

QTEST_GUILESS_MAIN(StationStateTest)
#include "tst_station_state.moc"
