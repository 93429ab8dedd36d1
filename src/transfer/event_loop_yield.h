#pragma once
// DoEvents over the Qt event loop: a pass with nothing to do sleeps until the next event
// (bytes on the port, the clock's tick, the operator) instead of spinning.

#include "link.h"

#include <QTimer>

class EventLoopYield : public Yield {
public:
    explicit EventLoopYield(int heartbeatMs = 4);
    void DoEvents() override;

private:
    // Wakes a pass that nothing else would wake, e.g. while only the driver's queue drains.
    QTimer m_heartbeat;
};
