#include "journal_queries.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

const char *const TransferColumns =
    "id, time, host, machine, device, control, operation, file, program, bytes, lines, start, "
    "outcome, message, duration_ms, user_name";

QString inList(const QStringList &values) {
    return QStringLiteral("'") + values.join(QStringLiteral("', '")) + QStringLiteral("'");
}

} // namespace

QStringList transferOperations() {
    return {QStringLiteral("send"), QStringLiteral("receive"), QStringLiteral("punch"),
            QStringLiteral("request")};
}

QStringList journalOutcomes() {
    return {QStringLiteral("done"),         QStringLiteral("timeout"),
            QStringLiteral("port_failure"), QStringLiteral("interrupted"),
            QStringLiteral("refused"),      QStringLiteral("not_on_control"),
            QStringLiteral("file_failure"), QStringLiteral("not_counted"),
            QStringLiteral("cancelled"),    QStringLiteral("rows_lost")};
}

// SQLite keeps times as ISO text whose order is time order; PostgreSQL as timestamptz.
QVariant JournalQueries::timeValue(const QDateTime &utc) const {
    if (m_engine == ToolDbEngine::Postgres)
        return utc.toUTC();
    return utc.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
}

QDateTime JournalQueries::timeOf(const QVariant &value) const {
    if (value.metaType().id() == QMetaType::QDateTime)
        return value.toDateTime().toUTC();
    QDateTime t = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    return t.isValid() ? t.toUTC() : QDateTime();
}

namespace {

struct Query {
    QSqlQuery q;
    explicit Query(const QSqlDatabase &db) : q(db) { q.setForwardOnly(true); }
};

} // namespace

bool JournalQueries::machineNames(QStringList &names) {
    names.clear();
    // One index seek per machine instead of a walk over every journal row.
    Query a(m_db);
    if (!a.q.exec(QStringLiteral(
            "WITH RECURSIVE m(name) AS ("
            " SELECT MIN(machine) FROM transfer_journal"
            " UNION ALL"
            " SELECT (SELECT MIN(machine) FROM transfer_journal WHERE machine > m.name) FROM m"
            " WHERE m.name IS NOT NULL)"
            " SELECT name FROM m WHERE name IS NOT NULL"
            " UNION SELECT machine FROM station_state"))) {
        m_error = a.q.lastError().text();
        return false;
    }
    while (a.q.next())
        names << a.q.value(0).toString();
    names.removeDuplicates();
    std::sort(names.begin(), names.end(), [](const QString &x, const QString &y) {
        return QString::localeAwareCompare(x, y) < 0;
    });
    return true;
}

TransferRow JournalQueries::transferOf(const QSqlQuery &q) const {
    TransferRow r;
    r.id = q.value(0).toLongLong();
    r.time = timeOf(q.value(1));
    r.host = q.value(2).toString();
    r.machine = q.value(3).toString();
    r.device = q.value(4).toString();
    r.control = q.value(5).toString();
    r.operation = q.value(6).toString();
    r.file = q.value(7).toString();
    r.program = q.value(8).toString();
    r.bytes = q.value(9).toLongLong();
    r.lines = q.value(10).toLongLong();
    r.start = q.value(11).toString();
    r.outcome = q.value(12).toString();
    r.message = q.value(13).toString();
    r.durationMs = q.value(14).toLongLong();
    r.userName = q.value(15).toString();
    return r;
}

bool JournalQueries::lastTransfer(const QString &machine, std::optional<TransferRow> &row) {
    Query a(m_db);
    a.q.prepare(QStringLiteral("SELECT %1 FROM transfer_journal WHERE machine = ? AND operation "
                               "IN (%2) ORDER BY time DESC, id DESC LIMIT 1")
                    .arg(QLatin1String(TransferColumns), inList(transferOperations())));
    a.q.addBindValue(machine);
    if (!a.q.exec()) {
        m_error = a.q.lastError().text();
        return false;
    }
    row.reset();
    if (a.q.next()) {
        row = transferOf(a.q);
    }
    return true;
}

