#pragma once
// The command line: options -c -s -d -x -b read from one string, and the help box.

#include "globals.h"

#include <QString>
#include <QStringList>

class Screen;

// Leaves Language, ConfigSection, DatabasePath with ToolDbEnabled, LimitStrings with
// LimitCount, and SimpleFileDialog. `line` is what was typed behind the program's name.
void GetParameter(Globals &g, const QString &line);

// The language of a -c code: 1 for "044" and any code not known, 2 "033", 3 "049", 4 "039".
qint16 languageOf(const QString &code);

// Rebuilds the one string from arguments the shell has already split (argv without argv[0]).
QString commandLineFromArgs(const QStringList &args);

// The six lines of the help box in the language of g.Language.
QString helpText(qint16 language);
void DisplayHelp(const Globals &g, Screen &screen);
