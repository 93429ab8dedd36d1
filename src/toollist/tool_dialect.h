#pragma once
// What differs between the engines that can hold the tool list: an SQLite file or a
// PostgreSQL server. The counting, the check and the grid are written once against this.

#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>
#include <functional>

enum class ToolDbEngine { Sqlite, Postgres };

// A libpq URI ("postgresql://" or "postgres://", as libpq itself spells them) names a server;
// anything else is the path of an SQLite file.
ToolDbEngine toolDbEngineOf(const QString &name);

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

    // Starts the transaction of one name's count and holds off every other station counting
    // the same name until it ends. `onBusy`, when given, hears once that another writer holds
    // the lock, before the bounded wait for it begins. On failure nothing stays open.
    virtual bool beginCount(QSqlDatabase &db, const QString &name, int busyTimeoutMs,
                            const std::function<void()> &onBusy, QSqlError &error) const = 0;
    // The first row whose tool matches without regard to case: key, util. Bound: the name.
    virtual QString findQuery() const = 0;
    // Bound: name, date.
    virtual QString insertQuery() const = 0;
    // Bound: name, util, date, key.
    virtual QString updateQuery() const = 0;
    // Every field the grid shows, most used first, then the key as the last column.
    virtual QString gridQuery() const = 0;

    // The lock was held by another writer for longer than this program waits.
    virtual bool isBusy(const QSqlError &error) const = 0;
};
