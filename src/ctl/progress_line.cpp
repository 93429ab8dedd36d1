#include "progress_line.h"

#include "ctl_texts.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

// Rates and times mean little before half a second has passed.
constexpr double SettleSeconds = 0.5;

QString duration(double seconds) {
    const qint64 s = qint64(std::llround(seconds));
    if (s >= 3600)
        return QStringLiteral("%1:%2:%3")
            .arg(s / 3600)
            .arg(s / 60 % 60, 2, 10, QLatin1Char('0'))
            .arg(s % 60, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1:%2").arg(s / 60).arg(s % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

ProgressFigures figuresOfCaption(const QString &caption) {
    ProgressFigures f;
    f.label = caption;
    if (caption.endsWith(QStringLiteral(" - "))) {
        // Shown before the first line has gone out.
        f.label = caption.chopped(3);
        f.percent = 0;
        return f;
    }
    if (!caption.endsWith(u'%'))
        return f;
    const qsizetype dash = caption.lastIndexOf(QStringLiteral(" - "));
    if (dash < 0)
        return f;
    const QString digits = caption.mid(dash + 3, caption.size() - dash - 4);
    bool ok = digits.isEmpty(); // the caption leaves the digits out while it rounds to 0
    const int percent = ok ? 0 : digits.toInt(&ok);
    if (!ok)
        return f;
    f.label = caption.left(dash);
    f.percent = percent;
    return f;
}

QString progressText(const ProgressFigures &f, int width) {
    QStringList parts;
    parts << ctlText(CtlText::Characters).arg(f.characters);
    const bool settled = f.seconds >= SettleSeconds;
    parts << ctlText(CtlText::PerSecond)
                 .arg(settled ? QString::number(std::llround(double(f.characters) / f.seconds))
                              : QStringLiteral("--"));
    QString tail = f.percent >= 0 ? QStringLiteral(" - %1%  ").arg(f.percent) : QString();
    if (f.percent >= 0) {
        const QString left =
            settled && f.percent > 0
                ? duration(f.seconds * (100 - std::min(f.percent, 100)) / f.percent)
                : QStringLiteral("--:--");
        parts << ctlText(CtlText::Left).arg(left);
    } else if (!f.label.endsWith(u' ')) {
        tail = QStringLiteral("  ");
    }
    tail += parts.join(QStringLiteral("  "));

    QString label = f.label;
    const qsizetype room = qsizetype(width) - 1 - tail.size();
    if (label.size() > room) {
        // Keep the start (what is being done) and the end (the file's own name).
        const QString dots = QStringLiteral("...");
        if (room <= dots.size())
            return (label + tail).left(std::max(0, width - 1));
        const qsizetype keep = room - dots.size();
        label = label.left(keep / 2) + dots + label.right(keep - keep / 2);
    }
    return label + tail;
}
