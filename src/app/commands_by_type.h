#pragma once
// What every front end decides from the control type alone: which commands it offers, and the
// interval its waits start with until a first transmission sets its own.

#include <QtGlobal>

// The commands by their button index.
enum CommandIndex : int {
    SetupCommand = 0,
    SendCommand = 1,
    ReceiveCommand = 2,
    MapCommand = 3,
    ChangeContextCommand = 4,
    ChangeExecuteCommand = 5,
    DeleteCommand = 6,
    HelpCommand = 7,
};
inline constexpr int CommandCount = HelpCommand + 1;

// Setup, Send, Receive and Help for every type; Map for "303" and "504"; CC and CE for "303";
// DC for "504".
bool commandOffered(qint16 cncType, int index);

// The clock's interval at start-up, or 0 when the type is unknown and the clock keeps the
// interval it was made with.
int startupTimerInterval(qint16 cncType);
