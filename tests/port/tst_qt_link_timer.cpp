// The link's clock over a real QTimer, held to the contract every wait relies on. Intervals
// of a tenth of a second; a loaded machine can make a tick late, never early.
#include "globals.h"
#include "qt_link_timer.h"

#include <QElapsedTimer>
#include <QTest>

class TstQtLinkTimer : public QObject {
    Q_OBJECT
private slots:
    // Stopped, then enabled: it ticks a full interval later, although a wait enables the clock
    // again at every empty pass. The tick sets TimedOut; once disabled the clock is silent.
    void ticksAnIntervalAfterEnabling() {
        Globals g;
        QtLinkTimer timer(g);
        timer.setInterval(100);
        timer.setEnabled(true);
        QTest::qWait(70);
        timer.setEnabled(false);
        QElapsedTimer clock;
        clock.start();
        while (!g.TimedOut && clock.elapsed() < 2000) {
            timer.setEnabled(true);
            QTest::qWait(5);
        }
        QVERIFY2(g.TimedOut && clock.elapsed() >= 95, qPrintable(QString::number(clock.elapsed())));
        timer.setEnabled(false);
        g.TimedOut = false;
        QTest::qWait(250);
        QVERIFY(!g.TimedOut && !timer.enabled());
    }
};

QTEST_GUILESS_MAIN(TstQtLinkTimer)
#include "tst_qt_link_timer.moc"
