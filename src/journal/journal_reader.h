#pragma once
// The journal read back for people and scripts: rows chosen by time, machine and outcome, as
// an aligned table, CSV (RFC 4180, a header row) or JSON (one array of objects), and old rows
// removed.

#include "journal_row.h"
#include "tool_db.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

struct JournalFilter {
    QDateTime since; // invalid: from the first row
    QDateTime until; // rows before this time; invalid: to the last
    QString machine;
    QString outcome;
};

// A date as the options take it: 2026-11-24 (that day's start, UTC), or a time in ISO 8601
// (2026-11-24T08:30, 2026-11-24T08:30:00Z, 2026-11-24T09:30:00+01:00; no zone is UTC).
// `dayEnd` makes a plain date the start of the day after (an --until that takes in its day).
QDateTime journalDate(const QString &text, bool dayEnd = false);

struct JournalRead {
    QList<JournalRow> rows; // oldest first
    QString error;
};
JournalRead readJournal(const ToolDbConnection &connection, const JournalFilter &filter);

// Removes the rows, and the tool usage, from before `before`. How many rows went, or -1 with
// the reason in `error`.
qint64 pruneJournal(const ToolDbConnection &connection, const QDateTime &before, QString *error);

// The column names scripts rely on, in their order.
QStringList journalColumns();
QByteArray journalCsv(const QList<JournalRow> &rows);
QByteArray journalJson(const QList<JournalRow> &rows);
QByteArray journalTable(const QList<JournalRow> &rows);
