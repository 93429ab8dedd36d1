#include "journal_reader.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace {

QString isoTime(const QDateTime &t) {
    return t.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzzZ"));
}

bool onServer(const ToolDbConnection &c) {
    return c.dialect().driver() == QLatin1String("QPSQL");
}

// Each row's fields as text, in the order of journalColumns().
QStringList fieldsOf(const JournalRow &r) {
    return {isoTime(r.time),
            r.host,
            r.machine,
            r.device,
            r.control,
            r.operation,
            r.file,
            r.program,
            QString::number(r.bytes),
            QString::number(r.lines),
            r.sha256,
            r.start,
            r.outcome,
            r.message,
            QString::number(r.durationMs),
            r.user};
}

QString csvField(const QString &text) {
    static const QString special = QStringLiteral(",\"\r\n");
    if (std::none_of(text.begin(), text.end(), [](QChar c) { return special.contains(c); }))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

} // namespace

QDateTime journalDate(const QString &text, bool dayEnd) {
    const QDate day = QDate::fromString(text, Qt::ISODate);
    if (day.isValid() && text.size() == 10)
        return QDateTime(dayEnd ? day.addDays(1) : day, QTime(0, 0), Qt::UTC);
    QDateTime t = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!t.isValid())
        return {};
    if (t.timeSpec() == Qt::LocalTime) // no zone written
        t = QDateTime(t.date(), t.time(), Qt::UTC);
    return t.toUTC();
}

QStringList journalColumns() {
    return {QStringLiteral("time"),    QStringLiteral("host"),    QStringLiteral("machine"),
            QStringLiteral("device"),  QStringLiteral("control"), QStringLiteral("operation"),
            QStringLiteral("file"),    QStringLiteral("program"), QStringLiteral("bytes"),
            QStringLiteral("lines"),   QStringLiteral("sha256"),  QStringLiteral("start"),
            QStringLiteral("outcome"), QStringLiteral("message"), QStringLiteral("duration_ms"),
            QStringLiteral("user")};
}

JournalRead readJournal(const ToolDbConnection &connection, const JournalFilter &filter) {
    JournalRead read;
    // A server gives its times back in UTC text of the same form as the file's.
    const QString time = onServer(connection)
                             ? QStringLiteral("to_char(time AT TIME ZONE 'UTC', "
                                              "'YYYY-MM-DD\"T\"HH24:MI:SS.MS\"Z\"')")
                             : QStringLiteral("time");
    QString sql = QStringLiteral("SELECT %1, host, machine, device, control, operation, file, "
                                 "program, bytes, lines, sha256, start, outcome, message, "
                                 "duration_ms, user_name FROM transfer_journal WHERE 1 = 1")
                      .arg(time);
    QVariantList values;
    if (filter.since.isValid()) {
        sql += QStringLiteral(" AND time >= ?");
        values << isoTime(filter.since);
    }
    if (filter.until.isValid()) {
        sql += QStringLiteral(" AND time < ?");
        values << isoTime(filter.until);
    }
    if (!filter.machine.isEmpty()) {
        sql += QStringLiteral(" AND machine = ?");
        values << filter.machine;
    }
    if (!filter.outcome.isEmpty()) {
        sql += QStringLiteral(" AND outcome = ?");
        values << filter.outcome;
    }
    sql += QStringLiteral(" ORDER BY time, id");
    QSqlQuery query(connection.database());
    query.setForwardOnly(true);
    if (!query.prepare(sql)) {
        read.error = connection.errorText(query.lastError());
        return read;
    }
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    if (!query.exec()) {
        read.error = connection.errorText(query.lastError());
        return read;
    }
    while (query.next()) {
        JournalRow r;
        r.time = QDateTime::fromString(query.value(0).toString(), Qt::ISODateWithMs);
        r.host = query.value(1).toString();
        r.machine = query.value(2).toString();
        r.device = query.value(3).toString();
        r.control = query.value(4).toString();
        r.operation = query.value(5).toString();
        r.file = query.value(6).toString();
        r.program = query.value(7).toString();
        r.bytes = query.value(8).toLongLong();
        r.lines = query.value(9).toLongLong();
        r.sha256 = query.value(10).toString();
        r.start = query.value(11).toString();
        r.outcome = query.value(12).toString();
        r.message = query.value(13).toString();
        r.durationMs = query.value(14).toLongLong();
        r.user = query.value(15).toString();
        read.rows << r;
    }
    return read;
}

