#include "qt_link_timer.h"

#include <algorithm>

QtLinkTimer::QtLinkTimer(Globals &g, int divisor) : m_g(g), m_divisor(std::max(1, divisor)) {
    // The default coarse timer may fire 5% early; a time-out must not.
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(m_interval / m_divisor);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { m_g.TimedOut = true; });
}

void QtLinkTimer::setInterval(int ms) {
    m_interval = ms;
    m_timer.setInterval(std::max(1, ms / m_divisor));
}

void QtLinkTimer::setEnabled(bool on) {
    // QTimer::start() would restart a running timer; enabling a running clock must not.
    if (on && !m_timer.isActive())
        m_timer.start();
    else if (!on)
        m_timer.stop();
}
