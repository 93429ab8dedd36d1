#pragma once
// The setup dialog's texts about the port's device, in the languages of the text table.

#include <QString>

enum class DeviceText {
    DeviceOf,      // "Device of COM1:"
    DefaultDevice, // the entry for no choice
    Absent,        // beside a chosen device that is not there
    Description,
    Maker,
    SerialNumber,
    Refresh,          // the button that looks for devices again
    EnvironmentFirst, // DNC_COMn overrides the choice
    NotPresent,       // the chosen device is not there now
    ServerAsked,      // a device server is being asked whether it answers
    ServerAnswers,
    ServerSilent,   // with the reason
    ServerNotAsked, // "Look again" asks
};

// `language` as Language: 1 English, 2 French, 3 German, 4 English.
QString deviceText(int language, DeviceText text);
