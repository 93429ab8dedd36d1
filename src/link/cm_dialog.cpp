#include "cm_dialog.h"

#include <QStringList>

QString CmDialog::qtFilter(const QString &filter) {
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns;
        for (const QString &p : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts))
            patterns << p.trimmed();
        out << QStringLiteral("%1 (%2)").arg(parts[i], patterns.join(QLatin1Char(' ')));
    }
    return out.join(QStringLiteral(";;"));
}

void CmDialog::ShowOpen(Screen &screen) {
    FileName = screen.showOpen({InitDir, qtFilter(Filter), DefaultExt, FileName});
}

void CmDialog::ShowSave(Screen &screen) {
    FileName = screen.showSave({InitDir, qtFilter(Filter), DefaultExt, FileName});
}

QString folderOf(const QString &path) {
    const int slash = int(path.lastIndexOf(QLatin1Char('/')));
    if (slash < 0)
        return QString();
    if (slash == 0)
        return QStringLiteral("/");
    return path.left(slash);
}
