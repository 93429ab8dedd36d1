// The window with a tool database that cannot be used at start-up. A lock or a server that is
// away turns counting and the grid off with one message that says until when, and the first
// send once it has passed brings both back; a database that needs mending stays off.

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

} // namespace

class TestWindowToolDb : public QObject {
    Q_OBJECT
private slots:
    void offAtStartUp_data();
    void offAtStartUp();
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
    const QString program = db.program("(PART)\r\n/T4 DRILL\r\n%\r\nN10 G0 X0\r\n", "P.tap");
    FakeLink f;
    f.g.iniPath = db.folder() + QStringLiteral("/dnc.ini");
    QFile ini(f.g.iniPath);
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=303\nTapeDir=" +
              db.folder().toUtf8() + "\n");
    ini.close();
    f.comm.onOutput = [&](const QByteArray &) {
        f.comm.inbox += "\x10"
                        "7";
    };

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

    QStringList boxes;
    onModal<QMessageBox>([&](QMessageBox *box) {
        boxes << box->text();
        box->accept();
    });
    OperationState state;
    DncWindow w(f.g, state, f.comm, f.timer, f.yield, "-b -d " + name);
    w.show();
    QCOMPARE(boxes.size(), 1);
    QVERIFY2(boxes[0].contains(told) &&
                 boxes[0].contains(comesBack ? "every send tries again"
                                             : "until the program is started again"),
             qPrintable(boxes[0]));
    QCOMPARE(f.g.ToolDbEnabled, comesBack);
    QVERIFY(!w.DBGrid1 || !w.DBGrid1->isVisible());

    if (fault == "locked")
        QVERIFY(db.exec("ROLLBACK"));
    if (fault == "stopped")
        QVERIFY(down->start());
    onModal<QInputDialog>([](QInputDialog *box) {
        box->setTextValue(QStringLiteral("P"));
        box->accept();
    });
    QTest::mouseClick(w.Command1[1], Qt::LeftButton);
    QVERIFY(f.comm.written().contains("/T4 DRILL\r")); // sent either way
    QVERIFY2(boxes.size() == 1, qPrintable(boxes.join(u'|')));
    if (!comesBack) {
        QVERIFY(!w.DBGrid1);
        return;
    }
    QVERIFY(w.DBGrid1 && w.DBGrid1->isVisible());
    QCOMPARE(w.DBGrid1->model()->index(0, 0).data().toString(), QStringLiteral("drill"));
    QCOMPARE(w.DBGrid1->model()->index(0, 1).data().toInt(), 1);
}

QTEST_MAIN(TestWindowToolDb)
#include "tst_window_tool_db.moc"
