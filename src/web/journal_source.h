#pragma once
// The database dnc-web reads: the one -d names (an SQLite file or a PostgreSQL server), else
// the default journal. Kept open between requests; opened again after a failure, at the next
// request.

#include "journal_database.h"
#include "journal_queries.h"

#include <memory>

class JournalSource {
public:
    // `name` as -d gives it; empty for the default journal.
    explicit JournalSource(const QString &name) : m_target(journalTarget(name)) {}
    // The queries on an open connection, or nullptr with error() saying why.
    JournalQueries *queries();
    // After a query failed: the next queries() opens the database anew.
    void failed();
    QString error() const { return m_error; }

private:
    JournalTarget m_target;
    std::unique_ptr<ToolDbConnection> m_connection;
    std::unique_ptr<JournalQueries> m_queries;
    QString m_error;
};
