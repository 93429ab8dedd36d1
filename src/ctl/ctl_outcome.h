#pragma once
// The exit status that tells a script how a command ended, read off the operation's record.

#include "outcome_record.h"

enum ExitCode : int {
    ExitOk = 0,
    ExitUsage = 2,
    ExitTimeout = 3,
    ExitPort = 4,
    ExitFile = 5,
    ExitNoProgram = 6,
    ExitToolDb = 7,
    ExitNotOffered = 8,
    ExitNotCounted = 9,   // the program went out; its tools were not counted
    ExitIncomplete = 10,  // the transfer ended well, but lines were left out
    ExitSignalBase = 128, // plus the signal's number: 130 for SIGINT, 143 for SIGTERM
};

// `signal`: the signal that ended an interrupted operation.
int exitCodeOf(const OutcomeRecord &r, int signal);
