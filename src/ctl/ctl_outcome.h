#pragma once
// How a command ended, told by what the operation left behind, and the exit status for it.

enum ExitCode : int {
    ExitOk = 0,
    ExitUsage = 2,
    ExitTimeout = 3,
    ExitPort = 4,
    ExitFile = 5,
    ExitNoProgram = 6,
    ExitToolDb = 7,
    ExitNotOffered = 8,
    ExitSignalBase = 128, // plus the signal's number: 130 for SIGINT, 143 for SIGTERM
};

// The choice of a program by name from the control's list.
enum class Pick {
    None,      // the command names no program
    NotAsked,  // the list never came to a choice: nothing came, or no entry
    Chosen,    // the name was in the list and was chosen
    NotListed, // the list came and the name is not in it
};

struct Outcome {
    int signal = 0;          // the signal that ended the operation, 0 if none
    bool portFailed = false; // the port could not be opened, refused its settings, or went
    bool fileFailed = false; // a critical box outside the port and the tool list
    bool toolDbFailed = false;
    bool timedOut = false; // the wait the command's result depends on ran out
    Pick pick = Pick::None;
    bool received = true; // false: a reception that brought nothing
};

// The first that applies: signal, port, file, name not listed, time-out, nothing to choose
// from or nothing received, tool database, done.
int exitCodeOf(const Outcome &o);
