#pragma once
// What the setup dialog shows and writes, without the widgets.

#include "globals.h"

#include <QStringList>
#include <array>

struct SetupForm {
    // The seven lists Combo1..Combo7 (index 0..6): their entries and the entry to select.
    std::array<QStringList, 7> entries;
    std::array<int, 7> selected{};
    int check1 = 0; // Wait-Xon
    int check2 = 0; // Space
};

// Fills the lists from the choice lists and selects what the settings file holds.
SetupForm loadSetup(const Globals &g);
// The nine writes of the dialog's button, in their order.
void saveSetup(const Globals &g, const SetupForm &form);
