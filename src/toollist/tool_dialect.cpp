#include "tool_dialect.h"

#include <QSqlQuery>

namespace {

bool execQuery(QSqlQuery &query, const QString &sql, QSqlError &error) {
    if (query.exec(sql))
        return true;
    error = query.lastError();
    return false;
}

void rollBack(QSqlDatabase &db) {
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

    bool beginCount(QSqlDatabase &db, const QString &, int busyTimeoutMs,
                    const std::function<void()> &onBusy, QSqlError &error) const override {
        const QString begin = QStringLiteral("BEGIN IMMEDIATE");
        QSqlQuery query(db);
        if (onBusy) {
            // A first try that does not wait tells whether the operator has to be told of one.
            query.exec(QStringLiteral("PRAGMA busy_timeout = 0"));
            const bool began = execQuery(query, begin, error);
            query.exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(busyTimeoutMs));
            if (began)
                return true;
            if (!isBusy(error))
                return false;
            onBusy();
        }
        return execQuery(query, begin, error); // waits up to the busy time-out
    }
    QString findQuery() const override {
        return QStringLiteral("SELECT rowid, util FROM tool_list WHERE tool = ? COLLATE NOCASE "
                              "ORDER BY rowid LIMIT 1");
    }
    QString insertQuery() const override {
        return QStringLiteral("INSERT INTO tool_list (tool, util, Date) VALUES (?, 1, ?)");
    }
    QString updateQuery() const override {
        return QStringLiteral("UPDATE tool_list SET tool = ?, util = ?, Date = ? WHERE rowid = ?");
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

// Many stations at once: a transaction per name with an advisory lock on the lowered name, so
// that two stations counting the same name take turns (no lost update, no second insert of a
// new name); other names go on in parallel. The row lock of the look-up keeps an edit in the
// grid from crossing a count. The lock waits are bounded by the connection's lock_timeout.
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

    bool beginCount(QSqlDatabase &db, const QString &name, int, const std::function<void()> &onBusy,
                    QSqlError &error) const override {
        QSqlQuery begin(db);
        if (!execQuery(begin, QStringLiteral("BEGIN"), error))
            return false;
        const auto lock = [&](const char *function, bool &taken) {
            QSqlQuery query(db);
            query.prepare(QStringLiteral("SELECT %1(%2, hashtext(lower(?)))")
                              .arg(QLatin1String(function))
                              .arg(LockClass));
            query.addBindValue(name);
            if (!query.exec() || !query.next()) {
                error = query.lastError();
                rollBack(db); // while the query still exists: it is freed in a live session
                return false;
            }
            // pg_advisory_xact_lock gives no value: it has waited until it holds the lock.
            taken = QLatin1String(function) == QLatin1String("pg_advisory_xact_lock") ||
                    query.value(0).toBool();
            return true;
        };
        bool taken = false;
        if (onBusy) {
            if (!lock("pg_try_advisory_xact_lock", taken))
                return false;
            if (taken)
                return true;
            onBusy();
        }
        return lock("pg_advisory_xact_lock", taken);
    }
    QString findQuery() const override {
        return QStringLiteral("SELECT id, util FROM tool_list WHERE lower(tool) = lower(?) "
                              "ORDER BY id LIMIT 1 FOR UPDATE");
    }
    QString insertQuery() const override {
        return QStringLiteral("INSERT INTO tool_list (tool, util, date) VALUES (?, 1, ?)");
    }
    QString updateQuery() const override {
        return QStringLiteral("UPDATE tool_list SET tool = ?, util = ?, date = ? WHERE id = ?");
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
