// The main window with a tool database: the grid's place in the command frame, and the
// start-up check of the database.

#include "dnc_window.h"
#include "fake_link.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "tool_list_model.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

struct Rig {
    QTemporaryDir dir;
    FakeLink f;
    std::unique_ptr<DncWindow> w;

    explicit Rig(const QString &commandLine)
    {
        f.g.IniPath = dir.filePath(QStringLiteral("dnc.ini"));
        QFile ini(f.g.IniPath);
        ini.open(QIODevice::WriteOnly);
        ini.write("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=303\n");
        ini.close();
        w = std::make_unique<DncWindow>(f.g, f.comm, f.timer, f.yield, commandLine);
        w->show();
    }
};

QStringList gridTools(ToolGrid *grid)
{
    QStringList tools;
    auto *model = grid->toolModel();
    for (int r = 0; r < model->rowCount(); ++r)
        tools << model->index(r, 0).data().toString();
    return tools;
}

} // namespace

class TestWindowToolList : public QObject {
    Q_OBJECT
private slots:
    void gridShownMostUsedFirst();
    void gridHiddenDuringACommandAndReReadAfter();
    void noDatabaseNoGrid();
    void unusableDatabaseIsReportedAndLeftAlone();
};

void TestWindowToolList::gridShownMostUsedFirst()
{
    ToolDbFixture db;
    QVERIFY(db.exec("INSERT INTO tool_list VALUES ('tap m10', 3, '2026-11-01 10:00:00')"));
    QVERIFY(db.exec("INSERT INTO tool_list VALUES ('drill 8.5', 12, '2026-11-01 10:00:00')"));
    Rig r(QStringLiteral("-d \"%1\"").arg(db.path()));
    QVERIFY(r.f.g.ToolDbEnabled);
    QVERIFY(r.w->DBGrid1);
    QVERIFY(r.w->DBGrid1->isVisible());
    QCOMPARE(gridTools(r.w->DBGrid1), (QStringList{"drill 8.5", "tap m10"}));
}

void TestWindowToolList::gridHiddenDuringACommandAndReReadAfter()
{
    ToolDbFixture db;
    QVERIFY(db.exec("INSERT INTO tool_list VALUES ('drill 8.5', 12, '2026-11-01 10:00:00')"));
    Rig r(QStringLiteral("-d %1").arg(db.path()));
    bool shownDuring = true;
    // Map on a silent control; in its wait another program counts a tool.
    r.f.yield.then([&] {
        shownDuring = r.w->DBGrid1->isVisible();
        QVERIFY(db.exec("INSERT INTO tool_list VALUES ('endmill 20', 40, '2026-11-02')"));
    });
    r.f.yield.then([&] { r.f.timer.fire(); });
    QTest::mouseClick(r.w->Command1[3], Qt::LeftButton);
    QVERIFY(!shownDuring);
    QVERIFY(r.w->DBGrid1->isVisible());
    QCOMPARE(gridTools(r.w->DBGrid1), (QStringList{"endmill 20", "drill 8.5"}));
}

void TestWindowToolList::noDatabaseNoGrid()
{
    Rig r{QString()};
    QVERIFY(!r.w->DBGrid1);
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    QVERIFY(r.w->Command1[1]->isEnabled());
}

void TestWindowToolList::unusableDatabaseIsReportedAndLeftAlone()
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("none.db"));
    QString message;
    QTimer::singleShot(0, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        message = box->text();
        box->accept();
    });
    Rig r(QStringLiteral("-d %1").arg(missing));
    QVERIFY(message.contains(missing));
    QVERIFY(!r.f.g.ToolDbEnabled);
    QVERIFY(!r.w->DBGrid1);
    QVERIFY(!QFile::exists(missing)); // never created
}

QTEST_MAIN(TestWindowToolList)
#include "tst_window_tool_list.moc"
