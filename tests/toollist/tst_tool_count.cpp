// Counting against a real SQLite file made from the committed schema, through the same
// entry the send path uses, and the start-up check of a database path.

#include "fake_link.h"
#include "tool_count.h"
#include "tool_db.h"
#include "tool_db_fixture.h"
#include "update_tool_list.h"

#include <QElapsedTimer>
#include <QtTest>

namespace {

constexpr int ShortBusyMs = 200;

struct Sender {
    ToolDbFixture db;
    Globals g;
    RecordingScreen screen;
    ToolListUpdater updater{g, screen, ShortBusyMs};
    Sender() {
        g.DatabasePath = db.path();
        g.ToolDbEnabled = true;
    }
    void send(const QByteArray &program) {
        updater.UpdateToolList(WriteFile(db.folder(), QStringLiteral("p.tap"), program));
    }
};

} // namespace

class TstToolCount : public QObject {
    Q_OBJECT
private slots:
    void firstCountThenNext();
    void twoLinesOneToolAddTwo();
    void storedUnderOtherCaseIsFoundAndLowered();
    void failurePathKeepsEarlierCounts_data();
    void failurePathKeepsEarlierCounts();
    void singleQuoteAndSqlAreAPlainName();
    void emptyFileChangesNothing();
    void lockedDatabaseFailsSoonAndStaysSound();
    void missingDatabaseIsNotCreated();
    void startUpCheck_data();
    void startUpCheck();
};

void TstToolCount::firstCountThenNext() {
    ToolDbFixture db;
    ToolDbConnection connection(QStringLiteral("test"), db.path(), ShortBusyMs);
    QVERIFY2(connection.isOpen(), qPrintable(connection.error()));
    const QDateTime first(QDate(2024, 3, 1), QTime(8, 0, 0));
    const QDateTime second(QDate(2024, 3, 2), QTime(9, 30, 15));

    ToolCount count = CountTools(connection.database(), {"drill"}, first);
    QVERIFY2(!count.failed(), qPrintable(count.failure));
    QList<ToolRow> rows = db.rows();
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows[0].util.toInt(), 1);
    QCOMPARE(rows[0].Date.toString(), QStringLiteral("2024-03-01 08:00:00"));

    count = CountTools(connection.database(), {"drill"}, second);
    QVERIFY2(!count.failed(), qPrintable(count.failure));
    rows = db.rows();
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows[0].tool, QStringLiteral("drill"));
    QCOMPARE(rows[0].util.toInt(), 2);
    QCOMPARE(rows[0].Date.toString(), QStringLiteral("2024-03-02 09:30:15"));
}

void TstToolCount::twoLinesOneToolAddTwo() {
    Sender s;
    const QString before = ToolDateText(QDateTime::currentDateTime());
    s.send("%PROGRAM\r"); // a head ending at once counts nothing
    s.send("/T1 Drill\r\n/t2 mill\r\n/t3 drill\r\n%\r\n/t4 drill\r\n");
    const QString after = ToolDateText(QDateTime::currentDateTime());
    QVERIFY(s.screen.boxes.isEmpty());
    const QList<ToolRow> rows = s.db.rows();
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows[0].tool, QStringLiteral("drill"));
    QCOMPARE(rows[0].util.toInt(), 2);
    QCOMPARE(rows[1].tool, QStringLiteral("mill"));
    QCOMPARE(rows[1].util.toInt(), 1);
    QVERIFY(rows[0].Date.toString() >= before && rows[0].Date.toString() <= after);
}

void TstToolCount::storedUnderOtherCaseIsFoundAndLowered() {
    Sender s;
    QVERIFY(s.db.exec("INSERT INTO tool_list VALUES ('other', 9, '2020-01-01 00:00:00')"));
    QVERIFY(s.db.exec("INSERT INTO tool_list VALUES ('DRILL', 5, '2020-01-01 00:00:00')"));
    QVERIFY(s.db.exec("INSERT INTO tool_list VALUES ('Drill', 7, '2020-01-01 00:00:00')"));
    s.send("/t1 drill\r");
    QVERIFY(s.screen.boxes.isEmpty());
    const QList<ToolRow> rows = s.db.rows();
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows[0].util.toInt(), 9);
    // The first row that matches takes the count and the scan's form of the name.
    QCOMPARE(rows[1].tool, QStringLiteral("drill"));
    QCOMPARE(rows[1].util.toInt(), 6);
    QVERIFY(rows[1].Date.toString() > QStringLiteral("2020"));
    QCOMPARE(rows[2].tool, QStringLiteral("Drill"));
    QCOMPARE(rows[2].util.toInt(), 7);
}

