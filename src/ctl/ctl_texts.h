#pragma once
// The companion's own messages and progress words, in the language of the loaded
// translations: the ones only the command line needs.

#include <QString>

enum class CtlText {
    NotOffered,       // %1 command, %2 control choice
    NoControlType,    // %1 section, %2 settings file
    MissingSetting,   // %1 section, %2 settings file, %3 key, %4 option
    NoSuchPort,       // %1 section, %2 settings file, %3 the value of Port
    NoSuchFile,       // %1 path
    NotAFile,         // %1 path
    CannotRead,       // %1 path, %2 reason
    CannotWrite,      // %1 path, %2 reason
    NotListed,        // %1 name
    NothingListed,    // the control's list was empty
    NothingReceived,  // the control ended the reception before any line
    Interrupted,      // %1 signal name
    NotSaved,         // %1 characters
    NotCounted,       // the program went out, its tools were not counted
    BlankLine,        // %1 lines
    NoCarriageReturn, // %1 lines
    LinesDropped,     // %1 lines
    StdoutClosed,
    Characters,
    PerSecond,
    Left,
    Receiving,
};

QString ctlText(CtlText text);
