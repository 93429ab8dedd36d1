// The window with a tool database that cannot be used, at start-up or later. A lock or a server
// that is away turns counting and the grid off with a message that says until when, and the
// first send once it has passed brings both back; a database that needs mending stays off.

#include "rows.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "window_rig.h"

namespace {

const QByteArray Program("(PART)\r\n/T4 DRILL\r\n%\r\nN10 G0 X0\r\n");

// A window on a 303 control over the scripted port, with P.tap in the fixture's folder.
struct Station : WindowRig {
    QStringList boxes; // the texts of the message boxes taken
    explicit Station(ToolDbFixture &db) : WindowRig("303", "TapeDir=" + db.folder().toUtf8()) {
        db.program(Program, QStringLiteral("P.tap"));
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
        QTest::mouseClick(w->Command1[1], Qt::LeftButton);
    }
};

} // namespace

class TestWindowToolDb : public QObject {
    Q_OBJECT
private slots:
    void offAtStartUp_data();
    void offAtStartUp();
    void serverGoneBetweenSends();
};

void TestWindowToolDb::offAtStartUp_data() {
    QTest::addColumn<int>("engine");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("told");   // a part of the start-up message
    QTest::addColumn<bool>("comesBack"); // counting and the grid, at the next send
    for (const ToolDbEngine engine : testEngines()) {
        const auto row = [&](const char *name, const char *fault, const char *told, bool back) {
            QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(engineName(engine), name)))
                << int(engine) << QString(fault) << QString(told) << back;
        };
        if (engine == ToolDbEngine::Sqlite) {
            row("locked by another writer", "locked", "busy", true);
            row("missing", "missing", "does not exist", false);
        } else {
            row("server stopped", "stopped", "cannot be opened", true);
        }
    }
}

void TestWindowToolDb::offAtStartUp() {
    QFETCH(int, engine);
    REQUIRE_TOOL_DB(ToolDbEngine(engine));
    QFETCH(QString, fault);
    QFETCH(QString, told);
    QFETCH(bool, comesBack);
    ToolDbFixture db{ToolDbEngine(engine)};
    Station s(db);

    // The database is named from its own folder: a temporary path may hold an option's letters.
    QString name = db.path();
    const QString home = QDir::currentPath();
    const auto back = qScopeGuard([&] { QDir::setCurrent(home); });
    if (!db.postgres()) {
        QDir::setCurrent(db.folder());
        name = fault == "missing" ? QStringLiteral("none.db") : QStringLiteral("tools.db");
    }
    std::optional<PgServerStopped> down;
    if (fault == "stopped")
        QVERIFY(down.emplace().stopped);
    if (fault == "locked")
        QVERIFY(db.exec("BEGIN EXCLUSIVE"));

    s.takeBox(s.boxes);
    s.open("-b -d " + name);
    QCOMPARE(s.boxes.size(), 1);
    QVERIFY2(s.boxes[0].contains(told) &&
                 s.boxes[0].contains(comesBack ? "every send tries again"
                                               : "until the program is started again"),
             qPrintable(s.boxes[0]));
    QCOMPARE(s.f.g.ToolDbEnabled, comesBack);
    QVERIFY(!s.w->DBGrid1 || !s.w->DBGrid1->isVisible());

    if (fault == "locked")
        QVERIFY(db.exec("ROLLBACK"));
    if (fault == "stopped")
        QVERIFY(down->start());
    s.send();
    QVERIFY(s.f.comm.written().contains("/T4 DRILL\r")); // sent either way
    if (!comesBack) {
        QVERIFY(!s.w->DBGrid1 && !QFile::exists(name)); // nothing made
        return;
    }
    QVERIFY(s.w->DBGrid1 && s.w->DBGrid1->isVisible());
    QCOMPARE(s.w->DBGrid1->model()->index(0, 0).data().toString(), QStringLiteral("drill"));
    QCOMPARE(s.w->DBGrid1->model()->index(0, 1).data().toInt(), 1);
}

// The server goes away while the window runs: the send that finds it gone says so, and so does
// the grid, which hides; the program is sent all the same. Once the server is back, the next
// send counts and the grid shows the shop's counts again, with no further message.
void TestWindowToolDb::serverGoneBetweenSends() {
    if (!testEngines().contains(ToolDbEngine::Postgres))
        QSKIP("PostgreSQL is not in this run (DNC_TOOL_ENGINES)");
    REQUIRE_TOOL_DB(ToolDbEngine::Postgres);
    ToolDbFixture db(ToolDbEngine::Postgres);
    Station s(db);
    s.open("-b -d " + db.path());
    s.send();
    QVERIFY(s.w->DBGrid1->isVisible());
    {
        PgServerStopped down;
        QVERIFY(down.stopped);
        s.f.comm.writes.clear();
        s.send(2); // the count's box, then the grid's
        QVERIFY(s.f.comm.written().contains("N10 G0 X0\r"));
        QCOMPARE(s.boxes.size(), 2);
        QVERIFY2(s.boxes[0].contains("cannot be opened") &&
                     s.boxes[1].contains("every send tries again"),
                 qPrintable(s.boxes.join(u'|')));
        QVERIFY(!s.w->DBGrid1->isVisible());
        QVERIFY(down.start());
    }
    QVERIFY(db.connection().reopen());
    QVERIFY(db.exec("INSERT INTO tool_list (tool, util, Date) VALUES ('mill', 7, now())"));
    s.send();
    QVERIFY(s.w->DBGrid1->isVisible());
    QCOMPARE(s.w->DBGrid1->model()->index(0, 0).data().toString(), QStringLiteral("mill"));
    QCOMPARE(s.w->DBGrid1->model()->index(1, 0).data().toString() +
                 s.w->DBGrid1->model()->index(1, 1).data().toString(),
             QStringLiteral("drill2"));
}

QTEST_MAIN(TestWindowToolDb)
#include "tst_window_tool_db.moc"