bool JournalQueries::machines(QList<MachineRow> &rows) {
    rows.clear();
    QStringList names;
    if (!machineNames(names))
        return false;
    Query s(m_db);
    if (!s.q.exec(QStringLiteral("SELECT machine, host, device, state, percent, program, since, "
                                 "updated FROM station_state"))) {
        m_error = s.q.lastError().text();
        return false;
    }
    QHash<QString, StationRow> stations;
    while (s.q.next()) {
        StationRow st;
        st.host = s.q.value(1).toString();
        st.device = s.q.value(2).toString();
        st.state = s.q.value(3).toString();
        if (!s.q.value(4).isNull())
            st.percent = s.q.value(4).toInt();
        st.program = s.q.value(5).toString();
        st.since = timeOf(s.q.value(6));
        st.updated = timeOf(s.q.value(7));
        stations.insert(s.q.value(0).toString(), st);
    }
    for (const QString &name : std::as_const(names)) {
        MachineRow row;
        row.machine = name;
        if (auto it = stations.constFind(name); it != stations.constEnd())
            row.station = *it;
        if (!lastTransfer(name, row.last))
            return false;
        rows << row;
    }
    return true;
}

namespace {

// The WHERE clause of a filter and its values in order.
QString whereOf(const JournalFilter &filter, const std::function<QVariant(QDateTime)> &time,
                QVariantList &values) {
    QStringList terms;
    if (!filter.machine.isEmpty()) {
        terms << QStringLiteral("machine = ?");
        values << filter.machine;
    }
    if (!filter.outcome.isEmpty()) {
        terms << QStringLiteral("outcome = ?");
        values << filter.outcome;
    }
    if (filter.date.isValid()) {
        terms << QStringLiteral("time >= ? AND time < ?");
        values << time(filter.date.startOfDay()) << time(filter.date.addDays(1).startOfDay());
    }
    return terms.isEmpty() ? QString() : QStringLiteral(" WHERE ") + terms.join(" AND ");
}

} // namespace

bool JournalQueries::journal(const JournalFilter &filter, int limit, int offset,
                             QList<TransferRow> &rows) {
    rows.clear();
    return journalEach(
        filter, [&rows](const TransferRow &r) { rows << r; }, limit, offset);
}

bool JournalQueries::journalEach(const JournalFilter &filter,
                                 const std::function<void(const TransferRow &)> &f, int limit,
                                 int offset) {
    QVariantList values;
    const QString where = whereOf(
        filter, [this](const QDateTime &t) { return timeValue(t); }, values);
    QString sql = QStringLiteral("SELECT %1 FROM transfer_journal%2 ORDER BY time DESC, id DESC")
                      .arg(QLatin1String(TransferColumns), where);
    if (limit >= 0)
        sql += QStringLiteral(" LIMIT %1 OFFSET %2").arg(limit).arg(offset);
    Query a(m_db);
    a.q.prepare(sql);
    for (const QVariant &v : std::as_const(values))
        a.q.addBindValue(v);
    if (!a.q.exec()) {
        m_error = a.q.lastError().text();
        return false;
    }
    while (a.q.next())
        f(transferOf(a.q));
    return true;
}

bool JournalQueries::topTools(const QDateTime &from, int limit, QList<ToolCount> &rows) {
    rows.clear();
    Query a(m_db);
    a.q.prepare(QStringLiteral("SELECT tool, COUNT(*) AS n FROM tool_usage WHERE time >= ? "
                               "GROUP BY tool ORDER BY n DESC, tool LIMIT %1")
                    .arg(limit));
    a.q.addBindValue(timeValue(from));
    if (!a.q.exec()) {
        m_error = a.q.lastError().text();
        return false;
    }
    while (a.q.next())
        rows << ToolCount{a.q.value(0).toString(), a.q.value(1).toLongLong()};
    return true;
}

bool JournalQueries::toolTimes(const QString &tool, const QDateTime &from,
                               QList<QDateTime> &times) {
    times.clear();
    Query a(m_db);
    a.q.prepare(QStringLiteral("SELECT time FROM tool_usage WHERE tool = ? AND time >= ?"));
    a.q.addBindValue(tool);
    a.q.addBindValue(timeValue(from));
    if (!a.q.exec()) {
        m_error = a.q.lastError().text();
        return false;
    }
    while (a.q.next())
        times << timeOf(a.q.value(0));
    return true;
}
