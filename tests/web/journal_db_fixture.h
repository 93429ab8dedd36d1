#pragma once
// The journal's tables, as the programs make them, on an SQLite file or on the PostgreSQL test
// server, and rows put in them as the stations would.

#include "journal_database.h"
#include "tool_db_fixture.h"

class JournalDbFixture {
public:
    explicit JournalDbFixture(ToolDbEngine engine) : m_engine(engine) {
        QString why;
        m_db = openJournalDatabase(QStringLiteral("journal_fixture"), {path(), !postgres()}, &why);
        if (!m_db)
            qFatal("cannot open the journal: %s", qPrintable(why));
        if (postgres()) {
            exec(QStringLiteral("SET client_min_messages = warning"));
            exec(
                QStringLiteral("DROP TABLE IF EXISTS transfer_journal, tool_usage, station_state"));
        }
        if (!(why = createJournalTables(*m_db)).isEmpty())
            qFatal("%s", qPrintable(why));
    }
    bool postgres() const { return m_engine == ToolDbEngine::Postgres; }
    QString path() const {
        return postgres() ? qEnvironmentVariable("DNC_PG_URI")
                          : m_dir.filePath(QStringLiteral("journal.db"));
    }

    bool exec(const QString &sql, const QVariantList &binds = {}) {
        QSqlQuery q(m_db->database());
        // A server prepares no DROP nor SET.
        if (!binds.isEmpty())
            q.prepare(sql);
        for (const QVariant &v : binds)
            q.addBindValue(v);
        if (!(binds.isEmpty() ? q.exec(sql) : q.exec()))
            qWarning() << sql << q.lastError().text();
        return q.isActive();
    }
    QString connectionName() const { return m_db->database().connectionName(); }
    bool transaction() { return m_db->database().transaction(); }
    bool commit() { return m_db->database().commit(); }

    static QString iso(const QDateTime &t) {
        return t.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
    }
    void transfer(const QDateTime &time, const QString &machine, const QString &operation,
                  const QString &program, const QString &outcome, const QString &file = "",
                  const QString &message = "", const QString &device = "") {
        exec(QStringLiteral("INSERT INTO transfer_journal (time, host, machine, device, operation, "
                            "file, program, bytes, outcome, message) VALUES "
                            "(?, 'pc1', ?, ?, ?, ?, ?, 1234, ?, ?)"),
             {iso(time), machine, device, operation, file, program, outcome, message});
    }
    void toolUse(const QString &tool, const QDateTime &time) {
        exec(QStringLiteral("INSERT INTO tool_usage (tool, machine, time) VALUES (?, 'Mill 2', ?)"),
             {tool, iso(time)});
    }
    void station(const QString &machine, const QString &state, const QVariant &percent,
                 const QDateTime &since, const QDateTime &updated, const QString &device = "") {
        exec(QStringLiteral("DELETE FROM station_state WHERE machine = ?"), {machine});
        exec(QStringLiteral("INSERT INTO station_state (machine, host, device, state, percent, "
                            "program, since, updated) VALUES (?, 'pc1', ?, ?, ?, '', ?, ?)"),
             {machine, device, state, percent, iso(since), iso(updated)});
    }

private:
    ToolDbEngine m_engine;
    QTemporaryDir m_dir{QDir::tempPath() + "/dncwebXXXXXX"};
    std::unique_ptr<ToolDbConnection> m_db;
};
