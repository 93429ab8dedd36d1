// The link's clock over a real QTimer, held to the contract every wait relies on. Intervals
// of a tenth of a second; a loaded machine can make a tick late, never early.
#include "globals.h"
#include "qt_link_timer.h"

#include <QElapsedTimer>
#include <QTest>

class TstQtLinkTimer : public QObject {
    Q_OBJECT
private slots:
    // A wait enables the clock at every empty pass: the silence counts from the first one.
    void enablingARunningTimerDoesNotRestartIt() {
        Globals g;
        QtLinkTimer timer(g);
        timer.setInterval(100);
        QElapsedTimer clock;
        clock.start();
        while (!g.TimedOut && clock.elapsed() < 2000) {
            timer.setEnabled(true);
            QTest::qWait(5);
        }
        QVERIFY2(g.TimedOut, "no tick while enabled again and again");
    }

    // Enabled from stopped, it ticks after a full interval; the tick sets TimedOut and nothing
    // else: the clock runs on until a wait stops it.
    void ticksFromEnablingUntilDisabled() {
        Globals g;
        QtLinkTimer timer(g);
        timer.setInterval(100);
        QCOMPARE(timer.interval(), 100);
        timer.setEnabled(true);
        QTest::qWait(70);
        timer.setEnabled(false);
        QVERIFY(!timer.enabled());
        QElapsedTimer clock;
        clock.start();
        timer.setEnabled(true);
        QTRY_VERIFY_WITH_TIMEOUT(g.TimedOut, 2000);
        QVERIFY2(clock.elapsed() >= 95, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(timer.enabled());
        g.TimedOut = false;
        QTRY_VERIFY_WITH_TIMEOUT(g.TimedOut, 2000);
        timer.setEnabled(false);
        g.TimedOut = false;
        QTest::qWait(250);
        QVERIFY(!g.TimedOut && !timer.enabled());
    }
};

QTEST_GUILESS_MAIN(TstQtLinkTimer)
#include "tst_qt_link_timer.moc"
