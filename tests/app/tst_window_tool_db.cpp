// The window with a tool database that cannot be used at start-up. What may pass by itself (a
// lock, a server refusing the login) leaves counting on and the grid off until a send reaches
// the database; what needs mending turns both off until the program starts again.

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
        QCOMPARE(enabled(), QStringLiteral("0123457Q"));         // and the buttons back
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
        QTest::addColumn<QString>("fault"); // SQL run on the fixture (';' between), or one word
        QTest::addColumn<QString>("told");  // a part of the start-up message
        QTest::addColumn<bool>("passing");  // may pass by itself: counting stays on
        const auto row = [](const char *name, std::optional<ToolDbEngine> only, const char *fault,
                            const char *told, bool passing) {
            engineRow(name, only, QString(fault), QString(told), passing);
        };
        row("missing", SqliteOnly, "missing", "does not exist", false);
        row("field lacking", BothEngines, "ALTER TABLE tool_list DROP COLUMN Date",
            "lacks the field(s) date", false);
        // A file in WAL mode is never locked against a reader: this one is kept out of it.
        row("locked by another writer", SqliteOnly, "PRAGMA journal_mode = DELETE;BEGIN EXCLUSIVE",
            "busy", true);
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
        for (const QString &sql : fault.split(u';'))
            QVERIFY(!sql.contains(u' ') || db.exec(sql));
        QString name = db.path();
        if (fault == "missing")
            name = db.folder() + "/none.db";
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

        const bool mended = fault.endsWith("BEGIN EXCLUSIVE"); // the lock is let go
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
};

QTEST_MAIN(TestWindowToolDb)
#include "tst_window_tool_db.moc"
