#pragma once
// The journal's tables made from the repository's schema, on an SQLite file or on the
// PostgreSQL test server, and rows put in them as the stations would.

#include "tool_db_fixture.h"

class JournalDbFixture {
public:
    explicit JournalDbFixture(ToolDbEngine engine) : m_engine(engine) {
        if (engine == ToolDbEngine::Sqlite && !QFile(path()).open(QIODevice::WriteOnly))
            qFatal("cannot make %s", qPrintable(path()));
        m_db = std::make_unique<ToolDbConnection>(QStringLiteral("journal_fixture"), path(), 5000);
        if (!m_db->isOpen())
            qFatal("cannot open the journal: %s", qPrintable(m_db->error()));
        if (engine == ToolDbEngine::Postgres) {
            exec(QStringLiteral("SET client_min_messages = warning"));
            for (const char *table : {"transfer_journal", "tool_usage", "station_state"})
                exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(QLatin1String(table)));
        }
        runSchema(m_db->database(), engine);
    }
    // The tables of `engine`'s schema in `db`.
    static void runSchema(const QSqlDatabase &db, ToolDbEngine engine) {
        QFile schema(QString::fromUtf8(engine == ToolDbEngine::Sqlite ? DNC_JOURNAL_SCHEMA
                                                                      : DNC_JOURNAL_PG_SCHEMA));
        if (!schema.open(QIODevice::ReadOnly))
            qFatal("no journal schema");
        const QString sql = QString::fromUtf8(schema.readAll()).remove(QRegularExpression("--.*"));
        for (const QString &statement : sql.split(u';')) {
            QSqlQuery q(db);
            if (!statement.trimmed().isEmpty() && !q.exec(statement))
                qFatal("the journal schema does not run: %s", qPrintable(q.lastError().text()));
        }
    }
    QString path() const {
        return m_engine == ToolDbEngine::Postgres ? qEnvironmentVariable("DNC_PG_URI")
                                                  : m_dir.filePath(QStringLiteral("journal.db"));
    }
    QString folder() const { return m_dir.path(); }

    bool exec(const QString &sql, const QVariantList &binds = {}) {
        QSqlQuery q(m_db->database());
        if (binds.isEmpty()) {
            if (!q.exec(sql))
                qWarning() << sql << q.lastError().text();
            return q.isActive();
        }
        q.prepare(sql);
        for (const QVariant &v : binds)
            q.addBindValue(v);
        if (!q.exec())
            qWarning() << sql << q.lastError().text();
        return q.isActive();
    }
    QString connectionName() const { return m_db->database().connectionName(); }
    bool transaction() { return m_db->database().transaction(); }
    bool commit() { return m_db->database().commit(); }

    // A time as both engines take it from text.
    static QString iso(const QDateTime &t) {
        return t.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
    }
    void transfer(const QDateTime &time, const QString &machine, const QString &operation,
                  const QString &program, const QString &outcome, const QString &file = {},
                  const QString &message = {}, const QString &device = {}) {
        exec(QStringLiteral("INSERT INTO transfer_journal (time, host, machine, device, operation, "
                            "file, program, bytes, outcome, message) VALUES "
                            "(?, 'pc1', ?, ?, ?, ?, ?, 1234, ?, ?)"),
             {iso(time), machine, text(device), operation, text(file), program, outcome,
              text(message)});
    }
    void toolUse(const QString &tool, const QDateTime &time, const QString &machine = "Mill 2") {
        exec(QStringLiteral("INSERT INTO tool_usage (tool, machine, time) VALUES (?, ?, ?)"),
             {tool, machine, iso(time)});
    }
    void station(const QString &machine, const QString &state, const QVariant &percent,
                 const QDateTime &since, const QDateTime &updated, const QString &device = {}) {
        exec(QStringLiteral("DELETE FROM station_state WHERE machine = ?"), {machine});
        exec(QStringLiteral("INSERT INTO station_state (machine, host, device, state, percent, "
                            "program, since, updated) VALUES (?, 'pc1', ?, ?, ?, '', ?, ?)"),
             {machine, text(device), state, percent, iso(since), iso(updated)});
    }
    // The columns are NOT NULL: an absent text is an empty one.
    static QString text(const QString &s) { return s.isNull() ? QString("") : s; }

private:
    ToolDbEngine m_engine;
    QTemporaryDir m_dir{QDir::tempPath() + "/dncwebXXXXXX"};
    std::unique_ptr<ToolDbConnection> m_db;
};
