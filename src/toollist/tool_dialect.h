#pragma once
// What differs between the engines that can hold the tool list: an SQLite file or a
// PostgreSQL server. The counting, the check and the grid are written once against this.

#include <QJsonArray>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>
#include <functional>

enum class ToolDbEngine { Sqlite, Postgres };

// A libpq URI ("postgresql://" or "postgres://", as libpq itself spells them) names a server;
// anything else is the path of an SQLite file.
ToolDbEngine toolDbEngineOf(const QString &name);

// `value` as an SQL literal of the connection's engine, a text quoted and escaped by its driver.
// A statement with its values written in runs in one round trip, and leaves no prepared
// statement behind that would have to be freed on a connection that is gone.
QString sqlLiteral(const QSqlDatabase &db, const QVariant &value);
// A JSON array, compact, as such a literal.
QString sqlLiteral(const QSqlDatabase &db, const QJsonArray &array);

class ToolDialect {
public:
    virtual ~ToolDialect() = default;
    static const ToolDialect &of(ToolDbEngine engine);
    static const ToolDialect &of(const QSqlDatabase &db);

    virtual QString driver() const = 0;
    // The hidden column that finds a row again for an edit of the grid.
    virtual QString key() const = 0;
    // The fields the table must have, as the server spells them, and how to compare them.
    virtual QStringList fields() const = 0;
    virtual Qt::CaseSensitivity fieldCase() const = 0;
    // Whether tool_list exists: one row when it does.
    virtual QString tableQuery() const = 0;
    // The names of tool_list's fields, one per row, in the first column.
    virtual QString fieldsQuery() const = 0;

    // Starts the transaction that counts one program and holds off every other station counting
    // any of its names until it ends. `onBusy`, when given, hears once that another writer
    // holds a lock, before the bounded wait for it begins. On failure nothing stays open.
    virtual bool beginCount(QSqlDatabase &db, const QStringList &names, int busyTimeoutMs,
                            const std::function<void()> &onBusy, QSqlError &error) const = 0;
    // The statements of a count take their values as one JSON text, already an SQL literal.
    // Look-up of a JSON array of names, one row per name in its order: the name as the
    // engine folds it for comparison, then key and util of the first row that matches without
    // regard to case (both null when none does).
    virtual QString lookUpQuery(const QString &names) const = 0;
    // A JSON array of {"key", "tool", "util"}: those rows get the name, the count and `date`.
    virtual QString updateQuery(const QString &rows, const QString &date) const = 0;
    // A JSON array of {"tool", "util"}: new rows, dated `date`.
    virtual QString insertQuery(const QString &rows, const QString &date) const = 0;
    // Every field the grid shows, most used first, then the key as the last column.
    virtual QString gridQuery() const = 0;

    // The lock was held by another writer for longer than this program waits.
    virtual bool isBusy(const QSqlError &error) const = 0;
};
