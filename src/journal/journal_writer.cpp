#include "journal_writer.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>

namespace {

QString isoTime(const QDateTime &t) {
    return t.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzzZ"));
}

const QString InsertRow = QStringLiteral(
    "INSERT INTO transfer_journal (time, host, machine, device, control, operation, file, "
    "program, bytes, lines, sha256, start, outcome, message, duration_ms, user_name) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
const QString InsertTool =
    QStringLiteral("INSERT INTO tool_usage (tool, machine, time, program) VALUES (?, ?, ?, ?)");
// A server takes a send's tools in one statement, one round trip, as an array.
const QString InsertTools =
    QStringLiteral("INSERT INTO tool_usage (tool, machine, time, program) "
                   "SELECT unnest(CAST(? AS text[])), ?, CAST(? AS timestamptz), ?");

// An array literal of PostgreSQL: each element quoted, its quotes and backslashes escaped.
QString arrayLiteral(const QStringList &items) {
    QStringList quoted;
    for (QString item : items) {
        item.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
        item.replace(QLatin1Char('"'), QLatin1String("\\\""));
        quoted << QLatin1Char('"') + item + QLatin1Char('"');
    }
    return QLatin1Char('{') + quoted.join(QLatin1Char(',')) + QLatin1Char('}');
}

// The program a tool went out in: its name on the control, else the file's name.
QString programOf(const JournalRow &row) {
    if (!row.program.isEmpty())
        return row.program;
    return row.file.section(QLatin1Char('/'), -1);
}

// A null string would be bound as NULL, which the columns do not take.
QString text(const QString &s) {
    return s.isNull() ? QStringLiteral("") : s;
}

bool insert(QSqlQuery &rows, QSqlQuery &tools, bool server, const JournalRow &row) {
    const QString time = isoTime(row.time);
    const QVariantList values{time,
                              text(row.host),
                              text(row.machine),
                              text(row.device),
                              text(row.control),
                              text(row.operation),
                              text(row.file),
                              text(row.program),
                              row.bytes,
                              row.lines,
                              text(row.sha256),
                              text(row.start),
                              text(row.outcome),
                              text(row.message),
                              row.durationMs,
                              text(row.user)};
    for (int i = 0; i < values.size(); ++i)
        rows.bindValue(i, values[i]);
    if (!rows.exec())
        return false;
    if (server && !row.tools.isEmpty()) {
        tools.bindValue(0, arrayLiteral(row.tools));
        tools.bindValue(1, text(row.machine));
        tools.bindValue(2, time);
        tools.bindValue(3, text(programOf(row)));
        return tools.exec();
    }
    for (const QString &tool : row.tools) {
        tools.bindValue(0, tool);
        tools.bindValue(1, text(row.machine));
        tools.bindValue(2, time);
        tools.bindValue(3, text(programOf(row)));
        if (!tools.exec())
            return false;
    }
    return true;
}

} // namespace

JournalWriter::JournalWriter(const JournalTarget &target, std::function<void(const QString &)> say,
                             int busyTimeoutMs, qsizetype maxKept)
    : m_target(target), m_say(std::move(say)), m_busyTimeoutMs(busyTimeoutMs), m_maxKept(maxKept) {}

JournalWriter::~JournalWriter() {
    if (flush()) {
        disconnect();
        return;
    }
    const qint64 lost = m_kept.size() + m_lost;
    if (m_say)
        m_say(QCoreApplication::translate(
                  "Journal", "%1 row(s) of the journal could not be written and are lost.")
                  .arg(lost));
}

void JournalWriter::add(const JournalRow &row) {
    if (m_disabled)
        return;
    m_lastRow = row;
    m_kept.append(row);
    if (m_kept.size() > m_maxKept) {
        m_kept.removeFirst();
        ++m_lost;
    }
    flush();
}

bool JournalWriter::flush() {
    if (m_disabled)
        return true;
    if (m_kept.isEmpty() && m_lost == 0)
        return true;
    if (!connect())
        return false;
    if (writeKept())
        return true;
    // A server that went away needs a new session; a file is opened anew at no cost.
    disconnect();
    return false;
}

bool JournalWriter::connect() {
    if (m_connection)
        return true;
    QString why;
    auto connection =
        openJournalDatabase(QStringLiteral("journal"), m_target, &why, m_busyTimeoutMs);
    if (!connection) {
        failed(why);
        return false;
    }
    if (const QString made = createJournalTables(*connection); !made.isEmpty()) {
        // A database that does not have the table and may not be given it has no journal.
        QSqlQuery probe(connection->database());
        if (!probe.exec(QStringLiteral("SELECT 1 FROM transfer_journal WHERE 1 = 0"))) {
            const QSqlError e = probe.lastError();
            if (e.text().contains(QLatin1String("no such table")) ||
                e.nativeErrorCode() == QLatin1String("42P01")) {
                m_disabled = true;
                m_kept.clear();
                m_lost = 0;
                if (m_say)
                    m_say(
                        made + QLatin1Char(' ') +
                        QCoreApplication::translate("Journal", "There is no journal of this run."));
                return false;
            }
        }
        failed(made);
        return false;
    }
    // Prepared once a connection: a server is asked to prepare in a round trip of its own.
    const bool server = connection->dialect().driver() == QLatin1String("QPSQL");
    auto rows = std::make_unique<QSqlQuery>(connection->database());
    auto tools = std::make_unique<QSqlQuery>(connection->database());
    if (!rows->prepare(InsertRow) || !tools->prepare(server ? InsertTools : InsertTool)) {
        failed(connection->errorText(rows->lastError().isValid() ? rows->lastError()
                                                                 : tools->lastError()));
        return false;
    }
    m_server = server;
    m_connection = std::move(connection);
    m_rows = std::move(rows);
    m_tools = std::move(tools);
    return true;
}

void JournalWriter::disconnect() {
    m_rows.reset();
    m_tools.reset();
    m_connection.reset();
}

bool JournalWriter::writeKept() {
    QSqlDatabase db = m_connection->database();
    QSqlQuery &rows = *m_rows;
    QSqlQuery &tools = *m_tools;
    const auto fail = [&](const QSqlError &e) {
        QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
        failed(m_connection->errorText(e));
        return false;
    };
    if (!db.transaction())
        return fail(db.lastError());
    if (m_lost > 0) {
        JournalRow lost = m_lastRow;
        lost.time = QDateTime::currentDateTimeUtc();
        lost.operation = QStringLiteral("journal");
        lost.outcome = QStringLiteral("rows_lost");
        lost.lines = m_lost;
        lost.file = lost.program = lost.sha256 = lost.start = lost.message = QString();
        lost.bytes = lost.durationMs = 0;
        lost.tools.clear();
        if (!insert(rows, tools, m_server, lost))
            return fail(rows.lastError());
    }
    for (const JournalRow &row : std::as_const(m_kept)) {
        if (!insert(rows, tools, m_server, row))
            return fail(rows.lastError().isValid() ? rows.lastError() : tools.lastError());
    }
    if (!db.commit())
        return fail(db.lastError());
    m_kept.clear();
    m_lost = 0;
    return true;
}

void JournalWriter::failed(const QString &why) {
    if (m_told || !m_say)
        return;
    m_told = true;
    m_say(QCoreApplication::translate("Journal",
                                      "The journal of transfers cannot be written: %1 The "
                                      "transfers go on; their rows are kept and written as soon "
                                      "as it can be.")
              .arg(why));
}
