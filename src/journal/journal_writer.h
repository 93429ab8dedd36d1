#pragma once
// Writes the journal's rows as operations end. A journal that cannot be written never touches
// a transfer: its rows are kept and written with the next that can be, its failure is said
// once, and what is still kept when the writer goes is said to be lost.

#include "journal_database.h"
#include "journal_row.h"

#include <QList>
#include <QSqlQuery>
#include <functional>
#include <memory>

// How long a row waits for another writer's lock: far longer than any insert takes, short
// enough that an operation's end is not held up for long by a journal that stays locked.
inline constexpr int JournalBusyTimeoutMs = 1000;
// How often a program that runs on (a station, the window) tries again to write kept rows.
inline constexpr int JournalRetryMs = 30000;

class JournalWriter {
public:
    // `say` hears each failure meant for the operator's log, in the language of the texts.
    // At most `maxKept` rows are kept; the oldest go first, and a row tells how many went.
    JournalWriter(const JournalTarget &target, std::function<void(const QString &)> say,
                  int busyTimeoutMs = JournalBusyTimeoutMs, qsizetype maxKept = 10000);
    ~JournalWriter(); // a last try; what is left then is said to be lost
    JournalWriter(const JournalWriter &) = delete;
    JournalWriter &operator=(const JournalWriter &) = delete;

    // Writes the row, after every one kept before it, or keeps it.
    void add(const JournalRow &row);
    // Tries again to write what is kept; true when nothing is left.
    bool flush();
    qsizetype kept() const { return m_kept.size(); }
    qint64 lost() const { return m_lost; }
    bool disabled() const { return m_disabled; }

private:
    bool connect();
    void disconnect();
    bool writeKept();
    void failed(const QString &why);

    JournalTarget m_target;
    std::function<void(const QString &)> m_say;
    int m_busyTimeoutMs;
    qsizetype m_maxKept;
    std::unique_ptr<ToolDbConnection> m_connection;
    std::unique_ptr<QSqlQuery> m_rows; // prepared on m_connection
    std::unique_ptr<QSqlQuery> m_tools;
    bool m_server = false;
    QList<JournalRow> m_kept;
    qint64 m_lost = 0;
    JournalRow m_lastRow; // whose context the row of the rows lost takes
    bool m_told = false;
    bool m_disabled = false;
};
