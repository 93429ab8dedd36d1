#include "line_overrides.h"

#include "ctl_texts.h"
#include "line_settings.h"
#include "settings_keys.h"

#include <QDir>
#include <QStringList>

QString applyLineOverrides(Globals &g, const CtlOptions &o) {
    // What ReadSettings left: "COMn:" and as many of the four values as the section holds.
    QString port;
    QStringList values(4);
    const qsizetype colon = g.ComSettings.indexOf(u':');
    if (colon >= 0) {
        port = g.ComSettings.left(colon + 1);
        const QStringList read = g.ComSettings.mid(colon + 1).split(u',');
        for (qsizetype i = 0; i < 4 && i < read.size(); ++i)
            values[i] = read[i];
    }
    if (!o.port.isEmpty() && port.isEmpty())
        port = QStringLiteral("COM1:");
    const QString overrides[4] = {o.baud, o.parity, o.data, o.stop};
    for (int i = 0; i < 4; ++i)
        if (!overrides[i].isEmpty())
            values[i] = overrides[i];

    const QString ini = QDir::toNativeSeparators(g.iniPath);
    const auto missing = [&](QLatin1String key, const char *option) {
        return ctlText(CtlText::MissingSetting)
            .arg(g.ConfigSection, ini, key, QLatin1String(option));
    };
    if (port.isEmpty())
        return missing(SettingsKey::Port, "--port DEVICE");
    const char *const options[4] = {"--baud N", "--parity E|O|N", "--data 7|8", "--stop 1|2"};
    for (int i = 0; i < 4; ++i)
        if (values[i].isEmpty())
            return missing(SettingsKey::Line[size_t(i)], options[i]);

    const QString line = values.join(u',');
    try {
        parseLineSettings(line);
    } catch (const LineSettingsError &e) {
        return QStringLiteral("%1 [%2]: %3").arg(ini, g.ConfigSection, e.why);
    }
    g.ComSettings = port + line;

    if (!o.cnc.isEmpty()) {
        for (int i = 1; i <= 3; ++i)
            if (o.cnc.compare(g.CncChoices[i], Qt::CaseInsensitive) == 0)
                g.CncType = qint16(i);
    }
    if (g.CncType == CncNone)
        return ctlText(CtlText::NoControlType).arg(g.ConfigSection, ini);
    return {};
}
