#pragma once
// The port and line settings of dnc.ini with the command line's overrides for one run.

#include "ctl_options.h"
#include "globals.h"

// Rebuilds ComSettings ("COM1:9600,E,7,2") and CncType from what ReadSettings left and the
// options given. A device given with --port needs no COMn: in the settings; "COM1:" stands
// for it. Empty when the result is complete and usable, else why not, in the language of -c.
QString applyLineOverrides(Globals &g, const CtlOptions &o);
