#pragma once
// Charts drawn by the server as inline SVG: no script, no style attribute, labelled axes. Every
// label is escaped here; the caller passes plain text.

#include <QList>
#include <QString>

struct ChartBar {
    QString label;
    qint64 value = 0;
    QString link; // a URL of this server, or empty
};

struct ChartPoint {
    QString label; // the x axis' label of this point
    qint64 value = 0;
};

// Horizontal bars, the largest first as given, the value at the end of each.
QString barChart(const QList<ChartBar> &bars, const QString &valueAxis, const QString &title);
// One line over evenly spaced points.
QString lineChart(const QList<ChartPoint> &points, const QString &xAxis, const QString &yAxis,
                  const QString &title);

// A round step for an axis' ticks, so that about `ticks` of them cover `max`.
qint64 tickStep(qint64 max, int ticks);
