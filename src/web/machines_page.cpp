#include "machines_page.h"

#include "journal_texts.h"

#include "form_query.h"

QByteArray MachinesPage::build(const PageContext &context, const QList<MachineRow> &rows) {
    QString body;
    if (rows.isEmpty()) {
        body = QStringLiteral("<p class=\"empty\">%1</p>")
                   .arg(htmlEscaped(tr("No station has reported and the journal is empty.")));
        return PageFrame::page(context, QStringLiteral("/"), tr("Machines"), body);
    }
    body = QStringLiteral("<table class=\"machines\"><thead><tr><th>%1</th><th>%2</th><th>%3</th>"
                          "<th>%4</th><th>%5</th></tr></thead><tbody>\n")
               .arg(htmlEscaped(tr("Machine")), htmlEscaped(tr("Device")), htmlEscaped(tr("State")),
                    htmlEscaped(tr("Since")), htmlEscaped(tr("Last transfer")));
    for (const MachineRow &row : rows) {
        QString css;
        const QString state = JournalTexts::state(row.station, context.now, &css);
        QString device = row.station ? row.station->device : QString();
        if (device.isEmpty() && row.last)
            device = row.last->device;
        QString since;
        if (row.station)
            since = PageFrame::time(context, css == QLatin1String("offline") ? row.station->updated
                                                                             : row.station->since);
        QString state_html = htmlEscaped(state);
        if (row.station && css != QLatin1String("offline") && !row.station->program.isEmpty())
            state_html += QStringLiteral("<br><span class=\"program\">%1</span>")
                              .arg(htmlEscaped(row.station->program));
        QString last;
        if (row.last) {
            const TransferRow &t = *row.last;
            const QString name = t.program.isEmpty() ? t.file : t.program;
            last = QStringLiteral("%1 \u00b7 %2 <span class=\"program\">%3</span> \u00b7 "
                                  "<span class=\"outcome outcome-%4\">%5</span>")
                       .arg(htmlEscaped(PageFrame::time(context, t.time)),
                            htmlEscaped(JournalTexts::operation(t.operation)), htmlEscaped(name),
                            t.outcome == QLatin1String("done") ? QStringLiteral("done")
                                                               : QStringLiteral("failed"),
                            htmlEscaped(JournalTexts::outcome(t.outcome)));
        }
        body += QStringLiteral("<tr class=\"machine\"><td class=\"name\"><a href=\"/journal?%1\">%2"
                               "</a></td><td>%3</td><td class=\"state state-%4\">%5</td>"
                               "<td>%6</td><td>%7</td></tr>\n")
                    .arg(htmlEscaped(formQuery({{QStringLiteral("machine"), row.machine}})),
                         htmlEscaped(row.machine), htmlEscaped(device), css, state_html,
                         htmlEscaped(since), last);
    }
    body += QStringLiteral("</tbody></table>\n");
    return PageFrame::page(context, QStringLiteral("/"), tr("Machines"), body);
}
