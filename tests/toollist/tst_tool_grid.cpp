// The grid over tool_list, offscreen: order, edits, no rows added or deleted, re-reading.

#include "fake_link.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "tool_list_model.h"
#include "update_tool_list.h"

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QtTest>

namespace {

QStringList Column(const QAbstractItemModel &model, int column) {
    QStringList values;
    for (int row = 0; row < model.rowCount(); ++row)
        values << model.data(model.index(row, column)).toString();
    return values;
}

int RowOf(const QAbstractItemModel &model, const QString &tool) {
    return int(Column(model, 0).indexOf(tool));
}

} // namespace

class TstToolGrid : public QObject {
    Q_OBJECT
private slots:
    void init();
    void orderedMostUsedFirstWithFieldNames();
    void editsReachTheTable();
    void editTypedIntoTheGrid();
    void noRowAddedOrDeleted();
    void refreshReadsACountMadeWhileOpen();
    void missingDatabaseIsReportedNotCreated();

private:
    std::unique_ptr<ToolDbFixture> m_db;
};

void TstToolGrid::init() {
    m_db = std::make_unique<ToolDbFixture>();
    QVERIFY(m_db->exec("INSERT INTO tool_list VALUES ('a', 3, '2024-01-01 10:00:00')"));
    QVERIFY(m_db->exec("INSERT INTO tool_list VALUES ('b', 10, '2024-01-02 10:00:00')"));
    QVERIFY(m_db->exec("INSERT INTO tool_list VALUES ('c', 1, '2024-01-03 10:00:00')"));
}

void TstToolGrid::orderedMostUsedFirstWithFieldNames() {
    ToolGrid grid(m_db->path());
    QVERIFY2(grid.refresh(), qPrintable(grid.toolModel()->errorText()));
    const ToolListModel &model = *grid.toolModel();
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("tool"));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("util"));
    QCOMPARE(model.headerData(2, Qt::Horizontal).toString(), QStringLiteral("Date"));
    QCOMPARE(Column(model, 0), (QStringList{"b", "a", "c"}));
    QCOMPARE(Column(model, 1), (QStringList{"10", "3", "1"}));
    QVERIFY(!grid.horizontalHeader()->isHidden());
    QVERIFY(!grid.verticalHeader()->isHidden());
    QCOMPARE(grid.verticalHeader()->sectionResizeMode(0), QHeaderView::Interactive);
}

void TstToolGrid::editsReachTheTable() {
    ToolListModel model(m_db->path());
    QVERIFY(model.refresh());
    QVERIFY(model.flags(model.index(0, 1)) & Qt::ItemIsEditable);
    QVERIFY(model.setData(model.index(RowOf(model, "a"), 1), 42));
    QCOMPARE(m_db->rows()[0].util.toInt(), 42);
    // Re-read and re-sorted: "a" now leads.
    QCOMPARE(Column(model, 0), (QStringList{"a", "b", "c"}));

    QVERIFY(model.setData(model.index(RowOf(model, "c"), 0), QStringLiteral("centre drill")));
    QVERIFY(
        model.setData(model.index(RowOf(model, "b"), 2), QStringLiteral("2025-05-05 05:05:05")));
    const QList<ToolRow> rows = m_db->rows();
    QCOMPARE(rows[2].tool, QStringLiteral("centre drill"));
    QCOMPARE(rows[1].Date.toString(), QStringLiteral("2025-05-05 05:05:05"));
    QCOMPARE(rows[0].tool, QStringLiteral("a")); // the other rows keep their values
    QCOMPARE(rows[1].util.toInt(), 10);

    // A count is a 16-bit integer; the table keeps its value otherwise.
    QVERIFY(!model.setData(model.index(RowOf(model, "b"), 1), 40000));
    QVERIFY(!model.setData(model.index(RowOf(model, "b"), 1), QStringLiteral("many")));
    QCOMPARE(m_db->rows()[1].util.toInt(), 10);
}

void TstToolGrid::editTypedIntoTheGrid() {
    ToolGrid grid(m_db->path());
    QVERIFY(grid.refresh());
    grid.resize(500, 300);
    grid.show();
    QVERIFY(QTest::qWaitForWindowExposed(&grid));
    const QModelIndex cell = grid.model()->index(RowOf(*grid.model(), "c"), 0);
    grid.setCurrentIndex(cell);
    grid.edit(cell);
    auto *editor = grid.viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, "reamer");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(m_db->rows()[2].tool, QStringLiteral("reamer"));
}

void TstToolGrid::noRowAddedOrDeleted() {
    ToolListModel model(m_db->path());
    QVERIFY(model.refresh());
    QVERIFY(!model.insertRows(0, 1));
    QVERIFY(!model.insertRow(model.rowCount()));
    QVERIFY(!model.removeRows(0, 1));
    QVERIFY(!model.removeRow(2));
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(m_db->rows().size(), 3);
}

void TstToolGrid::refreshReadsACountMadeWhileOpen() {
    // More rows than one fetch of the model, so that a half-read table would hold a lock.
    QVERIFY(m_db->exec("BEGIN"));
    for (int i = 0; i < 600; ++i)
        QVERIFY(m_db->exec("INSERT INTO tool_list VALUES (?, 2, NULL)",
                           {QStringLiteral("t%1").arg(i)}));
    QVERIFY(m_db->exec("COMMIT"));
    ToolGrid grid(m_db->path());
    QVERIFY(grid.refresh());

    Globals g;
    g.DatabasePath = m_db->path();
    RecordingScreen screen;
    ToolListUpdater updater(g, screen, 200);
    updater.UpdateToolList(
        WriteFile(m_db->folder(), "p.tap", QByteArray("/t1 c\r/t1 c\r/t1 new\r")));
    QVERIFY2(screen.boxes.isEmpty(), qPrintable(screen.boxes.value(0).text));

    QCOMPARE(grid.model()->rowCount(), 603);
    QCOMPARE(Column(*grid.model(), 0).first(), QStringLiteral("b"));
    QCOMPARE(Column(*grid.model(), 1)[RowOf(*grid.model(), "c")], QStringLiteral("1"));
    QVERIFY(grid.refresh());
    QCOMPARE(grid.model()->rowCount(), 604);
    QCOMPARE(Column(*grid.model(), 1)[RowOf(*grid.model(), "c")], QStringLiteral("3"));
    QVERIFY(RowOf(*grid.model(), "new") >= 0);
}

void TstToolGrid::missingDatabaseIsReportedNotCreated() {
    const QString path = m_db->folder() + QStringLiteral("/none.db");
    ToolGrid grid(path);
    QVERIFY(!grid.refresh());
    QVERIFY(grid.toolModel()->errorText().contains(path));
    QCOMPARE(grid.model()->rowCount(), 0);
    QVERIFY(!QFile::exists(path));
}

QTEST_MAIN(TstToolGrid)
#include "tst_tool_grid.moc"
