#pragma once
// The database dnc-web reads: an SQLite file or a PostgreSQL server, named as the stations
// name it. Kept open between requests; opened again after a failure, once per request.

#include "journal_queries.h"
#include "tool_db.h"

#include <memory>

class JournalSource {
public:
    explicit JournalSource(const QString &name) : m_name(name) {}
    // The queries on an open connection, or nullptr with error() saying why.
    JournalQueries *queries();
    // After a query failed: the next queries() opens the database anew.
    void failed() { m_queries.reset(); }
    QString error() const { return m_error; }
    QString name() const { return m_name; }

private:
    QString m_name;
    std::unique_ptr<ToolDbConnection> m_connection;
    std::unique_ptr<JournalQueries> m_queries;
    QString m_error;
};
