#pragma once
// Where the journal of transfers, the tool usage and the stations' states are kept: in the
// database named by -d (an SQLite file that must exist, or a PostgreSQL server), else in an
// SQLite file of this program's own that is made on first use.

#include "tool_db.h"

#include <QString>
#include <memory>

// $XDG_STATE_HOME/dnc/journal.db, or ~/.local/state/dnc/journal.db when that is not set.
QString defaultJournalPath();

// The journal's database: the name given with -d, else the default file.
struct JournalTarget {
    QString name;          // a path or a postgresql:// URI
    bool embedded = false; // the default file, which may be created
};
JournalTarget journalTarget(const QString &toolDbName);

// A connection to the journal's database. The default file and its folder are created when
// missing; a file named by -d never is. `error` says why it failed; the connection is then
// null.
std::unique_ptr<ToolDbConnection> openJournalDatabase(const QString &purpose,
                                                      const JournalTarget &target, QString *error,
                                                      int busyTimeoutMs = DefaultBusyTimeoutMs);

// Creates the journal's tables and indexes that are missing, from the schema files compiled
// into the program. Empty when they stand; otherwise why not.
QString createJournalTables(const ToolDbConnection &connection);
