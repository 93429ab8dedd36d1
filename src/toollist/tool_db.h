#pragma once
// Connections to the tool database, named by -d: an existing SQLite file, opened for reading
// and writing and never created, or a PostgreSQL server by its libpq URI. Each connection has
// a name of its own, so that the scan and the grid can both hold the database open.

#include "tool_db_name.h"
#include "tool_dialect.h"

#include <QSqlDatabase>
#include <QString>

// How long a count waits for a lock held by another writer (SQLite's busy time-out,
// PostgreSQL's lock_timeout).
inline constexpr int DefaultBusyTimeoutMs = 2000;
// How long a connection to a server may take before it fails.
inline constexpr int ConnectTimeoutS = 3;

// One named connection, removed again when it goes out of scope. Used on one thread.
class ToolDbConnection {
public:
    // What the database is to the person who reads its messages: the tool database that -d
    // named, or the journal's own file where no -d is given.
    enum class Role { ToolDatabase, Journal };
    // `purpose` becomes part of the connection's name ("scan", "grid", "check"); `name` is
    // the path or URI as -d gave it.
    ToolDbConnection(const QString &purpose, const QString &name, int busyTimeoutMs,
                     Role role = Role::ToolDatabase);
    ~ToolDbConnection();
    ToolDbConnection(const ToolDbConnection &) = delete;
    ToolDbConnection &operator=(const ToolDbConnection &) = delete;

    bool isOpen() const { return m_error.isEmpty(); }
    QString error() const { return m_error; } // names the database, never its password
    QSqlDatabase database() const { return QSqlDatabase::database(m_name, false); }
    const ToolDialect &dialect() const { return ToolDialect::of(m_engine); }
    int busyTimeoutMs() const { return m_busyTimeoutMs; }
    QString displayName() const { return toolDbDisplayName(m_target); }
    // A driver's words about this database, without its password.
    QString errorText(const QSqlError &error) const { return toolDbErrorText(error, m_target); }
    // Closes and opens anew: a server that went away and came back needs a new session.
    bool reopen();

private:
    void open();
    void openSqlite();
    void openPostgres();

    QString m_name;
    QString m_target;
    ToolDbEngine m_engine;
    int m_busyTimeoutMs;
    Role m_role;
    QString m_error;
};

// "2 s", "300 ms": how a wait is stated to the operator.
QString waitText(int ms);

// What is wrong with the database at the moment, and whether it may pass by itself (another
// writer's lock, a server not reachable or refusing the login) or needs someone to mend it (a
// missing file, table or field).
struct ToolDbProblem {
    QString text; // empty when the database is usable; names it, never its password
    bool passing = false;
};
ToolDbProblem diagnoseToolDatabase(const QString &name, int busyTimeoutMs = DefaultBusyTimeoutMs);

// Empty when `name` holds a table tool_list with the fields tool, util and Date that can be
// read; otherwise why not. Never creates a file, a database or a table.
QString checkToolDatabase(const QString &name);

// What start-up makes of the database named by -d.
struct ToolDbStart {
    bool counting = true; // false: tools are not counted until the program starts again
    bool gridNow = true;  // false: the grid waits until a send has reached the database
    QString message;      // to show once; says what is off and until when
};
ToolDbStart startToolDatabase(const QString &name, int busyTimeoutMs = DefaultBusyTimeoutMs);
