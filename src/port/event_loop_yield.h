#pragma once
// DoEvents over the Qt event loop. A pass dispatches what is pending and returns at once. It
// sleeps until an event arrives (characters on the port, the alarm of a line that should have
// emptied, the clock's tick, the operator) only when nothing else can be ready: after a pass
// that found nothing to do with no work done on the port since, or while a wait's clock runs
// and the port holds nothing unread, since all a wait waits for comes as an event. So a wait
// does not spin, and a send loop does not sleep between lines. A pass that would not sleep is
// left out within QuietGapNs of the end of the last one: the send loop's pass right after the
// wait's pass that woke it would only find nothing, at the cost of a poll of every source.

#include "link.h"
#include "link_timer.h"

class PolledPort;

class EventLoopYield : public Yield {
public:
    // Follows `port` (characters handed to it or taken from it are work done) and `clock`,
    // which runs only inside a wait.
    EventLoopYield(PolledPort &port, const LinkTimer &clock);
    ~EventLoopYield() override;
    EventLoopYield(const EventLoopYield &) = delete;
    EventLoopYield &operator=(const EventLoopYield &) = delete;

    void DoEvents() override;

    static constexpr qint64 QuietGapNs = 200000;

private:
    PolledPort &m_port;
    const LinkTimer &m_clock;
    bool m_idle = false;    // the last pass found nothing to do, and nothing was done since
    qint64 m_passEnded = 0; // WakeAlarm::now() when the last pass returned
};
