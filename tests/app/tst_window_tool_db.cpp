// The window with a tool database that cannot be used, at start-up or later. A lock or a server
// that is away turns counting and the grid off with a message that says until when, and the
// first send once it has passed brings both back; a database that needs mending stays off.

#include "dnc_window.h"
#include "fake_link.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"

#include <QTest>
#include <QtWidgets>

namespace {

// Runs `act` on the modal box or dialog that the window opens next.
template <class T> void onModal(std::function<void(T *)> act) {
    QTimer::singleShot(0, [act] {
        auto *modal = qobject_cast<T *>(QApplication::activeModalWidget());
        QVERIFY(modal);
        act(modal);
    });
}

// Accepts every message box the window opens while it lives, and keeps their texts.
struct BoxTaker {
    QStringList texts;
    QTimer poll;
    BoxTaker() {
        QObject::connect(&poll, &QTimer::timeout, [this] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                texts << box->text();
                box->accept();
            }
        });
        poll.start(5);
    }
};

// A window on a 303 control over the scripted port, with P.tap in its TapeDir.
struct Station {
    FakeLink f;
    OperationState state;
    std::unique_ptr<DncWindow> w;
    Station(const QString &folder, const QString &commandLine) {
        f.g.iniPath = folder + QStringLiteral("/dnc.ini");
        QFile ini(f.g.iniPath);
        if (!ini.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(ini.fileName()));
        ini.write("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=303\nTapeDir=" +
                  folder.toUtf8() + "\n");
        ini.close();
        f.comm.onOutput = [this](const QByteArray &) {
            f.comm.inbox += "\x10"
                            "7";
        };
        w = std::make_unique<DncWindow>(f.g, state, f.comm, f.timer, f.yield, commandLine);
        w->show();
    }
    // Send, choosing P.tap in the quick choice.
    void send() {
        onModal<QInputDialog>([](QInputDialog *box) {
            box->setTextValue(QStringLiteral("P"));
            box->accept();
        });
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
        const auto row = [&](const char *name) {
            return std::ref(
                QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(engineName(engine), name)))
                << int(engine));
        };
        if (engine == ToolDbEngine::Sqlite) {
            row("locked by another writer") << "locked"
                                            << "busy" << true;
            row("missing") << "missing"
                           << "does not exist" << false;
        } else {
            row("server stopped") << "stopped"
                                  << "cannot be opened" << true;
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
    db.program("(PART)\r\n/T4 DRILL\r\n%\r\nN10 G0 X0\r\n", "P.tap");

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

    BoxTaker boxes;
    Station s(db.folder(), "-b -d " + name);
    QCOMPARE(boxes.texts.size(), 1);
    QVERIFY2(boxes.texts[0].contains(told) &&
                 boxes.texts[0].contains(comesBack ? "every send tries again"
                                                   : "until the program is started again"),
             qPrintable(boxes.texts[0]));
    QCOMPARE(s.f.g.ToolDbEnabled, comesBack);
    QVERIFY(!s.w->DBGrid1 || !s.w->DBGrid1->isVisible());

    if (fault == "locked")
        QVERIFY(db.exec("ROLLBACK"));
    if (fault == "stopped")
        QVERIFY(down->start());
    s.send();
    QVERIFY(s.f.comm.written().contains("/T4 DRILL\r")); // sent either way
    QVERIFY2(boxes.texts.size() == 1, qPrintable(boxes.texts.join(u'|')));
    if (!comesBack) {
        QVERIFY(!s.w->DBGrid1);
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
    db.program("(PART)\r\n/T4 DRILL\r\n%\r\nN10 G0 X0\r\n", "P.tap");
    BoxTaker boxes;
    Station s(db.folder(), "-b -d " + db.path());
    s.send();
    QVERIFY2(boxes.texts.isEmpty(), qPrintable(boxes.texts.join(u'|')));
    QVERIFY(s.w->DBGrid1->isVisible());
    {
        PgServerStopped down;
        QVERIFY(down.stopped);
        s.f.comm.writes.clear();
        s.send();
        QVERIFY(s.f.comm.written().contains("N10 G0 X0\r"));
        QCOMPARE(boxes.texts.size(), 2); // the count, then the grid
        QVERIFY2(boxes.texts[0].contains("cannot be opened") &&
                     boxes.texts[1].contains("every send tries again"),
                 qPrintable(boxes.texts.join(u'|')));
        QVERIFY(!s.w->DBGrid1->isVisible());
        QVERIFY(down.start());
    }
    QVERIFY(db.connection().reopen());
    QVERIFY(db.exec("INSERT INTO tool_list (tool, util, Date) VALUES ('mill', 7, now())"));
    s.send();
    QCOMPARE(boxes.texts.size(), 2);
    QVERIFY(s.w->DBGrid1->isVisible());
    QCOMPARE(s.w->DBGrid1->model()->index(0, 0).data().toString(), QStringLiteral("mill"));
    QCOMPARE(s.w->DBGrid1->model()->index(1, 0).data().toString() +
                 s.w->DBGrid1->model()->index(1, 1).data().toString(),
             QStringLiteral("drill2"));
}

QTEST_MAIN(TestWindowToolDb)
#include "tst_window_tool_db.moc"
