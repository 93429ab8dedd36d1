#include "svg_chart.h"

#include "page_frame.h"

#include <algorithm>

namespace {

QString number(double v) {
    return QString::number(v, 'f', 1);
}

// A name longer than the room for it is cut, the whole of it kept in the bar's tooltip.
QString shortLabel(const QString &label, int max) {
    return label.size() <= max ? label : label.left(max - 1) + QChar(0x2026);
}

} // namespace

qint64 tickStep(qint64 max, int ticks) {
    if (max <= 0 || ticks <= 0)
        return 1;
    const double raw = double(max) / ticks;
    qint64 magnitude = 1;
    while (magnitude * 10 <= raw)
        magnitude *= 10;
    for (qint64 f : {1, 2, 5, 10})
        if (magnitude * f >= raw)
            return magnitude * f;
    return magnitude * 10;
}

QString barChart(const QList<ChartBar> &bars, const QString &valueAxis, const QString &title) {
    const double labelWidth = 180, plotWidth = 520, barHeight = 22, top = 10;
    const double plotHeight = std::max<double>(1, bars.size()) * barHeight;
    const double width = labelWidth + plotWidth + 60, height = top + plotHeight + 50;
    qint64 max = 1;
    for (const ChartBar &b : bars)
        max = std::max(max, b.value);
    const qint64 step = tickStep(max, 5);
    const qint64 axisMax = (max + step - 1) / step * step;
    const auto x = [&](qint64 v) { return labelWidth + plotWidth * double(v) / double(axisMax); };

    QString svg =
        QStringLiteral("<svg class=\"chart bar-chart\" role=\"img\" viewBox=\"0 0 %1 %2\" "
                       "xmlns=\"http://www.w3.org/2000/svg\"><title>%3</title>")
            .arg(number(width), number(height), htmlEscaped(title));
    for (qint64 t = 0; t <= axisMax; t += step) {
        svg += QStringLiteral(
                   "<line class=\"grid\" x1=\"%1\" y1=\"%2\" x2=\"%1\" y2=\"%3\"/>"
                   "<text class=\"tick\" x=\"%1\" y=\"%4\" text-anchor=\"middle\">%5</text>")
                   .arg(number(x(t)), number(top), number(top + plotHeight),
                        number(top + plotHeight + 16), QString::number(t));
    }
    for (qsizetype i = 0; i < bars.size(); ++i) {
        const ChartBar &b = bars.at(i);
        const double y = top + i * barHeight;
        QString bar = QStringLiteral("<g class=\"bar\"><title>%1: %2</title>"
                                     "<text class=\"label\" x=\"%3\" y=\"%4\" "
                                     "text-anchor=\"end\">%5</text>"
                                     "<rect x=\"%6\" y=\"%7\" width=\"%8\" height=\"%9\"/>"
                                     "<text class=\"value\" x=\"%10\" y=\"%4\">%2</text></g>")
                          .arg(htmlEscaped(b.label), QString::number(b.value),
                               number(labelWidth - 6), number(y + barHeight * 0.7),
                               htmlEscaped(shortLabel(b.label, 24)), number(labelWidth),
                               number(y + 3), number(std::max(1.0, x(b.value) - labelWidth)),
                               number(barHeight - 6), number(x(b.value) + 4));
        if (!b.link.isEmpty())
            bar = QStringLiteral("<a href=\"%1\">%2</a>").arg(htmlEscaped(b.link), bar);
        svg += bar;
    }
    svg += QStringLiteral("<line class=\"axis\" x1=\"%1\" y1=\"%2\" x2=\"%1\" y2=\"%3\"/>"
                          "<line class=\"axis\" x1=\"%1\" y1=\"%3\" x2=\"%4\" y2=\"%3\"/>"
                          "<text class=\"axis-label\" x=\"%5\" y=\"%6\" "
                          "text-anchor=\"middle\">%7</text></svg>")
               .arg(number(labelWidth), number(top), number(top + plotHeight),
                    number(labelWidth + plotWidth), number(labelWidth + plotWidth / 2),
                    number(height - 6), htmlEscaped(valueAxis));
    return svg;
}

