#pragma once
// The choice lists and the settings read from the section ConfigSection.

#include "globals.h"

void InitChoices(Globals &g);
// Leaves ComSettings, CncType, WaitXon and NoSpace.
void ReadSettings(Globals &g);
