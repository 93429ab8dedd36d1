#include "tool_grid.h"

#include "tool_list_model.h"

#include <QHeaderView>

ToolGrid::ToolGrid(const QString &databasePath, QWidget *parent)
    : QTableView(parent), m_model(new ToolListModel(databasePath, DefaultBusyTimeoutMs, this)) {
    setModel(m_model);
    horizontalHeader()->setVisible(true);
    verticalHeader()->setVisible(true);
    verticalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    setSelectionBehavior(QAbstractItemView::SelectItems);
}

bool ToolGrid::refresh() {
    const bool ok = m_model->refresh();
    resizeColumnsToContents(); // a date is read whole, not wrapped
    return ok;
}
