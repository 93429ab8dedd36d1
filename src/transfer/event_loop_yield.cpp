#include "event_loop_yield.h"

#include <QCoreApplication>

EventLoopYield::EventLoopYield(int heartbeatMs) {
    m_heartbeat.setSingleShot(true);
    m_heartbeat.setTimerType(Qt::PreciseTimer);
    m_heartbeat.setInterval(heartbeatMs);
}

void EventLoopYield::DoEvents() {
    // Armed only while passes run, so an idle window is not woken for nothing.
    if (!m_heartbeat.isActive())
        m_heartbeat.start();
    // With a time limit processEvents ignores WaitForMoreEvents and spins.
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}
