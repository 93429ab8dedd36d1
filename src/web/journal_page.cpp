#include "journal_page.h"

#include "journal_texts.h"

JournalRequest JournalRequest::of(const FormFields &fields) {
    JournalRequest r;
    r.filter.machine = formValue(fields, QStringLiteral("machine"));
    r.filter.date = QDate::fromString(formValue(fields, QStringLiteral("date")), Qt::ISODate);
    const QString outcome = formValue(fields, QStringLiteral("outcome"));
    if (journalOutcomes().contains(outcome))
        r.filter.outcome = outcome;
    bool ok = false;
    const int page = formValue(fields, QStringLiteral("page")).toInt(&ok);
    // Far enough for any journal; further only costs the database a longer walk.
    if (ok && page >= 1 && page <= 100000)
        r.page = page;
    return r;
}

FormFields JournalRequest::fields(int page) const {
    FormFields f{{QStringLiteral("machine"), filter.machine},
                 {QStringLiteral("date"),
                  filter.date.isValid() ? filter.date.toString(Qt::ISODate) : QString()},
                 {QStringLiteral("outcome"), filter.outcome}};
    if (page > 1)
        f.append({QStringLiteral("page"), QString::number(page)});
    return f;
}

namespace {

QString option(const QString &value, const QString &text, bool selected) {
    return QStringLiteral("<option value=\"%1\"%2>%3</option>")
        .arg(htmlEscaped(value), selected ? QStringLiteral(" selected") : QString(),
             htmlEscaped(text));
}

QString link(const QString &path, const FormFields &fields) {
    const QString q = formQuery(fields);
    return htmlEscaped(q.isEmpty() ? path : path + QLatin1Char('?') + q);
}

} // namespace

