// The tool list: the scan of a program's head on bytes alone, counting into a real SQLite
// file through the entry the send path uses, the start-up check of a path, and the grid.

#include "fake_link.h"
#include "rows.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "tool_list_model.h"
#include "tool_scan.h"
#include "update_tool_list.h"

#include <QBuffer>
#include <QtTest>

namespace {

const QString Old = QStringLiteral("2020-01-01 00:00:00");
const QString DateForm = QStringLiteral("yyyy-MM-dd HH:mm:ss");

struct Sender {
    ToolDbFixture db;
    Globals g;
    RecordingScreen screen;
    ToolListUpdater updater{g, screen, 200};
    Sender() { g.DatabasePath = db.path(); }
    void send(const QByteArray &program) { updater.UpdateToolList(db.program(program)); }
};

void scan(const char *name, const QByteArray &file, const QStringList &names, bool fails = false,
          const QStringList &limits = {}) {
    QTest::newRow(name) << file << names << fails << limits;
}

void count(const char *name, const QVariant &xUtil, const QByteArray &program, const char *rows,
           const char *failure = "", bool locked = false) {
    QTest::newRow(name) << xUtil << program << QString(rows) << QString(failure) << locked;
}

} // namespace

class TstToolList : public QObject {
    Q_OBJECT
private slots:
    void scanLines_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<QStringList>("limits");

        scan("blanks around, upper case", "   /T12 Drill   \r", {"drill"});
        scan("blank after slash", "/ t12 drill\r", {"drill"});
        scan("blank before number", "/t 12 drill\r", {"12 drill"});
        scan("inner blanks kept", "/t12 big  drill\r", {"big  drill"});
        scan("number 0", "/t0 drill\r", {});
        scan("negative", "/t-3 drill\r", {});
        scan("no number", "/tool drill\r", {});
        scan("no slash", "t12 drill\r", {});
        scan("no name", "/t12\r", {}, true);
        scan("limit leaves trailing blank", "/t12 drill (new)\r", {"drill "}, false, {"("});
        scan("limits in listed order", "/t1 a(b-c\r", {"a(b"}, false, {"-", "("});
        scan("capital limit never matches", "/t1 Drill\r", {"drill"}, false, {"D"});
        scan("limit at start leaves empty name", "/t1 drill\r", {""}, false, {"dr"});

        scan("percent on first line", "%\r/t1 a\r", {});
        scan("percent inside a line ends the head", "/t1 a\r/t2 b%c\r/t3 c\r", {"a"});
        scan("half to even", "/t0.5 a\r/t0.6 b\r/t1.5 c\r/t2.5 d\r", {"b", "c", "d"});
        scan("16 bits: 32767 fits, 32768 stops", "/t32767 a\r/t32768 b\r/t2 c\r", {"a"}, true);
        scan("16 bits: -40000 stops", "/t-40000 b\r", {}, true);
        scan("latin-1 byte lowered", "/T1 \xC9X\r", {QString::fromLatin1("\xE9x")});
        scan("tab ahead of the line or the t, after the name", "\t/t1 a\r/\tt1 b\r/t1 c\t\r",
             {"c\t"});
        scan("tab before name is no blank", "/t1\tdrill\r", {}, true);

