#include "tools_page.h"

#include "form_query.h"
#include "svg_chart.h"

QList<qint64> ToolsPage::perDay(const QList<QDateTime> &times, const QDate &today, int days) {
    QList<qint64> counts(days, 0);
    const QDate first = today.addDays(1 - days);
    for (const QDateTime &t : times) {
        const qint64 i = first.daysTo(t.toLocalTime().date());
        if (i >= 0 && i < days)
            ++counts[i];
    }
    return counts;
}

QByteArray ToolsPage::build(const PageContext &context, const QList<ToolCount> &top,
                            const QString &tool, const QList<QDateTime> &times) {
    QString body = QStringLiteral("<form class=\"filter\" method=\"get\" action=\"/tools\">"
                                  "<label>%1 <input type=\"text\" name=\"tool\" value=\"%2\">"
                                  "</label> <button type=\"submit\">%3</button></form>\n")
                       .arg(htmlEscaped(tr("Tool")), htmlEscaped(tool), htmlEscaped(tr("Show")));
    const QString topTitle = tr("Most used tools in the last %1 days").arg(ToolDays);
    body += QStringLiteral("<h2>%1</h2>\n").arg(htmlEscaped(topTitle));
    if (top.isEmpty()) {
        body += QStringLiteral("<p class=\"empty\">%1</p>\n")
                    .arg(htmlEscaped(tr("No tool was used in this period.")));
    } else {
        QList<ChartBar> bars;
        for (const ToolCount &t : top)
            bars.append(
                {t.tool, t.count,
                 QStringLiteral("/tools?") + formQuery({{QStringLiteral("tool"), t.tool}})});
        body += QStringLiteral("<figure>%1</figure>\n").arg(barChart(bars, tr("Uses"), topTitle));
    }
    if (!tool.isEmpty()) {
        const QDate today = context.now.toLocalTime().date();
        const QList<qint64> counts = perDay(times, today, ToolDays);
        QList<ChartPoint> points;
        for (int i = 0; i < ToolDays; ++i)
            points.append(
                {context.locale.toString(today.addDays(i + 1 - ToolDays), QStringLiteral("dd.MM")),
                 counts.at(i)});
        const QString title = tr("Uses of %1 per day").arg(tool);
        body += QStringLiteral("<h2>%1</h2>\n").arg(htmlEscaped(title));
        if (times.isEmpty())
            body += QStringLiteral("<p class=\"empty\">%1</p>\n")
                        .arg(htmlEscaped(tr("This tool was not used in this period.")));
        else
            body += QStringLiteral("<figure>%1</figure>\n")
                        .arg(lineChart(points, tr("Day"), tr("Uses"), title));
    }
    return PageFrame::page(context, QStringLiteral("/tools"), tr("Tools"), body);
}