void TstToolCount::failurePathKeepsEarlierCounts_data() {
    QTest::addColumn<QVariant>("storedUtil");
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<QString>("reasonHolds");

    QTest::newRow("util at 32767")
        << QVariant(32767) << QByteArray("/t1 a\r/t2 x\r/t3 b\r") << QStringLiteral("32767");
    QTest::newRow("util empty") << QVariant() << QByteArray("/t1 a\r/t2 x\r/t3 b\r")
                                << QStringLiteral("x");
    QTest::newRow("util beyond 16 bits")
        << QVariant(40000) << QByteArray("/t1 a\r/t2 x\r/t3 b\r") << QStringLiteral("40000");
    QTest::newRow("double quote in a name")
        << QVariant(3) << QByteArray("/t1 a\r/t2 \"x\" or 1=1\r/t3 b\r")
        << QStringLiteral("double quote");
    QTest::newRow("line without name")
        << QVariant(3) << QByteArray("/t1 a\r/t2\r/t3 b\r") << QStringLiteral("/t2");
    QTest::newRow("number beyond 16 bits")
        << QVariant(3) << QByteArray("/t1 a\r/t99999 x\r/t3 b\r") << QStringLiteral("/t99999");
}

void TstToolCount::failurePathKeepsEarlierCounts() {
    QFETCH(QVariant, storedUtil);
    QFETCH(QByteArray, program);
    QFETCH(QString, reasonHolds);
    Sender s;
    QVERIFY(
        s.db.exec("INSERT INTO tool_list VALUES ('x', ?, '2020-01-01 00:00:00')", {storedUtil}));
    s.send(program);

    QCOMPARE(s.screen.boxes.size(), 1);
    QCOMPARE(s.screen.boxes[0].icon, BoxIcon::Critical);
    QVERIFY(s.screen.boxes[0].title.isEmpty());
    QVERIFY2(s.screen.boxes[0].text.contains(reasonHolds), qPrintable(s.screen.boxes[0].text));
    const QList<ToolRow> rows = s.db.rows();
    QCOMPARE(rows.size(), 2); // "x" stays as it was, "a" is counted, "b" never is
    QCOMPARE(rows[0].util.isNull(), storedUtil.isNull());
    QCOMPARE(rows[0].util.toInt(), storedUtil.toInt());
    QCOMPARE(rows[0].Date.toString(), QStringLiteral("2020-01-01 00:00:00"));
    QCOMPARE(rows[1].tool, QStringLiteral("a"));
    QCOMPARE(rows[1].util.toInt(), 1);
}

void TstToolCount::singleQuoteAndSqlAreAPlainName() {
    Sender s;
    QVERIFY(s.db.exec("INSERT INTO tool_list VALUES ('keep', 4, '2020-01-01 00:00:00')"));
    const QString name = QStringLiteral("x' or 1=1); delete from tool_list; --");
    s.send("/t1 " + name.toLatin1() + "\r/t1 o'hara\r/t1 o'hara\r");
    QVERIFY(s.screen.boxes.isEmpty());
    const QList<ToolRow> rows = s.db.rows();
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows[0].tool, QStringLiteral("keep"));
    QCOMPARE(rows[0].util.toInt(), 4);
    QCOMPARE(rows[1].tool, name);
    QCOMPARE(rows[1].util.toInt(), 1);
    QCOMPARE(rows[2].tool, QStringLiteral("o'hara"));
    QCOMPARE(rows[2].util.toInt(), 2);
}

