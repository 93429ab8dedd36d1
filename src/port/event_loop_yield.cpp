#include "event_loop_yield.h"

#include "polled_port.h"
#include "wake_alarm.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QThread>

EventLoopYield::EventLoopYield(PolledPort &port, const LinkTimer &clock)
    : m_port(port), m_clock(clock) {
    m_port.setWorkListener([this] { m_idle = false; });
}

EventLoopYield::~EventLoopYield() {
    m_port.setWorkListener({});
}

void EventLoopYield::DoEvents() {
    QAbstractEventDispatcher *events = QThread::currentThread()->eventDispatcher();
    if (!events) {
        QCoreApplication::processEvents();
        return;
    }
    const bool sleep = m_idle || (m_clock.enabled() && !m_port.holdsInput());
    if (!sleep && WakeAlarm::now() - m_passEnded < QuietGapNs) {
        // A pass has just dispatched all there was; the next one that sleeps returns at once
        // for anything that has come since.
        m_idle = true;
        return;
    }
    // With a time limit processEvents ignores WaitForMoreEvents and spins; without one it
    // returns after the first batch of events.
    m_idle = !events->processEvents(sleep ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
    m_passEnded = WakeAlarm::now();
}
