#pragma once
// dncctl journal: the journal read back, or its old rows removed.

#include "ctl_options.h"

// Needs a QCoreApplication. Returns the exit status (ctl_outcome.h).
int runJournalCommand(const CtlOptions &o);
