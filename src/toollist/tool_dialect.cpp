#include "tool_dialect.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QSqlDriver>
#include <QSqlField>
#include <QSqlQuery>
#include <chrono>
#include <thread>

namespace {

bool execQuery(QSqlQuery &query, const QString &sql, QSqlError &error) {
    if (query.exec(sql))
        return true;
    error = query.lastError();
    return false;
}

void rollBack(QSqlDatabase &db) {
    if (db.isOpen()) // a lost connection has nothing left to roll back
        QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
}

// One file, one writer at a time: a write transaction holds the whole file, so taking it
// before the look-up keeps every other station's count of any name out until the commit.
class SqliteDialect : public ToolDialect {
public:
    QString driver() const override { return QStringLiteral("QSQLITE"); }
    QString key() const override { return QStringLiteral("rowid"); }
    QStringList fields() const override {
        return {QStringLiteral("tool"), QStringLiteral("util"), QStringLiteral("Date")};
    }
    Qt::CaseSensitivity fieldCase() const override { return Qt::CaseInsensitive; }
    QString tableQuery() const override {
        return QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND "
                              "name = 'tool_list' COLLATE NOCASE");
    }
    QString fieldsQuery() const override {
        return QStringLiteral("SELECT name FROM pragma_table_info('tool_list')");
    }

    // SQLite's own wait sleeps longer and longer, up to 100 ms at a time, and a file that other
    // stations keep busy is taken by one of them in each of those pauses: a station could wait
    // out the whole time-out while the file was free for a moment many times over. Asked again
    // every millisecond, a waiting station has its turn among the others.
    bool beginCount(QSqlDatabase &db, const QStringList &, int busyTimeoutMs,
                    const std::function<void()> &onBusy, QSqlError &error) const override {
        const QDeadlineTimer deadline(busyTimeoutMs);
        QSqlQuery query(db);
        query.exec(QStringLiteral("PRAGMA busy_timeout = 0"));
        bool began = false;
        for (bool told = false;; told = true) {
            began = execQuery(query, QStringLiteral("BEGIN IMMEDIATE"), error);
            if (began || !isBusy(error) || deadline.hasExpired())
                break;
            if (onBusy && !told)
                onBusy();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        // The statements inside the transaction wait as long, should they ever have to.
        query.exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(busyTimeoutMs));
        return began;
    }
    // NOCASE and lower() both fold A to Z alone.
    QString lookUpQuery(const QString &names) const override {
        return QStringLiteral("SELECT lower(j.value), t.rowid, t.util FROM json_each(%1) AS j "
                              "LEFT JOIN tool_list AS t ON t.rowid = (SELECT rowid FROM tool_list "
                              "WHERE tool = j.value COLLATE NOCASE ORDER BY rowid LIMIT 1) "
                              "ORDER BY j.key")
            .arg(names);
    }
    QString updateQuery(const QString &rows, const QString &date) const override {
        return QStringLiteral("UPDATE tool_list SET tool = json_extract(j.value, '$.tool'), "
                              "util = json_extract(j.value, '$.util'), Date = %2 "
                              "FROM json_each(%1) AS j "
                              "WHERE tool_list.rowid = json_extract(j.value, '$.key')")
            .arg(rows, date);
    }
    QString insertQuery(const QString &rows, const QString &date) const override {
        return QStringLiteral(
                   "INSERT INTO tool_list (tool, util, Date) "
                   "SELECT json_extract(value, '$.tool'), json_extract(value, '$.util'), "
                   "%2 FROM json_each(%1) ORDER BY key")
            .arg(rows, date);
    }
    QString gridQuery() const override {
        return QStringLiteral("SELECT tool_list.*, tool_list.rowid FROM tool_list "
                              "ORDER BY tool_list.util DESC, tool_list.rowid");
    }
    bool isBusy(const QSqlError &error) const override {
        // SQLITE_BUSY and SQLITE_LOCKED, with any extended code
        const int code = error.nativeErrorCode().toInt() & 0xff;
        return code == 5 || code == 6;
    }
};

// Many stations at once: a program's count takes an advisory lock on each of its lowered names,
// so that two stations counting the same name take turns (no lost update, no second insert of a
// new name); programs without a name in common go on in parallel. The locks are taken in one
// order, the hash's, so that two programs never wait for each other. The row locks of the
// look-up keep an edit in the grid from crossing a count. Every lock wait is bounded by the
// connection's lock_timeout.
class PostgresDialect : public ToolDialect {
public:
    QString driver() const override { return QStringLiteral("QPSQL"); }
    QString key() const override { return QStringLiteral("id"); }
    QStringList fields() const override {
        return {QStringLiteral("id"), QStringLiteral("tool"), QStringLiteral("util"),
                QStringLiteral("date")};
    }
    // Unquoted names are folded to lower case by the server: "Date" is not date.
    Qt::CaseSensitivity fieldCase() const override { return Qt::CaseSensitive; }
    QString tableQuery() const override {
        return QStringLiteral("SELECT 1 WHERE to_regclass('tool_list') IS NOT NULL");
    }
    QString fieldsQuery() const override {
        return QStringLiteral("SELECT attname FROM pg_attribute WHERE attrelid = "
                              "to_regclass('tool_list') AND attnum > 0 AND NOT attisdropped");
    }

