#include "event_loop_yield.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QThread>

EventLoopYield::EventLoopYield(int heartbeatMs) {
    m_heartbeat.setSingleShot(true);
    m_heartbeat.setTimerType(Qt::PreciseTimer);
    m_heartbeat.setInterval(heartbeatMs);
}

void EventLoopYield::DoEvents() {
    QAbstractEventDispatcher *events = QThread::currentThread()->eventDispatcher();
    if (!events) {
        QCoreApplication::processEvents();
        return;
    }
    const bool wait = m_idle;
    if (wait && !m_heartbeat.isActive())
        m_heartbeat.start(); // armed only while a wait sleeps: an idle window is not woken
    // With a time limit processEvents ignores WaitForMoreEvents and spins; without one it
    // returns after the first batch of events.
    const bool busy =
        events->processEvents(wait ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
    m_idle = !busy && !wait;
}
