#include "tool_db.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

namespace {

QString UniqueName(const QString &purpose) {
    static QAtomicInt counter;
    return QStringLiteral("dnc_toollist_%1_%2").arg(purpose).arg(counter.fetchAndAddRelaxed(1));
}

} // namespace

ToolDbConnection::ToolDbConnection(const QString &purpose, const QString &path, int busyTimeoutMs)
    : m_name(UniqueName(purpose)) {
    // A relative path is taken against the current folder of the moment.
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists()) {
        m_error = QStringLiteral("The tool database \"%1\" does not exist.").arg(path);
        return;
    }
    if (!info.isFile()) {
        m_error = QStringLiteral("The tool database \"%1\" is not a file.").arg(path);
        return;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    // mode=rw: SQLite must not create the file should it vanish after the check above.
    QUrl url = QUrl::fromLocalFile(info.absoluteFilePath());
    url.setQuery(QStringLiteral("mode=rw"));
    db.setDatabaseName(url.toString(QUrl::FullyEncoded));
    db.setConnectOptions(
        QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs));
    if (!db.open())
        m_error = QStringLiteral("The tool database \"%1\" cannot be opened: %2")
                      .arg(path, db.lastError().text());
}

ToolDbConnection::~ToolDbConnection() {
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        if (db.isValid())
            db.close();
    }
    if (QSqlDatabase::contains(m_name))
        QSqlDatabase::removeDatabase(m_name);
}

QString checkToolDatabase(const QString &path) {
    const ToolDbConnection connection(QStringLiteral("check"), path, DefaultBusyTimeoutMs);
    if (!connection.isOpen())
        return connection.error();
    QSqlQuery query(connection.database());
    // The first read of the file tells whether it is a database at all.
    if (!query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND "
                                   "name = 'tool_list' COLLATE NOCASE")))
        return QStringLiteral("\"%1\" is not a usable SQLite database: %2")
            .arg(path, query.lastError().text());
    if (!query.next())
        return QStringLiteral("The database \"%1\" holds no table tool_list.").arg(path);
    QStringList missing{QStringLiteral("tool"), QStringLiteral("util"), QStringLiteral("Date")};
    if (!query.exec(QStringLiteral("PRAGMA table_info(tool_list)")))
        return QStringLiteral("The table tool_list of \"%1\" cannot be read: %2")
            .arg(path, query.lastError().text());
    while (query.next()) {
        const QString field = query.value(1).toString();
        missing.removeIf(
            [&](const QString &m) { return m.compare(field, Qt::CaseInsensitive) == 0; });
    }
    if (!missing.isEmpty())
        return QStringLiteral("The table tool_list of \"%1\" lacks the field(s) %2.")
            .arg(path, missing.join(QStringLiteral(", ")));
    return {};
}