qint64 pruneJournal(const ToolDbConnection &connection, const QDateTime &before, QString *error) {
    QSqlDatabase db = connection.database();
    QSqlQuery query(db);
    const auto fail = [&] {
        *error = connection.errorText(query.lastError());
        QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
        return qint64(-1);
    };
    if (!db.transaction()) {
        *error = connection.errorText(db.lastError());
        return -1;
    }
    if (!query.prepare(QStringLiteral("DELETE FROM tool_usage WHERE time < ?")))
        return fail();
    query.bindValue(0, isoTime(before));
    if (!query.exec())
        return fail();
    if (!query.prepare(QStringLiteral("DELETE FROM transfer_journal WHERE time < ?")))
        return fail();
    query.bindValue(0, isoTime(before));
    if (!query.exec())
        return fail();
    const qint64 removed = query.numRowsAffected();
    if (!db.commit()) {
        *error = connection.errorText(db.lastError());
        return -1;
    }
    return removed;
}

QByteArray journalCsv(const QList<JournalRow> &rows) {
    QByteArray out = journalColumns().join(QLatin1Char(',')).toUtf8() + "\r\n";
    for (const JournalRow &r : rows) {
        QStringList fields = fieldsOf(r);
        for (QString &f : fields)
            f = csvField(f);
        out += fields.join(QLatin1Char(',')).toUtf8() + "\r\n";
    }
    return out;
}

QByteArray journalJson(const QList<JournalRow> &rows) {
    static const QStringList numbers{QStringLiteral("bytes"), QStringLiteral("lines"),
                                     QStringLiteral("duration_ms")};
    const QStringList columns = journalColumns();
    QJsonArray array;
    for (const JournalRow &r : rows) {
        const QStringList fields = fieldsOf(r);
        QJsonObject object;
        for (qsizetype i = 0; i < columns.size(); ++i) {
            if (numbers.contains(columns[i]))
                object.insert(columns[i], fields[i].toLongLong());
            else
                object.insert(columns[i], fields[i]);
        }
        array.append(object);
    }
    return QJsonDocument(array).toJson(QJsonDocument::Indented);
}

QByteArray journalTable(const QList<JournalRow> &rows) {
    // What a person scans for: when, where, what, how it ended; the rest is in CSV and JSON.
    const QStringList heads{QStringLiteral("time"),      QStringLiteral("machine"),
                            QStringLiteral("operation"), QStringLiteral("outcome"),
                            QStringLiteral("bytes"),     QStringLiteral("program")};
    QList<QStringList> table{heads};
    for (const JournalRow &r : rows) {
        const QString what = r.program.isEmpty() ? r.file : r.program;
        table << QStringList{
            r.time.toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
            r.machine,
            r.operation,
            r.outcome,
            QString::number(r.operation == QLatin1String("journal") ? r.lines : r.bytes),
            what};
    }
    QList<qsizetype> widths(heads.size(), 0);
    for (const QStringList &line : table) {
        for (qsizetype i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    }
    QByteArray out;
    for (const QStringList &line : table) {
        QString text;
        for (qsizetype i = 0; i < line.size(); ++i) {
            const bool last = i + 1 == line.size();
            text += last ? line[i] : line[i].leftJustified(widths[i] + 2);
        }
        out += text.toUtf8() + '\n';
    }
    return out;
}
