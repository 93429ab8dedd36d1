#pragma once
// The private profile file dnc.ini: sections and keys match without regard to case, a write
// replaces the value in place and keeps every other line, a value read is cut to 254
// characters, and a write goes through a temporary file renamed over the old one.

#include "globals.h"

#include <QString>

// $XDG_CONFIG_HOME/dnc.ini, or ~/.config/dnc.ini when it is unset.
QString defaultIniPath();

// The value, or the empty string. Reads g.iniPath.
QString GetProfile(const Globals &g, const QString &section, const QString &key);
// Writes at once; creates section and file as needed. A failed write leaves the old file, and
// nothing is written where a section or key name holds a line break or the file cannot be read.
void PutProfile(const Globals &g, const QString &section, const QString &key, const QString &value);

// For start-up: why the settings file that is there cannot be used (no regular file, not
// readable); empty when it can be, or when there is none yet.
QString iniFileProblem(const Globals &g);
// For start-up: why a section name cannot be used; empty when it can.
QString sectionNameProblem(const QString &section);
