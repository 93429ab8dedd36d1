#include "profile.h"
#include "settings_keys.h"
#include "transfer.h"

#include <QFileInfo>

namespace {

// The length of the file can be asked for: a regular file that exists, also when empty.
// A name with a wildcard never exists.
bool fileExists(const QString &path) {
    if (path.contains(QLatin1Char('*')) || path.contains(QLatin1Char('?')))
        return false;
    return QFileInfo(path).isFile();
}

// -b on "303" and "504": a known name goes out without browsing; anything else opens the
// dialog with a pattern.
void quickChoice(Link &l) {
    CmDialog &d = l.dialog;
    const QString answer =
        l.screen.inputBox(QStringLiteral("File name filter"), QStringLiteral("Select file to send"),
                          QStringLiteral("*"));
    const QString tap = QStringLiteral(".tap");
    const bool bareName = !answer.contains(QLatin1Char('.'));
    const QString candidate = d.InitDir + QLatin1Char('/') + answer + (bareName ? tap : QString());
    if (fileExists(candidate)) {
        d.FileName = candidate;
        return;
    }
    d.FileName = (bareName ? answer : QString()) + QLatin1Char('*') + tap;
    d.ShowOpen(l.screen);
}

} // namespace

void SendFile(Link &l) {
    Globals &g = l.g;
    CmDialog &d = l.dialog;
    const OutcomeRecord::Scope record(l.outcome, OperationName::SendFile, l.state);
    const QString tapeDir = GetProfile(g, g.ConfigSection, SettingsKey::TapeDir);
    if (!tapeDir.isEmpty())
        d.InitDir = tapeDir;
    const bool tape = g.CncType == Cnc303 || g.CncType == Cnc504;
    if (tape) {
        d.Filter = QStringLiteral("Tape file *.tap|*.tap|All files *.*|*.*");
        d.DefaultExt = QStringLiteral("tap");
    } else {
        d.Filter = QStringLiteral("Bystronic file *.LCC|*.LCC;|All files *.*|*.*");
        d.DefaultExt = QStringLiteral("lcc");
    }
    if (tape && g.SimpleFileDialog)
        quickChoice(l);
    else
        d.ShowOpen(l.screen);

    const QString FileName = d.FileName;
    if (FileName.isEmpty()) {
        l.outcome.fail(OutcomeKind::Cancelled);
        return;
    }
    // Stored before the transfer, so the folder is remembered also when it fails.
    PutProfile(g, g.ConfigSection, SettingsKey::TapeDir, folderOf(FileName));
    SendData(l, FileName);
}
