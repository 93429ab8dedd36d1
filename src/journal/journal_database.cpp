#include "journal_database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

namespace {

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
    auto connection = std::make_unique<ToolDbConnection>(purpose, target.name, busyTimeoutMs);
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
    for (const QString &statement : statements) {
        if (!query.exec(statement))
            return QCoreApplication::translate("Journal",
                                               "The journal's tables cannot be made in %1: %2")
                .arg(connection.displayName(), connection.errorText(query.lastError()));
    }
    return {};
}
