#include "wake_alarm.h"

#include <algorithm>
#include <ctime>
#include <sys/timerfd.h>
#include <unistd.h>

WakeAlarm::WakeAlarm() : m_fd(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (m_fd < 0)
        qFatal("timerfd_create failed: the event loop could not be woken in time");
    m_notifier = std::make_unique<QSocketNotifier>(m_fd, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { rang(); });
}

WakeAlarm::~WakeAlarm() {
    m_notifier.reset();
    ::close(m_fd);
}

qint64 WakeAlarm::now() {
    timespec t{};
    ::clock_gettime(CLOCK_MONOTONIC, &t);
    return qint64(t.tv_sec) * 1000000000 + t.tv_nsec;
}

void WakeAlarm::ringAt(qint64 ns) {
    if (m_at >= 0 && m_at <= ns)
        return;
    // A moment already past still rings, at once: zero would disarm the timer.
    ns = std::max<qint64>(ns, 1);
    itimerspec when{};
    when.it_value.tv_sec = ns / 1000000000;
    when.it_value.tv_nsec = ns % 1000000000;
    ::timerfd_settime(m_fd, TFD_TIMER_ABSTIME, &when, nullptr);
    m_at = ns;
}

void WakeAlarm::cancel() {
    if (m_at < 0)
        return;
    const itimerspec off{};
    ::timerfd_settime(m_fd, TFD_TIMER_ABSTIME, &off, nullptr);
    rang();
}

void WakeAlarm::rang() {
    quint64 count = 0;
    [[maybe_unused]] const ssize_t n = ::read(m_fd, &count, sizeof count); // empty it
    m_at = -1;
}
