// The window with a tool database that cannot be used, at start-up or later. What may pass by
// itself (a lock, a server away or refusing the login) leaves counting on and the grid off until
// a send reaches the database; what needs mending turns both off until the program starts again.

#include "rows.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "window_rig.h"

namespace {

// A window on a 303 control over the scripted port, with P.tap in the fixture's folder.
struct Station : WindowRig {
    QStringList boxes; // the texts of the message boxes taken
    QString during;    // the grid's first row while a send runs
    explicit Station(ToolDbFixture &db) : WindowRig("303", "TapeDir=" + db.folder().toUtf8()) {
        db.program("(PART)\r\n/T4 DRILL\r\n%\r\nN10 G0 X0\r\n", QStringLiteral("P.tap"));
        f.comm.onOutput = [this](const QByteArray &) { f.comm.inbox += Go; };
    }
    // Send, choosing P.tap in the quick choice; `told` message boxes follow.
    void send(int told = 0) {
        guard.expect<QInputDialog>([](QInputDialog *box) {
            box->setTextValue(QStringLiteral("P"));
            box->accept();
        });
        while (told-- > 0)
            takeBox(boxes);
        f.comm.writes.clear();
        f.yield.then([this] { during = gridRow(0); });
        QTest::mouseClick(w->Command1[1], Qt::LeftButton);
        QVERIFY(f.comm.written().endsWith("N10 G0 X0\r" + Eot)); // sent whatever the database
    }
    // A row of the grid as "tool:util"; empty while the grid is hidden.
    QString gridRow(int row) const {
        if (!w->DBGrid1 || !w->DBGrid1->isVisible())
            return {};
        const QAbstractItemModel *m = w->DBGrid1->model();
        return m->index(row, 0).data().toString() + ':' + m->index(row, 1).data().toString();
    }
};

} // namespace

class TestWindowToolDb : public QObject {
    Q_OBJECT
private slots:
    void offAtStartUp_data() {
        QTest::addColumn<ToolDbEngine>("engine");
        QTest::addColumn<QString>("fault"); // SQL run on the fixture, or one word
        QTest::addColumn<QString>("told");  // a part of the start-up message
        QTest::addColumn<bool>("passing");  // may pass by itself: counting stays on
        const auto row = [](const char *name, std::optional<ToolDbEngine> only, const char *fault,
                            const char *told, bool passing) {
            engineRow(name, only, QString(fault), QString(told), passing);
        };
        row("missing", SqliteOnly, "missing", "does not exist", false);
        row("text file", SqliteOnly, "text", "not a usable SQLite database", false);
        row("no table", BothEngines, "DROP TABLE tool_list", "no table", false);
        row("field lacking", BothEngines, "ALTER TABLE tool_list DROP COLUMN Date",
            "lacks the field(s) date", false);
        row("locked by another writer", SqliteOnly, "BEGIN EXCLUSIVE", "busy", true);
        row("wrong password", PostgresOnly, "password", "password authentication failed", true);
    }
    void offAtStartUp() {
        QFETCH(ToolDbEngine, engine);
        REQUIRE_TOOL_DB(engine);
        QFETCH(QString, fault);
        QFETCH(QString, told);
        QFETCH(bool, passing);
        ToolDbFixture db{engine};
        Station s(db);
        QVERIFY(!fault.contains(u' ') || db.exec(fault));
        QString name = db.path();
        if (!db.postgres() && (fault == "missing" || fault == "text"))
            name = db.folder() + (fault == "missing" ? "/none.db" : "/P.tap");
        if (fault == "password") {
            QUrl url(name);
            url.setPassword(QStringLiteral("secret"));
            name = url.toString();
        }

        s.takeBox(s.boxes);
        s.open("-b -d " + name);
        QCOMPARE(s.boxes.size(), 1);
        QVERIFY2(s.boxes[0].contains(told, Qt::CaseInsensitive) &&
                     s.boxes[0].contains(toolDbDisplayName(name)) &&
                     !s.boxes[0].contains("secret") &&
                     s.boxes[0].contains(passing ? "every send tries again"
                                                 : "until the program is started again"),
                 qPrintable(s.boxes[0]));
        QCOMPARE(s.f.g.ToolDbEnabled, passing);
        QCOMPARE(s.gridRow(0), QString());

        const bool mended = fault == "BEGIN EXCLUSIVE"; // the lock is let go
        QVERIFY(!mended || db.exec("ROLLBACK"));
        s.send(passing && !mended); // a login still refused is told at every send
        QCOMPARE(s.gridRow(0), mended ? "drill:1" : "");
        if (mended) { // hidden while the next send runs
            s.send();
            QCOMPARE(s.during + '|' + s.gridRow(0), "|drill:2");
        }
        QVERIFY(passing || !s.w->DBGrid1);
        QVERIFY(!QFile::exists(db.folder() + "/none.db")); // nothing made
    }

    // The server goes away while the window runs: the send that finds it gone says so, and so
    // does the grid, which hides. Once the server is back, the next send counts and the grid
    // shows the shop's counts again, with no further message.
    void serverGoneBetweenSends() {
        if (!testEngines().contains(ToolDbEngine::Postgres))
            QSKIP("PostgreSQL is not in this run (DNC_TOOL_ENGINES)");
        REQUIRE_TOOL_DB(ToolDbEngine::Postgres);
        ToolDbFixture db(ToolDbEngine::Postgres);
        Station s(db);
        s.open("-b -d " + db.path());
        s.send();
        QCOMPARE(s.during + '|' + s.gridRow(0), "|drill:1"); // hidden while the send ran
        {
            PgServerStopped down;
            QVERIFY(down.stopped);
            s.send(2); // the count's box, then the grid's
            QCOMPARE(s.boxes.size(), 2);
            QVERIFY2(s.boxes[0].contains("cannot be opened") &&
                         s.boxes[1].contains("every send tries again"),
                     qPrintable(s.boxes.join(u'|')));
            QCOMPARE(s.gridRow(0), QString());
            QVERIFY(down.start());
        }
        QVERIFY(db.connection().reopen());
        QVERIFY(db.exec("INSERT INTO tool_list (tool, util, Date) VALUES ('mill', 7, now())"));
        s.send();
        QCOMPARE(s.gridRow(0) + ' ' + s.gridRow(1), "mill:7 drill:2");
    }
};

QTEST_MAIN(TestWindowToolDb)
#include "tst_window_tool_db.moc"
