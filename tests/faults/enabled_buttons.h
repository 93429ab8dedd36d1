#pragma once
// The window's buttons that can be pressed: their indexes, and Q for Quit.

#include "dnc_window.h"

#include <QPushButton>

inline QString enabledButtons(const DncWindow &w) {
    QString enabled;
    for (int i = 0; i < 8; ++i)
        enabled += w.Command1[i]->isEnabled() ? QString::number(i) : QString();
    return enabled + (w.Command2->isEnabled() ? "Q" : "");
}