    bool beginCount(QSqlDatabase &db, const QStringList &names, int,
                    const std::function<void()> &onBusy, QSqlError &error) const override {
        const QString keys =
            QStringLiteral("SELECT DISTINCT hashtext(lower(n.name)) AS h FROM "
                           "json_array_elements_text(CAST(%1 AS json)) AS n(name) ORDER BY h")
                .arg(sqlLiteral(db, QJsonArray::fromStringList(names)));
        QSqlQuery query(db);
        if (!execQuery(query, QStringLiteral("BEGIN"), error))
            return false;
        if (onBusy) {
            if (!execQuery(query,
                           QStringLiteral("SELECT bool_and(pg_try_advisory_xact_lock(%1, h)) "
                                          "FROM (%2) AS k")
                               .arg(LockClass)
                               .arg(keys),
                           error) ||
                !query.next()) {
                rollBack(db);
                return false;
            }
            if (query.value(0).toBool())
                return true;
            // Those taken out of turn are let go before the wait, which takes them in order.
            rollBack(db);
            onBusy();
            if (!execQuery(query, QStringLiteral("BEGIN"), error))
                return false;
        }
        // Each row is a lock taken, in the order of the keys.
        if (!execQuery(query,
                       QStringLiteral("SELECT pg_advisory_xact_lock(%1, h) FROM (%2) AS k")
                           .arg(LockClass)
                           .arg(keys),
                       error)) {
            rollBack(db);
            return false;
        }
        return true;
    }
    QString lookUpQuery(const QString &names) const override {
        return QStringLiteral(
                   "SELECT lower(n.name), t.id, t.util FROM json_array_elements_text(CAST(%1 AS "
                   "json)) WITH ORDINALITY AS n(name, i) LEFT JOIN LATERAL (SELECT id, util FROM "
                   "tool_list WHERE lower(tool) = lower(n.name) ORDER BY id LIMIT 1 FOR UPDATE) "
                   "AS t ON true ORDER BY n.i")
            .arg(names);
    }
    QString updateQuery(const QString &rows, const QString &date) const override {
        return QStringLiteral("UPDATE tool_list AS t SET tool = r.tool, util = r.util, "
                              "date = CAST(%2 AS timestamp) FROM json_to_recordset(CAST(%1 AS "
                              "json)) AS r(key bigint, tool text, util integer) WHERE t.id = r.key")
            .arg(rows, date);
    }
    QString insertQuery(const QString &rows, const QString &date) const override {
        return QStringLiteral("INSERT INTO tool_list (tool, util, date) SELECT r.tool, r.util, "
                              "CAST(%2 AS timestamp) FROM json_to_recordset(CAST(%1 AS json)) "
                              "AS r(tool text, util integer)")
            .arg(rows, date);
    }
    QString gridQuery() const override {
        // The date as the same text a file holds, not in the grid's locale.
        return QStringLiteral("SELECT tool, util, to_char(date, 'YYYY-MM-DD HH24:MI:SS') AS date, "
                              "id FROM tool_list ORDER BY util DESC NULLS LAST, id");
    }
    bool isBusy(const QSqlError &error) const override {
        return error.nativeErrorCode() == QLatin1String("55P03"); // lock_not_available
    }

private:
    // The first key of the advisory locks: keeps them apart from those of other programs.
    static constexpr int LockClass = 0x444e43; // "DNC"
};

} // namespace

QString sqlLiteral(const QSqlDatabase &db, const QVariant &value) {
    QSqlField field(QString(), value.metaType());
    field.setValue(value);
    return db.driver()->formatValue(field);
}

QString sqlLiteral(const QSqlDatabase &db, const QJsonArray &array) {
    return sqlLiteral(db, QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact)));
}

ToolDbEngine toolDbEngineOf(const QString &name) {
    return name.startsWith(QLatin1String("postgresql://")) ||
                   name.startsWith(QLatin1String("postgres://"))
               ? ToolDbEngine::Postgres
               : ToolDbEngine::Sqlite;
}

const ToolDialect &ToolDialect::of(ToolDbEngine engine) {
    static const SqliteDialect sqlite;
    static const PostgresDialect postgres;
    if (engine == ToolDbEngine::Postgres)
        return postgres;
    return sqlite;
}

const ToolDialect &ToolDialect::of(const QSqlDatabase &db) {
    return of(db.driverName() == QLatin1String("QPSQL") ? ToolDbEngine::Postgres
                                                        : ToolDbEngine::Sqlite);
}
