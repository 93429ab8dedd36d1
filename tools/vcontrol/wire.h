#pragma once
// The control's end of the line: the pseudo-terminal master, read into an inbox and written
// in whole, every byte logged. Waits keep reading, so the program is never held up by us.

#include "wire_log.h"

#include <cstdint>
#include <string>
#include <string_view>

// Thrown out of any wait when SIGTERM/SIGINT came or the idle limit ran out: a clean end.
struct Stopped {};

constexpr int64_t Forever = INT64_MAX;

// Blocks the stop signals; the waits let them in, so none is lost between a test and a wait.
void installStopSignals();

class Wire {
public:
    Wire(int masterFd, WireLog &log, long exitAfterIdleMs);

    // Waits until bytes come or the deadline (nowUs clock) passes; false if none came.
    bool receive(int64_t deadlineUs);
    // Writes everything, one log line per write call.
    void send(std::string_view bytes);
    // Lets ms pass, still receiving.
    void pause(long ms);

    // What came and has not been consumed yet.
    std::string_view inbox() const { return std::string_view(m_in).substr(m_used); }
    void consume(size_t n);

    WireLog &log() { return m_log; }
    int64_t lastRxUs() const { return m_lastRx; }
    // Work that is not traffic (a buffer draining) still keeps the control from idling out.
    void busy() { m_lastActivity = nowUs(); }

private:
    bool readSome();
    // ppoll for `events` until the deadline; throws Stopped. Returns the revents.
    short waitFor(short events, int64_t deadlineUs);

    int m_fd;
    WireLog &m_log;
    int64_t m_idleUs;
    int64_t m_lastActivity;
    int64_t m_lastRx = 0;
    std::string m_in;
    size_t m_used = 0;
};
