#pragma once
// The link's clock over a QTimer. Its tick sets TimedOut and keeps the timer running.

#include "globals.h"
#include "link_timer.h"
#include "link_times.h"

#include <QTimer>

class QtLinkTimer : public LinkTimer {
public:
    // divisor > 1 runs the clock faster than its nominal interval (tests against a real
    // port use it so that no test waits out a whole time-out).
    explicit QtLinkTimer(Globals &g, int divisor = 1);

    void setInterval(int ms) override;
    int interval() const override { return m_interval; }
    void setEnabled(bool on) override;
    bool enabled() const override { return m_timer.isActive(); }

private:
    Globals &m_g;
    int m_divisor;
    int m_interval = InitialIntervalMs;
    QTimer m_timer;
};
