#pragma once
// The setup dialog's texts about the port's device, in the language of the loaded translations.

#include <QString>

enum class DeviceText {
    DeviceOf,      // "Device of COM1:"
    DefaultDevice, // the entry for no choice
    Absent,        // a chosen device that is not there: "absent: %1"
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

QString deviceText(DeviceText text);
