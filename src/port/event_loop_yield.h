#pragma once
// DoEvents over the Qt event loop. A pass dispatches what is pending and returns at once;
// only a pass that follows one which found nothing to do sleeps until an event arrives
// (bytes on the port, the clock's tick, the operator): a wait does not spin, and a send
// loop does not sleep between lines.

#include "link.h"

#include <QTimer>

class EventLoopYield : public Yield {
public:
    explicit EventLoopYield(int heartbeatMs = 4);
    void DoEvents() override;

private:
    // Wakes a sleeping pass that nothing else would wake, e.g. while only the driver's
    // queue drains.
    QTimer m_heartbeat;
    bool m_idle = false; // the last pass found nothing to do
};
