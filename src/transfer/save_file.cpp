#include "profile.h"
#include "transfer.h"

#include <QDir>
#include <QFile>

bool writeSavedProgram(QFileDevice &out, const QByteArray &buffer) {
    return out.write(buffer) == buffer.size() && out.write("\r\n", 2) == 2 && out.flush();
}

void SaveFile(Link &l, const QByteArray &buffer) {
    const QString dir = GetProfile(l.g, l.g.ConfigSection, QStringLiteral("CNCDir"));
    if (!dir.isEmpty())
        l.dialog.InitDir = dir;
    l.dialog.Filter = QStringLiteral("Tape file *.tap|*.tap|All files *.*|*.*");
    l.dialog.DefaultExt = QStringLiteral("tap");
    l.dialog.ShowSave(l.screen);

    const QString path = l.dialog.FileName;
    if (path.isEmpty())
        return;
    PutProfile(l.g, l.g.ConfigSection, QStringLiteral("CNCDir"), folderOf(path));

    // Bytes as they came: no codec and no line-end translation on the way to the file.
    QFile file(path);
    const bool written =
        file.open(QIODevice::WriteOnly | QIODevice::Truncate) && writeSavedProgram(file, buffer);
    if (!written) {
        // The program still stands in Text1, so nothing is lost but this attempt.
        l.screen.msgBox(
            QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString()),
            BoxIcon::Critical, QString());
    }
}
