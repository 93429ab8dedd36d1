#pragma once
// DoEvents over the Qt event loop. A pass dispatches what is pending and returns at once; only
// a pass that follows one which found nothing to do, with no work done on the port since,
// sleeps until an event arrives: characters on the port, the alarm of a line that should have
// emptied, the clock's tick, the operator. So a wait does not spin, and a send loop does not
// sleep between lines.

#include "link.h"

class SerialComm;

class EventLoopYield : public Yield {
public:
    // Follows `port`: characters handed to it or taken from it are work done.
    explicit EventLoopYield(SerialComm &port);
    ~EventLoopYield() override;
    EventLoopYield(const EventLoopYield &) = delete;
    EventLoopYield &operator=(const EventLoopYield &) = delete;

    void DoEvents() override;

private:
    SerialComm &m_port;
    bool m_idle = false; // the last pass found nothing to do, and nothing was done since
};
