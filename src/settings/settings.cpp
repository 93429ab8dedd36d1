#include "settings.h"

#include "number_text.h"
#include "profile.h"
#include "settings_keys.h"

void InitChoices(Globals &g) {
    g.PortChoices = {QString(), "COM1:", "COM2:", "COM3:", "COM4:"};
    g.BaudChoices = {QString(), "300",   "600",   "1200",  "2400",  "4800",
                     "9600",    "19200", "38400", "57600", "115200"};
    g.ParityChoices = {QString(), "Even", "Odd", "None"};
    g.DataChoices = {QString(), "7", "8"};
    g.StopChoices = {QString(), "1", "2"};
    g.CncChoices = {QString(), "303", "504", "XonXoff"};
    g.SoftChoices = {QString(), "04", "05", "10"};
}

// A flag read from text: the number it begins with, rounded. A number edited by hand beyond
// 16 bits gives 1, since any non-zero value means on.
static qint16 flagOf(const QString &text) {
    return roundToInt16(numberOf(text)).value_or(1);
}

void ReadSettings(Globals &g) {
    const QString &s = g.ConfigSection;
    const QString port = GetProfile(g, s, SettingsKey::Port);
    if (port.isEmpty())
        return;
    g.ComSettings = port;

    // Each of these values is followed by a comma except the last; a missing one ends the
    // read with ComSettings as far as it got.
    for (size_t i = 0; i < SettingsKey::Line.size(); ++i) {
        const QString value = GetProfile(g, s, SettingsKey::Line[i]);
        if (value.isEmpty())
            return;
        g.ComSettings += value;
        if (i + 1 < SettingsKey::Line.size())
            g.ComSettings += u',';
    }

    const QString cnc = GetProfile(g, s, SettingsKey::CNC);
    for (int i = 1; i <= 3; ++i) {
        if (cnc == g.CncChoices[i]) {
            g.CncType = qint16(i);
            break;
        }
    }

    g.WaitXon = flagOf(GetProfile(g, s, SettingsKey::WaitXon));
    g.NoSpace = flagOf(GetProfile(g, s, SettingsKey::Space));
}
