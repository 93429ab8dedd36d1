#include "station_settings.h"

#include "profile.h"
#include "punch.h"
#include "transfer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

// Seconds as a count of milliseconds; `fallback` where the text is no such number.
int secondsMs(const QString &text, int fallback, double most) {
    bool ok = false;
    const double s = text.toDouble(&ok);
    return ok && s >= 0 && s <= most ? int(s * 1000) : fallback;
}

QString folderProblem(const QString &key, const QString &path, bool writable) {
    if (path.isEmpty())
        return QCoreApplication::translate("Station", "%1 is not set").arg(key);
    const QFileInfo info(path);
    if (!info.isDir())
        return QCoreApplication::translate("Station", "%1=%2 is no folder").arg(key, path);
    if (writable && !info.isWritable())
        return QCoreApplication::translate("Station", "%1=%2 cannot be written").arg(key, path);
    return {};
}

} // namespace

QString readStationSettings(const Globals &g, StationSettings &s) {
    const auto get = [&g](const char *key) {
        return GetProfile(g, g.ConfigSection, QLatin1String(key)).trimmed();
    };
    if (g.CncType != CncXonXoff)
        return QCoreApplication::translate(
            "Station", "a station serves a control \"XonXoff\" only: a control \"303\" or "
                       "\"504\" sends a program only when the PC asks for it");
    s.programDir = get("ProgramDir");
    s.receiveDir = get("ReceiveDir");
    for (const QString &why : {folderProblem(QStringLiteral("ProgramDir"), s.programDir, false),
                               folderProblem(QStringLiteral("ReceiveDir"), s.receiveDir, true)})
        if (!why.isEmpty())
            return why;
    for (auto [key, number] :
         {std::pair{"RequestNumber", &s.requestNumber}, std::pair{"ReplyNumber", &s.replyNumber}}) {
        const QByteArray text = get(key).toLatin1();
        if (text.isEmpty())
            continue;
        if (programNumberOf(text) != text)
            return QCoreApplication::translate("Station",
                                               "%1=%2 is no program number (O and digits)")
                .arg(QLatin1String(key), QString::fromLatin1(text));
        *number = text;
    }
    if (sameProgramNumber(s.requestNumber, s.replyNumber))
        return QCoreApplication::translate("Station",
                                           "RequestNumber and ReplyNumber are the same program");
    s.requestDelayMs = secondsMs(get("RequestDelay"), 3000, 600);
    s.punchSilenceMs = punchSilenceMs(g);
    return {};
}
