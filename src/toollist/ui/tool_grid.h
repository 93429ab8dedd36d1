#pragma once
// The grid of the tool list: column headings, record selectors, rows the operator can size.

#include <QTableView>

class ToolListModel;

class ToolGrid : public QTableView {
    Q_OBJECT
public:
    explicit ToolGrid(const QString &databasePath, QWidget *parent = nullptr);
    ToolListModel *toolModel() const { return m_model; }
    // Reads the table anew; false when it cannot be read (the model tells why).
    bool refresh();

private:
    ToolListModel *m_model;
};
