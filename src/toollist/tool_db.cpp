#include "tool_db.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QUrlQuery>

namespace {

QString UniqueName(const QString &purpose) {
    static QAtomicInt counter;
    return QStringLiteral("dnc_toollist_%1_%2").arg(purpose).arg(counter.fetchAndAddRelaxed(1));
}

// A value of a libpq connection string, quoted so that blanks and quotes stay inside it.
QString conninfoValue(QString value) {
    value.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    value.replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + value + QLatin1Char('\'');
}

} // namespace

ToolDbConnection::ToolDbConnection(const QString &purpose, const QString &name, int busyTimeoutMs,
                                   Role role)
    : m_name(UniqueName(purpose)), m_target(name), m_engine(toolDbEngineOf(name)),
      m_busyTimeoutMs(busyTimeoutMs), m_role(role) {
    open();
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

bool ToolDbConnection::reopen() {
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        if (db.isValid())
            db.close();
    }
    m_error.clear();
    open();
    return isOpen();
}

void ToolDbConnection::open() {
    if (m_engine == ToolDbEngine::Postgres)
        openPostgres();
    else
        openSqlite();
}

void ToolDbConnection::openSqlite() {
    const bool journal = m_role == Role::Journal;
    // A relative path is taken against the current folder of the moment.
    const QFileInfo info(m_target);
    if (m_target.isEmpty() || !info.exists()) {
        m_error =
            (journal ? QCoreApplication::translate("Journal", "The journal \"%1\" does not exist.")
                     : QCoreApplication::translate("ToolList",
                                                   "The tool database \"%1\" does not exist."))
                .arg(m_target);
        return;
    }
    if (!info.isFile()) {
        m_error =
            (journal ? QCoreApplication::translate("Journal", "The journal \"%1\" is not a file.")
                     : QCoreApplication::translate("ToolList",
                                                   "The tool database \"%1\" is not a file."))
                .arg(m_target);
        return;
    }
    QSqlDatabase db = QSqlDatabase::contains(m_name)
                          ? QSqlDatabase::database(m_name, false)
                          : QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    // mode=rw: SQLite must not create the file should it vanish after the check above.
    QUrl url = QUrl::fromLocalFile(info.absoluteFilePath());
    url.setQuery(QStringLiteral("mode=rw"));
    db.setDatabaseName(url.toString(QUrl::FullyEncoded));
    db.setConnectOptions(
        QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1").arg(m_busyTimeoutMs));
    if (!db.open()) {
        m_error =
            (journal
                 ? QCoreApplication::translate("Journal", "The journal \"%1\" cannot be opened: %2")
                 : QCoreApplication::translate("ToolList",
                                               "The tool database \"%1\" cannot be opened: %2"))
                .arg(m_target, errorText(db.lastError()));
        return;
    }
    // In WAL mode a reader never holds off a count, and a count holds the file only as long as
    // its own transaction. The mode stays with the file; it needs the -wal and -shm files beside
    // it, so it is asked for only where this user may make them. Where it cannot be had, the
    // file keeps its own journal: counting works as well, one writer at a time, and a reader
    // may make a count wait. Not worth a wait either: a connection that finds the file locked
    // leaves the change to the next one.
    if (QFileInfo(info.absolutePath()).isWritable()) {
        QSqlQuery query(db);
        query.exec(QStringLiteral("PRAGMA busy_timeout = 0"));
        query.exec(QStringLiteral("PRAGMA journal_mode = WAL"));
        query.exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(m_busyTimeoutMs));
    }
}

