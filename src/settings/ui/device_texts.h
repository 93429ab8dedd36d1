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
};

QString deviceText(DeviceText text);
