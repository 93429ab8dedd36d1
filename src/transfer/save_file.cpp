#include "profile.h"
#include "regular_file.h"
#include "settings_keys.h"
#include "transfer.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QSaveFile>

bool writeSavedProgram(QFileDevice &out, const QByteArray &buffer) {
    return out.write(buffer) == buffer.size() && out.write("\r\n", 2) == 2 && out.flush();
}

QByteArray savedProgramSha256(const QByteArray &buffer) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(buffer);
    hash.addData(QByteArrayView("\r\n"));
    return hash.result().toHex();
}

void SaveFile(Link &l, const QByteArray &buffer) {
    const OutcomeRecord::Scope record(l.outcome, OperationName::SaveFile, l.state);
    const QString dir = GetProfile(l.g, l.g.ConfigSection, SettingsKey::CNCDir);
    if (!dir.isEmpty())
        l.dialog.InitDir = dir;
    l.dialog.Filter = QStringLiteral("Tape file *.tap|*.tap|All files *.*|*.*");
    l.dialog.DefaultExt = QStringLiteral("tap");
    l.dialog.ShowSave(l.screen);

    const QString path = l.dialog.FileName;
    if (path.isEmpty()) {
        l.outcome.fail(OutcomeKind::Cancelled);
        return;
    }
    PutProfile(l.g, l.g.ConfigSection, SettingsKey::CNCDir, folderOf(path));

    // Written beside the old file and renamed over it only once all of it is written: a full
    // disk or a failed write leaves what was there, and no empty file where there was none.
    // Bytes as they came: no codec and no line-end translation on the way to the file.
    const QString shown = QDir::toNativeSeparators(path);
    QString text;
    if (const QString kind = notRegularReason(path); !kind.isEmpty()) {
        text = QCoreApplication::translate("File", "The program cannot be saved: %1 %2.")
                   .arg(shown, kind);
    } else {
        QString why;
        QSaveFile file(path);
        file.setDirectWriteFallback(false);
        // A failed flush is not seen by commit(), which would rename a cut file over the old
        // one: every write and the flush are checked first.
        if (!file.open(QIODevice::WriteOnly) || !writeSavedProgram(file, buffer)) {
            why = file.errorString();
            file.cancelWriting();
        } else if (!file.commit()) {
            why = file.errorString();
        }
        if (!why.isEmpty())
            text = QCoreApplication::translate("File", "The program cannot be saved as %1: %2")
                       .arg(shown, why);
    }
    if (!text.isEmpty()) {
        // The program still stands in Text1, so nothing is lost but this attempt.
        l.outcome.fail(OutcomeKind::FileFailure, text);
        l.screen.msgBox(text, BoxIcon::Critical, QString());
        return;
    }
    l.outcome.filePath = path;
    l.outcome.sha256 = savedProgramSha256(buffer);
}
