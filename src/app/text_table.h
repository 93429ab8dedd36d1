#pragma once
// All translated texts, filled once at start-up in every language.

#include "globals.h"

void InitTexts(Globals &g);
