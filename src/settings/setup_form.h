#pragma once
// What the setup dialog shows and writes, without the widgets.

#include "globals.h"
#include "port_devices.h"

#include <QStringList>
#include <array>

struct SetupForm {
    // The seven lists Combo1..Combo7 (index 0..6): their entries and the entry to select.
    std::array<QStringList, 7> entries;
    std::array<int, 7> selected{};
    int check1 = 0; // Wait-Xon
    int check2 = 0; // Space
    // [Ports]: the device of COM1..COM4 (index 0..3); empty for /dev/ttyS<n-1>.
    std::array<QString, PortCount> devices;
};

// Fills the lists from the choice lists and selects what the settings file holds.
SetupForm loadSetup(const Globals &g);
// The nine writes of the dialog's button, in their order; then the devices of [Ports] that
// differ from the file, so that a port nobody chose a device for gets no entry.
void saveSetup(const Globals &g, const SetupForm &form);
