#pragma once
// The table tool_list for the grid: every field of it, most used tool first. Cells can be
// overtyped and go to the table at once; rows can be neither added nor deleted.

#include "tool_db.h"

#include <QSqlQueryModel>
#include <memory>

class ToolListModel : public QSqlQueryModel {
    Q_OBJECT
public:
    explicit ToolListModel(const QString &path, int busyTimeoutMs = DefaultBusyTimeoutMs,
                           QObject *parent = nullptr);
    ~ToolListModel() override;

    // Reads the table anew, with the counts of every station. A connection that was lost
    // (a server gone and back) is made anew once. False, with errorText(), when it cannot be read.
    bool refresh();
    QString errorText() const { return m_error; }

    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    bool insertRows(int, int, const QModelIndex & = QModelIndex()) override { return false; }
    bool removeRows(int, int, const QModelIndex & = QModelIndex()) override { return false; }

private:
    bool read();

    QString m_name;
    int m_busyTimeoutMs;
    // Opened at the first read, so that a server down at start-up costs one wait, not two.
    std::unique_ptr<ToolDbConnection> m_connection;
    QString m_error;
};
