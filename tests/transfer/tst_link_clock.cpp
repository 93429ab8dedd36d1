// The real clock and yield over Qt's event loop, on short intervals.
#include "event_loop_yield.h"
#include "qt_link_timer.h"

#include <QElapsedTimer>
#include <QTest>
#include <sys/resource.h>

namespace {
double CpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// Yields until the flag is up or the limit is reached; the elapsed milliseconds.
qint64 YieldUntilTimedOut(Globals &g, EventLoopYield &y, qint64 limitMs) {
    QElapsedTimer t;
    t.start();
    while (!g.TimedOut && t.elapsed() < limitMs)
        y.DoEvents();
    return t.elapsed();
}
} // namespace

class TestLinkClock : public QObject {
    Q_OBJECT
private slots:
    void tickSetsFlagAndKeepsRunning();
    void enablingARunningTimerDoesNotRestartIt();
    void disabledTimerDoesNotTick();
    void scaledClock();
    void yieldSleepsButWakes();
    void yieldAfterWorkDoesNotSleep();
};

void TestLinkClock::tickSetsFlagAndKeepsRunning() {
    Globals g;
    EventLoopYield y;
    QtLinkTimer timer(g);
    QCOMPARE(timer.interval(), 10000);
    timer.setInterval(30);
    timer.setEnabled(true);
    QVERIFY(YieldUntilTimedOut(g, y, 2000) < 2000);
    QVERIFY(timer.enabled());
    g.TimedOut = false;
    QVERIFY(YieldUntilTimedOut(g, y, 2000) < 2000);
    timer.setEnabled(false);
    QVERIFY(!timer.enabled());
}

void TestLinkClock::enablingARunningTimerDoesNotRestartIt() {
    Globals g;
    EventLoopYield y;
    QtLinkTimer timer(g);
    timer.setInterval(400);
    QElapsedTimer t;
    t.start();
    timer.setEnabled(true);
    while (t.elapsed() < 250)
        y.DoEvents();
    timer.setEnabled(true);
    YieldUntilTimedOut(g, y, 3000);
    // A restart would put the tick at 650 ms or later.
    QVERIFY2(g.TimedOut && t.elapsed() < 600, qPrintable(QString::number(t.elapsed())));
}

void TestLinkClock::disabledTimerDoesNotTick() {
    Globals g;
    EventLoopYield y;
    QtLinkTimer timer(g);
    timer.setInterval(20);
    timer.setEnabled(true);
    timer.setEnabled(false);
    YieldUntilTimedOut(g, y, 150);
    QVERIFY(!g.TimedOut);
}

void TestLinkClock::scaledClock() {
    Globals g;
    EventLoopYield y;
    QtLinkTimer timer(g, 50);
    timer.setInterval(5000);
    QCOMPARE(timer.interval(), 5000);
    timer.setEnabled(true);
    const qint64 ms = YieldUntilTimedOut(g, y, 3000);
    QVERIFY2(g.TimedOut && ms >= 100 && ms < 1000, qPrintable(QString::number(ms)));
}

void TestLinkClock::yieldSleepsButWakes() {
    // With nothing happening each pass sleeps until the heartbeat: no spin, no hang.
    EventLoopYield y;
    QElapsedTimer t;
    t.start();
    const double cpu0 = CpuSeconds();
    int passes = 0;
    while (t.elapsed() < 500) {
        y.DoEvents();
        ++passes;
    }
    const double cpu = CpuSeconds() - cpu0;
    QVERIFY2(passes > 20 && passes < 500, qPrintable(QString::number(passes)));
    QVERIFY2(cpu < 0.1, qPrintable(QString::number(cpu)));
}

void TestLinkClock::yieldAfterWorkDoesNotSleep() {
    // A send loop yields once between lines: that pass must not wait for the heartbeat.
    EventLoopYield y;
    QObject target;
    QElapsedTimer t;
    t.start();
    for (int i = 0; i < 200; ++i) {
        QMetaObject::invokeMethod(
            &target, [] {}, Qt::QueuedConnection);
        y.DoEvents(); // dispatches the event
        y.DoEvents(); // nothing to do: returns at once
    }
    QVERIFY2(t.elapsed() < 400, qPrintable(QString::number(t.elapsed())));
}

QTEST_GUILESS_MAIN(TestLinkClock)
#include "tst_link_clock.moc"
