#pragma once
// A control of type XonXoff: the program streams lines into an input buffer that the machine
// drains at a fixed rate; X-off at the high-water mark and X-on at the low one pace the sender.

#include "options.h"
#include "program_store.h"
#include "wire.h"

#include <string>
#include <string_view>

class XonXoffControl {
public:
    XonXoffControl(const Options &o, Wire &w, ProgramStore &store);

    // Runs until Stopped is thrown.
    [[noreturn]] void run();

    long overruns() const { return m_overruns; }
    // The most characters that came in after an X-off (or the halt character) went out.
    long maxAfterHold() const { return m_maxAfterHold; }

private:
    size_t fill() const { return m_program.size() - m_drained; }
    bool held() const { return m_xoffSent || m_haltUntil >= 0; }
    // Hands what has come to take(): at once, or at the line's speed (--baud).
    void deliver(int64_t now);
    void take(std::string_view chunk, int64_t at);
    void drain(int64_t now);
    void resumeIfDue(int64_t now);
    void finish();
    // Sends the next program of --punch, whole.
    void punch();
    void tx(char c);
    // Sends the X-off or the halt character and starts counting what comes after it.
    void hold(char c);
    // Counts what was read from the pseudo-terminal since the last look, while held: written
    // by the program after the hold reached it, the pseudo-terminal passing it on at once.
    void noteReads();

    const Options &m_o;
    Wire &m_w;
    ProgramStore &m_store;
    double m_charUs;       // time of one character on the line; 0: no line speed
    double m_lineFree = 0; // when the line has carried the last character handed over
    std::string m_program; // every character accepted, in order
    size_t m_drained = 0;  // how many of them the machine has taken
    double m_credit = 0;   // characters the machine may take and has not yet
    int64_t m_lastDrain = 0;
    bool m_inProgram = false;
    bool m_xoffSent = false;
    int64_t m_haltUntil = -1; // -1: no halt
    long m_lines = 0;
    int64_t m_heldAt = 0; // when the X-off or the halt character went out
    long m_afterHold = 0;
    long m_maxAfterHold = 0;
    uint64_t m_noted = 0;     // characters read and looked at by noteReads
    long m_writtenAfter = 0;  // written by the program after the hold began
    long m_beyondLine = 0;    // of them, those after the CR of the line in progress
    bool m_lineEnded = false; // that CR has come
    long m_overruns = 0;
    size_t m_punched = 0; // programs of --punch sent so far
    int64_t m_punchAt;    // when the next one goes
};
