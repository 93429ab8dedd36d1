#pragma once
// Connections to the tool database: an existing SQLite file, opened for reading and writing
// and never created, each under a name of its own so that the scan and the grid can both
// hold the same file open.

#include <QSqlDatabase>
#include <QString>

inline constexpr int DefaultBusyTimeoutMs = 2000;

// One named connection, removed again when it goes out of scope.
class ToolDbConnection {
public:
    // `purpose` becomes part of the connection's name ("scan", "grid", "check").
    ToolDbConnection(const QString &purpose, const QString &path, int busyTimeoutMs);
    ~ToolDbConnection();
    ToolDbConnection(const ToolDbConnection &) = delete;
    ToolDbConnection &operator=(const ToolDbConnection &) = delete;

    bool isOpen() const { return m_error.isEmpty(); }
    QString error() const { return m_error; } // names the path
    QSqlDatabase database() const { return QSqlDatabase::database(m_name, false); }

private:
    QString m_name;
    QString m_error;
};

// Empty when `path` is an SQLite file that holds a table tool_list with the fields tool,
// util and Date; otherwise why not, naming the path. Never creates the file.
QString checkToolDatabase(const QString &path);
