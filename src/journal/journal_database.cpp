#include "journal_database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

namespace {

// The key of the server's lock that the makers of the tables take in turn.
constexpr qint64 JournalSchemaLock = 0x646e636a726e6c; // "dncjrnl"

// The statements of a schema file, its comments left out.
QStringList schemaStatements(const QString &resource) {
    QFile file(resource);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (!line.trimmed().startsWith(QLatin1String("--")))
            lines << line;
    }
    QStringList statements;
    for (const QString &statement : lines.join(QLatin1Char('\n')).split(QLatin1Char(';'))) {
        if (!statement.trimmed().isEmpty())
            statements << statement.trimmed();
    }
    return statements;
}

// An empty file is an empty SQLite database: made here, it is opened as any -d file is.
QString makeDefaultFile(const QString &path) {
    const QFileInfo info(path);
    if (info.exists())
        return {};
    if (!QDir().mkpath(info.absolutePath()))
        return QCoreApplication::translate("Journal", "The folder \"%1\" cannot be created.")
            .arg(info.absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) && !info.exists())
        return QCoreApplication::translate("Journal", "The journal \"%1\" cannot be created: %2")
            .arg(path, file.errorString());
    return {};
}

} // namespace

QString defaultJournalPath() {
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // A relative value is to be ignored, as an unset one.
    if (state.isEmpty() || QDir::isRelativePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/dnc/journal.db");
}

JournalTarget journalTarget(const QString &toolDbName) {
    if (toolDbName.isEmpty())
        return {defaultJournalPath(), true};
    return {toolDbName, false};
}

std::unique_ptr<ToolDbConnection> openJournalDatabase(const QString &purpose,
                                                      const JournalTarget &target, QString *error,
                                                      int busyTimeoutMs) {
    if (target.embedded) {
        const QString failure = makeDefaultFile(target.name);
        if (!failure.isEmpty()) {
            *error = failure;
            return nullptr;
        }
    }
    auto connection = std::make_unique<ToolDbConnection>(
        purpose, target.name, busyTimeoutMs,
        target.embedded ? ToolDbConnection::Role::Journal : ToolDbConnection::Role::ToolDatabase);
    if (!connection->isOpen()) {
        *error = connection->error();
        return nullptr;
    }
    error->clear();
    return connection;
}

QString createJournalTables(const ToolDbConnection &connection) {
    if (!connection.isOpen())
        return connection.error();
    const bool server = connection.dialect().driver() == QLatin1String("QPSQL");
    const QString resource = server ? QStringLiteral(":/dnc/sql/journal.pg.sql")
                                    : QStringLiteral(":/dnc/sql/journal.sql");
    const QStringList statements = schemaStatements(resource);
    if (statements.isEmpty())
        return QCoreApplication::translate("Journal", "The journal's tables are not built in.");
    QSqlDatabase db = connection.database();
    QSqlQuery query(db);
    // Many writers at once (stations, windows, dncctl) wait for each other far less with a
    // write-ahead log; a file that may not be changed keeps its mode, which is no failure.
    if (!server)
        query.exec(QStringLiteral("PRAGMA journal_mode = WAL"));
    // Most runs find the tables there: one question instead of a statement each.
    const QString standing =
        server ? QStringLiteral("SELECT count(*) FROM pg_catalog.pg_tables WHERE schemaname = "
                                "current_schema() AND tablename IN (%1)")
               : QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND "
                                "name IN (%1)");
    if (query.exec(
            standing.arg(QStringLiteral("'transfer_journal', 'tool_usage', 'station_state'"))) &&
        query.next() && query.value(0).toInt() == 3)
        return {};
    // A server says "already exists, skipping" for each table, which no one needs to read;
    // and two sessions making the same table at once collide, so they take turns.
    if (server) {
        query.exec(QStringLiteral("SET client_min_messages = warning"));
        db.transaction();
        query.exec(QStringLiteral("SELECT pg_advisory_xact_lock(%1)").arg(JournalSchemaLock));
    }
    for (const QString &statement : statements) {
        if (!query.exec(statement)) {
            const QString why = connection.errorText(query.lastError());
            if (server)
                db.rollback();
            return QCoreApplication::translate("Journal",
                                               "The journal's tables cannot be made in %1: %2")
                .arg(connection.displayName(), why);
        }
    }
    if (server && !db.commit())
        return QCoreApplication::translate("Journal",
                                           "The journal's tables cannot be made in %1: %2")
            .arg(connection.displayName(), connection.errorText(db.lastError()));
    return {};
}
