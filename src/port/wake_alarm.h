#pragma once
// Wakes the event loop at a moment given to the nanosecond, on the monotonic clock: a wait that
// sleeps until the line should have emptied wakes then, not at the next millisecond tick. It
// only wakes the loop; who slept looks again at what it waits for.

#include <QSocketNotifier>
#include <QtGlobal>

#include <memory>

class WakeAlarm {
public:
    WakeAlarm();
    ~WakeAlarm();
    WakeAlarm(const WakeAlarm &) = delete;
    WakeAlarm &operator=(const WakeAlarm &) = delete;

    // Nanoseconds on the clock the alarm keeps.
    static qint64 now();

    // Rings at `ns`, or earlier if it was set for earlier: one ring serves every waiter.
    void ringAt(qint64 ns);
    void cancel();

private:
    void rang();

    int m_fd = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    qint64 m_at = -1; // -1: not set
};