void TstToolCount::emptyFileChangesNothing() {
    Sender s;
    s.send(QByteArray());
    QVERIFY(s.screen.boxes.isEmpty());
    QVERIFY(s.db.rows().isEmpty());

    // A file that cannot be opened is a failure like any other.
    s.updater.UpdateToolList(s.db.folder() + QStringLiteral("/absent.tap"));
    QCOMPARE(s.screen.boxes.size(), 1);
    QVERIFY(s.screen.boxes[0].text.contains(QStringLiteral("absent.tap")));
}

void TstToolCount::lockedDatabaseFailsSoonAndStaysSound() {
    Sender s;
    QVERIFY(s.db.exec("INSERT INTO tool_list VALUES ('drill', 4, '2020-01-01 00:00:00')"));
    QVERIFY(s.db.exec("BEGIN EXCLUSIVE"));
    QVERIFY(s.db.exec("UPDATE tool_list SET util = 100"));
    QElapsedTimer clock;
    clock.start();
    s.send("/t1 drill\r/t2 mill\r");
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(s.screen.boxes.size(), 1);
    QVERIFY(s.db.exec("ROLLBACK"));

    QCOMPARE(s.db.integrityCheck(), QStringLiteral("ok"));
    const QList<ToolRow> rows = s.db.rows();
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows[0].util.toInt(), 4);

    s.send("/t1 drill\r"); // free again: counts
    QVERIFY(s.screen.boxes.size() == 1);
    QCOMPARE(s.db.rows()[0].util.toInt(), 5);
}

void TstToolCount::missingDatabaseIsNotCreated() {
    Sender s;
    s.g.DatabasePath = s.db.folder() + QStringLiteral("/none.db");
    s.send("/t1 drill\r");
    QCOMPARE(s.screen.boxes.size(), 1);
    QVERIFY(s.screen.boxes[0].text.contains(s.g.DatabasePath));
    QVERIFY(!QFile::exists(s.g.DatabasePath));
}

void TstToolCount::startUpCheck_data() {
    QTest::addColumn<QString>("setup"); // SQL run on the fixture, or a kind of file
    QTest::addColumn<QString>("file");  // the file checked, relative to the fixture's folder
    QTest::addColumn<QString>("reasonHolds");

    QTest::newRow("usable") << QString() << QStringLiteral("tools.db") << QString();
    QTest::newRow("missing") << QString() << QStringLiteral("none.db")
                             << QStringLiteral("does not exist");
    QTest::newRow("folder") << QString() << QStringLiteral(".") << QStringLiteral("not a file");
    QTest::newRow("text file") << QStringLiteral("text") << QStringLiteral("notes.txt")
                               << QStringLiteral("not a usable SQLite database");
    QTest::newRow("no table") << QStringLiteral("DROP TABLE tool_list")
                              << QStringLiteral("tools.db") << QStringLiteral("no table");
    QTest::newRow("field lacking") << QStringLiteral("ALTER TABLE tool_list DROP COLUMN Date")
                                   << QStringLiteral("tools.db") << QStringLiteral("Date");
    QTest::newRow("names in other case")
        << QStringLiteral("DROP TABLE tool_list; CREATE TABLE TOOL_LIST (TOOL TEXT, UTIL INT, "
                          "DATE TEXT)")
        << QStringLiteral("tools.db") << QString();
}

void TstToolCount::startUpCheck() {
    QFETCH(QString, setup);
    QFETCH(QString, file);
    QFETCH(QString, reasonHolds);
    ToolDbFixture db;
    if (setup == QLatin1String("text"))
        WriteFile(db.folder(), file, QByteArray("this is no database, just some text\n"));
    else if (!setup.isEmpty())
        for (const QString &statement : setup.split(u';'))
            QVERIFY(db.exec(statement));
    const QString path = db.folder() + u'/' + file;
    const bool existed = QFileInfo::exists(path);

    const QString reason = CheckToolDatabase(path);
    if (reasonHolds.isEmpty()) {
        QVERIFY2(reason.isEmpty(), qPrintable(reason));
    } else {
        QVERIFY2(reason.contains(reasonHolds), qPrintable(reason));
        QVERIFY2(reason.contains(path), qPrintable(reason));
    }
    QCOMPARE(QFileInfo::exists(path), existed);
}

QTEST_GUILESS_MAIN(TstToolCount)
#include "tst_tool_count.moc"