QString lineChart(const QList<ChartPoint> &points, const QString &xAxis, const QString &yAxis,
                  const QString &title) {
    const double left = 60, plotWidth = 640, top = 10, plotHeight = 220;
    const double width = left + plotWidth + 20, height = top + plotHeight + 70;
    qint64 max = 1;
    for (const ChartPoint &p : points)
        max = std::max(max, p.value);
    const qint64 step = tickStep(max, 4);
    const qint64 axisMax = (max + step - 1) / step * step;
    const qsizetype n = points.size();
    const auto x = [&](qsizetype i) { return left + (n > 1 ? plotWidth * i / (n - 1) : 0.0); };
    const auto y = [&](qint64 v) { return top + plotHeight * (1 - double(v) / double(axisMax)); };

    QString svg =
        QStringLiteral("<svg class=\"chart line-chart\" role=\"img\" viewBox=\"0 0 %1 %2\" "
                       "xmlns=\"http://www.w3.org/2000/svg\"><title>%3</title>")
            .arg(number(width), number(height), htmlEscaped(title));
    for (qint64 t = 0; t <= axisMax; t += step)
        svg +=
            QStringLiteral("<line class=\"grid\" x1=\"%1\" y1=\"%2\" x2=\"%3\" y2=\"%2\"/>"
                           "<text class=\"tick\" x=\"%4\" y=\"%5\" text-anchor=\"end\">%6</text>")
                .arg(number(left), number(y(t)), number(left + plotWidth), number(left - 6),
                     number(y(t) + 4), QString::number(t));
    QStringList path;
    QString dots;
    // About eight day labels whatever the period, so that they never run into each other.
    const qsizetype every = std::max<qsizetype>(1, (n + 7) / 8);
    for (qsizetype i = 0; i < n; ++i) {
        const ChartPoint &p = points.at(i);
        path << number(x(i)) + QLatin1Char(',') + number(y(p.value));
        dots += QStringLiteral("<circle class=\"point\" cx=\"%1\" cy=\"%2\" r=\"3\">"
                               "<title>%3: %4</title></circle>")
                    .arg(number(x(i)), number(y(p.value)), htmlEscaped(p.label),
                         QString::number(p.value));
        // The last day is always named; a regular label too close before it gives way.
        if (i == n - 1 || (i % every == 0 && (n - 1 - i) * 2 >= every))
            svg += QStringLiteral("<text class=\"tick\" x=\"%1\" y=\"%2\" "
                                  "text-anchor=\"middle\">%3</text>")
                       .arg(number(x(i)), number(top + plotHeight + 16), htmlEscaped(p.label));
    }
    if (!path.isEmpty())
        svg += QStringLiteral("<polyline class=\"line\" points=\"%1\"/>").arg(path.join(u' '));
    svg += dots;
    svg += QStringLiteral("<line class=\"axis\" x1=\"%1\" y1=\"%2\" x2=\"%1\" y2=\"%3\"/>"
                          "<line class=\"axis\" x1=\"%1\" y1=\"%3\" x2=\"%4\" y2=\"%3\"/>"
                          "<text class=\"axis-label\" x=\"%5\" y=\"%6\" "
                          "text-anchor=\"middle\">%7</text>"
                          "<text class=\"axis-label\" x=\"14\" y=\"%8\" text-anchor=\"middle\" "
                          "transform=\"rotate(-90 14 %8)\">%9</text></svg>")
               .arg(number(left), number(top), number(top + plotHeight), number(left + plotWidth),
                    number(left + plotWidth / 2), number(height - 20), htmlEscaped(xAxis),
                    number(top + plotHeight / 2), htmlEscaped(yAxis));
    return svg;
}
