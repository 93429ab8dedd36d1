#pragma once
// The control's end of the line: the pseudo-terminal master, read into an inbox and written
// in whole, every byte logged. Waits keep reading, so the program is never held up by us.
// At a line's speed (setLineSpeed) a character reaches the inbox one character time after the
// one before it, and each character sent is written once the line has carried it: a
// pseudo-terminal passes any amount at once, a cable does not.

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

    // 8N1 at `baud` both ways; 0: as fast as the pseudo-terminal goes.
    void setLineSpeed(long baud);

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
    // Every character read from the pseudo-terminal so far, whether or not the line has
    // brought it yet.
    uint64_t received() const { return m_received; }
    int64_t lastRxUs() const { return m_lastRx; }
    // Work that is not traffic (a buffer draining) still keeps the control from idling out.
    void busy() { m_lastActivity = nowUs(); }

private:
    bool readSome();
    // Moves what the line has carried by `now` into the inbox; true if anything moved.
    bool arrive(int64_t now);
    // When the next CR on its way, or else the last character, reaches the inbox; Forever: none
    // on its way.
    int64_t nextArrival() const;
    // ppoll for `events` until the deadline; throws Stopped. Returns the revents.
    short waitFor(short events, int64_t deadlineUs);

    int m_fd;
    WireLog &m_log;
    int64_t m_idleUs;
    int64_t m_lastActivity;
    int64_t m_lastRx = 0;   // at a line's speed: when the line brought the last character
    int64_t m_pauseEnd = 0; // when the last pause ended
    std::string m_in;
    size_t m_used = 0;
    uint64_t m_received = 0;
    double m_charUs = 0;  // one character on the line; 0: no line speed
    std::string m_onLine; // read from the pseudo-terminal, not yet carried by the line
    double m_rxFree = 0;  // when the line has carried the last character read
    double m_txFree = 0;  // when the line has carried the last character sent
};
