#pragma once
// One run of the companion: start-up as the window does it, the command's checks before the
// port is touched, the operation, and what it left turned into output and an exit status.

#include "ctl_options.h"

// Needs a QCoreApplication. Returns the exit status (ctl_outcome.h).
int runDncctl(const CtlOptions &o);
