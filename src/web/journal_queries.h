#pragma once
// What the pages read from the journal's tables, written once for SQLite and PostgreSQL. Every
// value from the database comes back as it is stored; escaping is the pages' business.

#include "tool_dialect.h"

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

struct TransferRow {
    qint64 id = 0;
    QDateTime time; // UTC
    QString host, machine, device, control, operation, file, program;
    qint64 bytes = 0, lines = 0;
    QString start, outcome, message;
    qint64 durationMs = 0;
    QString userName;
};

struct StationRow {
    QString host, device, state, program;
    std::optional<int> percent;
    QDateTime since, updated; // UTC
};

// One section that has a station, a journal row or both.
struct MachineRow {
    QString machine;
    std::optional<StationRow> station;
    std::optional<TransferRow> last; // the last send, receive, punch or request
};

// The journal page's filter; an empty field does not filter. The day is a local one.
struct JournalFilter {
    QString machine;
    QDate date;
    QString outcome;
};

struct ToolCount {
    QString tool;
    qint64 count = 0;
};

class JournalQueries {
public:
    JournalQueries(QSqlDatabase db, ToolDbEngine engine) : m_db(std::move(db)), m_engine(engine) {}

    // Each returns false when the database could not be read; error() then says why.
    bool machines(QList<MachineRow> &rows);
    bool machineNames(QStringList &names);
    // Newest first; `limit` rows from `offset`.
    bool journal(const JournalFilter &filter, int limit, int offset, QList<TransferRow> &rows);
    // Every row of the filter, newest first, handed over one at a time.
    bool journalEach(const JournalFilter &filter, const std::function<void(const TransferRow &)> &f,
                     int limit = -1, int offset = 0);
    // The tools most used since `from`, most first.
    bool topTools(const QDateTime &from, int limit, QList<ToolCount> &rows);
    // The times one tool was used since `from`.
    bool toolTimes(const QString &tool, const QDateTime &from, QList<QDateTime> &times);

    QString error() const { return m_error; }

private:
    QVariant timeValue(const QDateTime &utc) const;
    QDateTime timeOf(const QVariant &value) const;
    TransferRow transferOf(const QSqlQuery &q) const;
    bool lastTransfer(const QString &machine, std::optional<TransferRow> &row);

    QSqlDatabase m_db;
    ToolDbEngine m_engine;
    QString m_error;
};

// The operations that move a program, the ones the Machines page calls a transfer.
QStringList transferOperations();
// The outcomes a journal row can have, in the order the filter offers them.
QStringList journalOutcomes();
