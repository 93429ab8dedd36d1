#pragma once
// What the virtual control is told on its command line: which control it plays, where its
// programs live, and the faults it shows on demand.

#include <string>
#include <vector>

enum class ControlType { T303, T504, XonXoff };

struct Options {
    ControlType type = ControlType::T303;
    std::string dir;  // the control's program store; empty: receptions are only logged
    std::string log;  // the wire log; empty: none
    std::string link; // a symlink to the slave side, replaced if present
    long exitAfterIdleMs = 0;
    bool realtime = false; // SCHED_FIFO where allowed; else a warning and the usual priority
    std::string pcProgram; // type 303: the program "PC" sends; default the first by name
    long giveUpMs = 10000; // a dialogue the program stopped answering is dropped after this

    // Faults of the answers and of what the control sends.
    bool silent = false;
    long delayMs = 0;
    long silentFromLine = 0; // 0: off
    std::string noise;       // bytes put before each DLE "7"
    long splitAnswerMs = -1; // -1: off; else DLE, a pause, then "7"
    long crashAfterLine = 0; // 0: off
    bool lineAndEot = false;
    bool twoLines = false;
    bool crlf = false;
    long lfLateMs = -1;     // -1: off; else the LF of CR LF follows after this pause
    long stallMidLine = 0;  // 0: off
    long stallResumeMs = 0; // 0: the stalled line is never finished

    // Type XonXoff.
    long buffer = 4096;
    long rate = 1000; // characters per second
    long xoffAt = -1; // -1: three quarters of the buffer
    long xonAt = -1;  // -1: one quarter of the buffer
    bool xonAtStart = false;
    long haltAfterLine = 0;
    unsigned char haltChar = 0x13;
    long haltMs = 1000;
    long endGapMs = 1000;
    // Programs punched at the control, in order: the first after punchAfterMs, each next one
    // punchGapMs after the one before.
    std::vector<std::string> punches;
    long punchAfterMs = 300;
    long punchGapMs = 1000;
    // 0: what the program writes is read at once; else it reaches the control at the speed of
    // a line of this many baud (8N1: a tenth of it in characters a second), and so do the
    // control's answers and programs.
    long baud = 0;
};

// Parses argv. On --help prints the usage and exits 0; on a bad option prints why and exits 2.
Options parseOptions(int argc, char **argv);