void ToolDbConnection::openPostgres() {
    const QUrl url(m_target, QUrl::StrictMode);
    if (!url.isValid()) {
        m_error = QCoreApplication::translate(
                      "ToolList", "The tool database %1 is no valid PostgreSQL URI: %2.")
                      .arg(displayName(), toolDbSafeText(url.errorString(), m_target));
        return;
    }
    QSqlDatabase db = QSqlDatabase::contains(m_name)
                          ? QSqlDatabase::database(m_name, false)
                          : QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_name);
    if (!db.isValid()) {
        m_error = QCoreApplication::translate(
                      "ToolList", "The tool database %1 cannot be used: Qt's PostgreSQL driver "
                                  "(QPSQL, package libqt6sql6-psql) is not installed.")
                      .arg(displayName());
        return;
    }
    db.setHostName(url.host(QUrl::FullyDecoded));
    db.setPort(url.port());
    db.setUserName(url.userName(QUrl::FullyDecoded));
    db.setPassword(url.password(QUrl::FullyDecoded)); // else libpq reads PGPASSWORD or .pgpass
    db.setDatabaseName(url.path(QUrl::FullyDecoded).mid(1));

    // The URI's own parameters go to libpq as they are; a connect time-out keeps an
    // unreachable server from holding the window, and lock_timeout bounds every lock wait
    // as SQLite's busy time-out does.
    QStringList options;
    QString serverOptions;
    bool timeout = false;
    bool application = false;
    for (const auto &[key, value] : QUrlQuery(url).queryItems(QUrl::FullyDecoded)) {
        if (key == QLatin1String("options")) {
            serverOptions = value + QLatin1Char(' ');
            continue;
        }
        timeout = timeout || key == QLatin1String("connect_timeout");
        application = application || key == QLatin1String("application_name");
        options << key + QLatin1Char('=') + conninfoValue(value);
    }
    if (!timeout)
        options << QStringLiteral("connect_timeout=%1").arg(ConnectTimeoutS);
    if (!application)
        options << QStringLiteral("application_name=dnc");
    // The server's notices would go to standard error: libpq prints them there.
    options << QStringLiteral("options=") +
                   conninfoValue(serverOptions +
                                 QStringLiteral("-c lock_timeout=%1 -c client_min_messages=error")
                                     .arg(m_busyTimeoutMs));
    db.setConnectOptions(options.join(QLatin1Char(';')));
    if (!db.open())
        m_error =
            QCoreApplication::translate("ToolList", "The tool database %1 cannot be opened: %2")
                .arg(displayName(), errorText(db.lastError()));
}

QString waitText(int ms) {
    if (ms < 1000)
        return QStringLiteral("%1 ms").arg(ms);
    return QStringLiteral("%1 s").arg(QString::number(ms / 1000.0, 'g', 3));
}

ToolDbProblem diagnoseToolDatabase(const QString &name, int busyTimeoutMs) {
    const ToolDbConnection connection(QStringLiteral("check"), name, busyTimeoutMs);
    const ToolDialect &sql = connection.dialect();
    const QString shown = connection.displayName();
    const bool server = toolDbEngineOf(name) == ToolDbEngine::Postgres;
    // A server that cannot be reached, or refuses the login, may answer at the next send; a
    // file that is missing stays missing.
    if (!connection.isOpen())
        return {connection.error(), server};
    const auto busy = [&] {
        return ToolDbProblem{
            QCoreApplication::translate(
                "ToolList", "The tool database %1 is busy: another station or program holds it "
                            "locked, and it stayed so for %2.")
                .arg(shown, waitText(busyTimeoutMs)),
            true};
    };
    QSqlQuery query(connection.database());
    // The first read tells whether the file is a database at all.
    if (!query.exec(sql.tableQuery())) {
        if (sql.isBusy(query.lastError()))
            return busy();
        return {QCoreApplication::translate("ToolList", "%1 is not a usable %2 database: %3")
                    .arg(shown, server ? QStringLiteral("PostgreSQL") : QStringLiteral("SQLite"),
                         connection.errorText(query.lastError())),
                server};
    }
    if (!query.next())
        return {QCoreApplication::translate("ToolList", "The database %1 holds no table tool_list.")
                    .arg(shown)};
    QStringList missing = sql.fields();
    if (!query.exec(sql.fieldsQuery()))
        return {
            QCoreApplication::translate("ToolList", "The table tool_list of %1 cannot be read: %2")
                .arg(shown, connection.errorText(query.lastError()))};
    while (query.next()) {
        const QString field = query.value(0).toString();
        missing.removeIf([&](const QString &m) { return m.compare(field, sql.fieldCase()) == 0; });
    }
    if (!missing.isEmpty())
        return {QCoreApplication::translate("ToolList",
                                            "The table tool_list of %1 lacks the field(s) %2.")
                    .arg(shown, missing.join(QStringLiteral(", ")))};
    if (!query.exec(QStringLiteral("SELECT * FROM tool_list LIMIT 1"))) {
        if (sql.isBusy(query.lastError()))
            return busy();
        return {
            QCoreApplication::translate("ToolList", "The table tool_list of %1 cannot be read: %2")
                .arg(shown, connection.errorText(query.lastError()))};
    }
    return {};
}

QString checkToolDatabase(const QString &name) {
    return diagnoseToolDatabase(name).text;
}

ToolDbStart startToolDatabase(const QString &name, int busyTimeoutMs) {
    const ToolDbProblem problem = diagnoseToolDatabase(name, busyTimeoutMs);
    if (problem.text.isEmpty())
        return {};
    if (problem.passing)
        return {true, false,
                problem.text + QCoreApplication::translate(
                                   "ToolList", " Until it can be used, tools are not counted and "
                                               "the tool list is not shown; every send tries "
                                               "again, and counting comes back by itself.")};
    return {false, false,
            problem.text + QCoreApplication::translate(
                               "ToolList", " Tools are not counted and the tool list is not shown "
                                           "until the program is started again.")};
}
