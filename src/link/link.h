#pragma once
// Everything an operation on the link works with, handed in one piece.

#include "cm_dialog.h"
#include "globals.h"
#include "link_timer.h"
#include "operation_state.h"
#include "outcome_record.h"
#include "screen.h"
#include "start_point.h"

class Comm;

// DoEvents: lets the event queue run (the timer's tick, painting, the operator's input).
class Yield {
public:
    virtual ~Yield() = default;
    virtual void DoEvents() = 0;
};

// Counts the tools of a program before it is sent.
class ToolListHook {
public:
    virtual ~ToolListHook() = default;
    virtual void UpdateToolList(const QString &file) = 0;
    // Why the last count failed; empty when every tool was counted.
    virtual QString failure() const = 0;
};

struct Link {
    Globals &g;
    Comm &comm;
    LinkTimer &timer;
    Yield &yield;
    Screen &screen;
    CmDialog &dialog;
    OperationState &state;
    ToolListHook *toolList = nullptr; // set where a tool database is in use
    OutcomeRecord outcome = {};       // what the last operation did
    StartPoint startAt = {};          // where the next send starts; SendData takes it back
};