        scan("CR LF", "/t1 a\r\n/t2 b\r\n", {"a", "b"});
        scan("last line without end", "/t1 a\r/t2 b", {"a", "b"});
        scan("lone LF stays inside", "/t1 a\n/t2 b\r", {"a\n/t2 b"});
        scan("CR CR LF, CR LF LF", "/t1 a\r\r\n/t2 b\r\n\n/t3 c\r", {"a", "b"});
    }
    void scanLines() {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, limits);
        std::array<QString, 11> table;
        std::copy(limits.begin(), limits.end(), table.begin() + 1);
        QBuffer buffer(&file);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        const ToolScan scan = scanToolLines(buffer, table, qint16(limits.size()));
        QTEST(scan.names, "names");
        QTEST(scan.failed(), "fails");
        if (file.contains('%')) // nothing is read behind the line that ends the head
            QVERIFY(buffer.pos() <= file.indexOf('\r', file.indexOf('%')) + 2);
    }

    // Rows as "tool:util:Date", the Date "old" when untouched and "now" when counted.
    void counts_data() {
        QTest::addColumn<QVariant>("xUtil");
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("failure"); // a part of the box's text; empty: no box
        QTest::addColumn<bool>("locked");     // by another program's write transaction
        const char *bad = "/t1 a\r/t2 x\r/t3 b\r";

        count("found in other case, lowered; two lines add 2", 3,
              "/T1 Drill\r\n/t2 mill\r\n/t3 drill\r\n%\r\n/t4 drill\r\n",
              "x:3:old|drill:7:now|mill:1:now");
        count("single quote and SQL are a plain name", 3,
              "/t1 o'hara\r/t1 o'hara\r/t1 x'); drop table tool_list; --\r",
              "x:3:old|DRILL:5:old|o'hara:2:now|x'); drop table tool_list; --:1:now");
        count("util at 32767", 32767, bad, "x:32767:old|DRILL:5:old|a:1:now", "32767");
        count("util empty", {}, bad, "x::old|DRILL:5:old|a:1:now", "x");
        count("util beyond 16 bits", 40000, bad, "x:40000:old|DRILL:5:old|a:1:now", "40000");
        count("double quote in a name", 3, "/t1 a\r/t2 \"x\" or 1=1\r/t3 b\r",
              "x:3:old|DRILL:5:old|a:1:now", "double quote");
        count("line without name", 3, "/t1 a\r/t2\r/t3 b\r", "x:3:old|DRILL:5:old|a:1:now", "/t2");
        count("database locked", 3, "/t1 drill\r", "x:3:old|DRILL:5:old", "drill", true);
    }
    void counts() {
        QFETCH(QVariant, xUtil);
        QFETCH(QString, failure);
        QFETCH(bool, locked);
        Sender s;
        QVERIFY(s.db.exec("INSERT INTO tool_list VALUES ('x', ?, ?), ('DRILL', 5, ?)",
                          {xUtil, Old, Old}));
        QVERIFY(!locked || s.db.exec("BEGIN EXCLUSIVE"));
        const QString before = QDateTime::currentDateTime().toString(DateForm);
        const QDeadlineTimer soon(1500); // a locked file is a failure, not a hang
        QFETCH(QByteArray, program);
        s.send(program);
        QVERIFY(!soon.hasExpired());
        const QString after = QDateTime::currentDateTime().toString(DateForm);
        QVERIFY(!locked || s.db.exec("ROLLBACK"));
        QTEST(
            s.db.rows().join(u'|').replace(Old, "old").replace(before, "now").replace(after, "now"),
            "rows");
        QCOMPARE(s.db.rows("PRAGMA integrity_check"), QStringList{"ok"});
        if (!failure.isEmpty()) {
            const RecordingScreen::Box box = s.screen.takeBox();
            QVERIFY2(box.icon == BoxIcon::Critical && box.text.contains(failure),
                     qPrintable(box.text));
        }
    }

    // Checked at start-up, then counted into: the file is neither created nor changed.
    void startUpCheck_data() {
        QTest::addColumn<QString>("setup");  // SQL run on the fixture
        QTest::addColumn<QString>("file");   // the path checked, in the fixture's folder
        QTest::addColumn<QString>("reason"); // a part of the reason; empty: usable
        row("usable", "", "tools.db", "");
        row("missing", "", "none.db", "does not exist");
        row("text file", "", "p.tap", "not a usable SQLite database");
        row("no table", "DROP TABLE tool_list", "tools.db", "no table");
        row("field lacking", "ALTER TABLE tool_list DROP COLUMN Date", "tools.db", "Date");
    }
    void startUpCheck() {
        QFETCH(QString, setup);
        QFETCH(QString, file);
        QFETCH(QString, reason);
        Sender s;
        QVERIFY(setup.isEmpty() || s.db.exec(setup));
        const QString program = s.db.program("/t1 a\r");
        const QString path = QFileInfo(s.db.path()).dir().filePath(file);
        const QString why = checkToolDatabase(path);
        QVERIFY2(reason.isEmpty() ? why.isEmpty() : why.contains(reason) && why.contains(path),
                 qPrintable(why));
        s.g.DatabasePath = path;
        s.updater.UpdateToolList(program);
        if (!reason.isEmpty())
            s.screen.takeBox();
        QCOMPARE(QFileInfo::exists(path), file != "none.db");
    }

    // More rows than one fetch of the model: a half-read table would hold a count's write.
    void gridMostUsedFirstEditableNoRowAddedOrDeleted() {
        Sender s;
        QVERIFY(s.db.exec(
            "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 599) "
            "INSERT INTO tool_list SELECT i, 2, ? FROM n",
            {Old}));
        QVERIFY(s.db.exec("INSERT INTO tool_list VALUES ('a', 3, ?), ('b', 4, ?)", {Old, Old}));
        ToolGrid grid(s.db.path());
        QVERIFY(grid.refresh());
        ToolListModel &model = *grid.toolModel();
        const auto top = [&] {
            return model.index(0, 0).data().toString() + model.index(1, 0).data().toString();
        };
        QCOMPARE(model.columnCount(), 3);
        QCOMPARE(top(), QStringLiteral("ba"));

        s.send("/t1 a\r/t1 a\r/t1 new\r");
        QCOMPARE(model.rowCount(), 602); // until it is read anew
        QVERIFY(grid.refresh());
        QCOMPARE(model.rowCount(), 603);
        QCOMPARE(top(), QStringLiteral("ab"));

        QVERIFY(model.flags(model.index(0, 0)) & Qt::ItemIsEditable);
        QVERIFY(model.setData(model.index(1, 1), "42")); // read anew: "b" leads
        QVERIFY(model.setData(model.index(1, 0), "c"));
        QVERIFY(!model.setData(model.index(1, 1), 40000)); // util is a 16-bit integer
        QVERIFY(!model.insertRows(0, 1) && !model.removeRows(0, 1));
        QCOMPARE(top(), QStringLiteral("bc"));
        QCOMPARE(s.db.rows("SELECT tool, util FROM tool_list WHERE util > 2 ORDER BY rowid"),
                 (QStringList{"c:5", "b:42"}));
    }
};

QTEST_MAIN(TstToolList)
#include "tst_tool_list.moc"