QByteArray JournalPage::build(const PageContext &context, const JournalRequest &request,
                              const QStringList &machines, const QList<TransferRow> &rows) {
    const JournalFilter &f = request.filter;
    QString machineOptions = option(QString(), tr("All machines"), f.machine.isEmpty());
    QStringList names = machines;
    if (!f.machine.isEmpty() && !names.contains(f.machine))
        names.prepend(f.machine);
    for (const QString &m : std::as_const(names))
        machineOptions += option(m, m, m == f.machine);
    QString outcomeOptions = option(QString(), tr("All outcomes"), f.outcome.isEmpty());
    for (const QString &o : journalOutcomes())
        outcomeOptions += option(o, JournalTexts::outcome(o), o == f.outcome);

    QString body =
        QStringLiteral("<form class=\"filter\" method=\"get\" action=\"/journal\">"
                       "<label>%1 <select name=\"machine\">%2</select></label> "
                       "<label>%3 <input type=\"date\" name=\"date\" value=\"%4\"></label> "
                       "<label>%5 <select name=\"outcome\">%6</select></label> "
                       "<button type=\"submit\">%7</button> "
                       "<a class=\"csv\" href=\"%8\">%9</a></form>\n")
            .arg(htmlEscaped(tr("Machine")), machineOptions, htmlEscaped(tr("Day")),
                 f.date.isValid() ? f.date.toString(Qt::ISODate) : QString(),
                 htmlEscaped(tr("Outcome")), outcomeOptions, htmlEscaped(tr("Show")),
                 link(QStringLiteral("/journal.csv"), request.fields(0)),
                 htmlEscaped(tr("Download as CSV")));

    const qsizetype shown = std::min<qsizetype>(rows.size(), JournalPageRows);
    if (shown == 0) {
        body += QStringLiteral("<p class=\"empty\">%1</p>\n")
                    .arg(htmlEscaped(tr("No journal row matches.")));
    } else {
        body += QStringLiteral("<table class=\"journal\"><thead><tr><th>%1</th><th>%2</th>"
                               "<th>%3</th><th>%4</th><th>%5</th><th>%6</th><th>%7</th>"
                               "<th>%8</th></tr></thead><tbody>\n")
                    .arg(htmlEscaped(tr("Time")), htmlEscaped(tr("Machine")),
                         htmlEscaped(tr("Operation")), htmlEscaped(tr("Program")),
                         htmlEscaped(tr("File")), htmlEscaped(tr("Bytes")),
                         htmlEscaped(tr("Duration")), htmlEscaped(tr("Outcome")));
        for (qsizetype i = 0; i < shown; ++i) {
            const TransferRow &r = rows.at(i);
            QString outcome = htmlEscaped(JournalTexts::outcome(r.outcome));
            if (!r.message.isEmpty())
                outcome += QStringLiteral("<br><span class=\"message\">%1</span>")
                               .arg(htmlEscaped(r.message));
            QString operation = htmlEscaped(JournalTexts::operation(r.operation));
            if (!r.start.isEmpty())
                operation +=
                    QStringLiteral(" <span class=\"start\">(%1)</span>").arg(htmlEscaped(r.start));
            body += QStringLiteral("<tr><td>%1</td><td>%2</td><td>%3</td><td>%4</td>"
                                   "<td>%5</td><td class=\"number\">%6</td>"
                                   "<td class=\"number\">%7</td>"
                                   "<td class=\"outcome outcome-%8\">%9</td></tr>\n")
                        .arg(htmlEscaped(PageFrame::time(context, r.time)), htmlEscaped(r.machine),
                             operation, htmlEscaped(r.program), htmlEscaped(r.file),
                             context.locale.toString(r.bytes),
                             htmlEscaped(context.locale.toString(r.durationMs / 1000.0, 'f', 1) +
                                         QStringLiteral(" s")),
                             r.outcome == QLatin1String("done") ? QStringLiteral("done")
                                                                : QStringLiteral("failed"),
                             outcome);
        }
        body += QStringLiteral("</tbody></table>\n");
    }
    QString pager;
    if (request.page > 1)
        pager += QStringLiteral("<a class=\"newer\" href=\"%1\">%2</a> ")
                     .arg(link(QStringLiteral("/journal"), request.fields(request.page - 1)),
                          htmlEscaped(tr("\u2190 Newer")));
    pager += QStringLiteral("<span class=\"page\">%1</span>")
                 .arg(htmlEscaped(tr("Page %1").arg(request.page)));
    if (rows.size() > JournalPageRows)
        pager += QStringLiteral(" <a class=\"older\" href=\"%1\">%2</a>")
                     .arg(link(QStringLiteral("/journal"), request.fields(request.page + 1)),
                          htmlEscaped(tr("Older \u2192")));
    body += QStringLiteral("<p class=\"pager\">%1</p>\n").arg(pager);
    return PageFrame::page(context, QStringLiteral("/journal"), tr("Journal"), body);
}

namespace {

// A field as RFC 4180 quotes it; one that a spreadsheet would take for a formula starts with
// an apostrophe, so that opening the file never runs what a file name says.
QByteArray csvField(const QString &text) {
    QString t = text;
    if (!t.isEmpty() && QStringLiteral("=+-@\t\r").contains(t.front()))
        t.prepend(u'\'');
    t.replace(u'"', QStringLiteral("\"\""));
    return '"' + t.toUtf8() + '"';
}

} // namespace

QByteArray JournalCsv::header() {
    return "time,host,machine,device,control,operation,file,program,bytes,lines,start,outcome,"
           "message,duration_ms,user_name\r\n";
}

QByteArray JournalCsv::line(const TransferRow &r) {
    const QList<QByteArray> fields{
        r.time.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'")).toLatin1(),
        csvField(r.host),
        csvField(r.machine),
        csvField(r.device),
        csvField(r.control),
        csvField(r.operation),
        csvField(r.file),
        csvField(r.program),
        QByteArray::number(r.bytes),
        QByteArray::number(r.lines),
        csvField(r.start),
        csvField(r.outcome),
        csvField(r.message),
        QByteArray::number(r.durationMs),
        csvField(r.userName)};
    return fields.join(',') + "\r\n";
}
