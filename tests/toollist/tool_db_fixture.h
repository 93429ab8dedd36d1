#pragma once
// A tool database made from the repository's schema, with a connection of the test's own: an
// SQLite file in a temporary folder, or the table on the PostgreSQL test server that
// ./scripts/test starts (DNC_PG_URI). Program files lie in the fixture's folder either way.

#include "files.h"
#include "tool_db.h"

#include <QtCore>
#include <QtSql>
#include <QtTest>
#include <optional>

constexpr std::optional<ToolDbEngine> BothEngines;
constexpr std::optional<ToolDbEngine> SqliteOnly = ToolDbEngine::Sqlite;
constexpr std::optional<ToolDbEngine> PostgresOnly = ToolDbEngine::Postgres;

// One data row per engine of the run, the engine first; `only` keeps a row to one engine. The
// engines a run covers are in DNC_TOOL_ENGINES ("sqlite", "postgres", or both, separated by
// commas), both when unset: CTest runs each engine as a test of its own.
template <class... Values>
void engineRow(const char *name, std::optional<ToolDbEngine> only, const Values &...values) {
    const QString wanted = qEnvironmentVariable("DNC_TOOL_ENGINES", "sqlite,postgres");
    for (const ToolDbEngine engine : {ToolDbEngine::Sqlite, ToolDbEngine::Postgres}) {
        const QString word = engine == ToolDbEngine::Postgres ? "postgres" : "sqlite";
        if (wanted.contains(word) && (!only || *only == engine))
            ((QTest::newRow(qPrintable(word + ": " + name)) << engine) << ... << values);
    }
}

// A PostgreSQL case needs the test server: skipped without one, with the reason, except where
// the server is required (./scripts/test sets DNC_PG_REQUIRED), where its absence fails.
#define REQUIRE_TOOL_DB(engine)                                                                    \
    do {                                                                                           \
        if ((engine) == ToolDbEngine::Postgres && qEnvironmentVariableIsEmpty("DNC_PG_URI")) {     \
            if (qEnvironmentVariableIsSet("DNC_PG_REQUIRED"))                                      \
                QFAIL("DNC_PG_REQUIRED is set but DNC_PG_URI is not: no test server");             \
            QSKIP("no PostgreSQL test server (DNC_PG_URI unset); ./scripts/test starts one");      \
        }                                                                                          \
    } while (false)

class ToolDbFixture {
public:
    explicit ToolDbFixture(ToolDbEngine engine = ToolDbEngine::Sqlite) : m_engine(engine) {
        if (engine == ToolDbEngine::Sqlite && !QFile(path()).open(QIODevice::WriteOnly))
            qFatal("cannot make %s", qPrintable(path()));
        m_db = std::make_unique<ToolDbConnection>(QStringLiteral("fixture"), path(), 5000);
        QFile schema(QString::fromUtf8(engine == ToolDbEngine::Sqlite ? DNC_TOOL_SCHEMA
                                                                      : DNC_TOOL_PG_SCHEMA));
        if (!m_db->isOpen() || !schema.open(QIODevice::ReadOnly))
            qFatal("cannot make a tool database: %s", qPrintable(m_db->error()));
        if (engine == ToolDbEngine::Postgres) {
            exec(QStringLiteral("SET client_min_messages = warning"));
            exec(QStringLiteral("DROP TABLE IF EXISTS tool_list"));
        }
        const QString sql = QString::fromUtf8(schema.readAll()).remove(QRegularExpression("--.*"));
        for (const QString &statement : sql.split(u';'))
            if (!statement.trimmed().isEmpty() && !exec(statement))
                qFatal("the schema does not run");
    }
    bool postgres() const { return m_engine == ToolDbEngine::Postgres; }
    // The database as -d names it.
    QString path() const {
        return postgres() ? qEnvironmentVariable("DNC_PG_URI")
                          : m_dir.filePath(QStringLiteral("tools.db"));
    }
    QString folder() const { return m_dir.path(); }

    // Runs one statement ("{key}" stands for the row key); `rows`, when given, gets each row
    // of its result as fields joined by ':'.
    bool exec(QString sql, const QVariantList &binds = {}, QStringList *rows = nullptr) {
        QSqlQuery query(m_db->database());
        sql.replace(QLatin1String("{key}"), m_db->dialect().key());
        // A server prepares only queries and changes of rows, not DROP or CREATE.
        if (!binds.isEmpty())
            query.prepare(sql);
        for (const QVariant &value : binds)
            query.addBindValue(value);
        if (!(binds.isEmpty() ? query.exec(sql) : query.exec()))
            qWarning() << sql << query.lastError().text();
        while (rows && query.next()) {
            QStringList fields;
            for (int i = 0; i < query.record().count(); ++i)
                fields << (query.isNull(i) ? QString() : query.value(i).toString());
            *rows << fields.join(u':');
        }
        return query.isActive();
    }
    // A time as yyyy-MM-dd HH:mm:ss, on either engine.
    QStringList rows(const QString &sql = QStringLiteral(
                         "SELECT tool, util, CAST(Date AS TEXT) FROM tool_list ORDER BY {key}")) {
        QStringList result;
        exec(sql, {}, &result);
        return result;
    }
    // A program file in the fixture's folder.
    QString program(const QByteArray &bytes, const QString &name = QStringLiteral("p.tap")) {
        const QString path = m_dir.filePath(name);
        if (!writeFile(path, bytes))
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

private:
    ToolDbEngine m_engine;
    QTemporaryDir m_dir{QDir::tempPath() + "/dncXXXXXX"}; // no '-': -d takes the path on a line
    std::unique_ptr<ToolDbConnection> m_db;
};
