// The two bounded waits, read by read: what each pass finds in the input decides.
#include "fake_link.h"
#include "transfer.h"

#include <QTest>

namespace {
// A pass of the script: the bytes that arrive before it polls; '!' at the end of a step
// also lets the clock tick in that pass, "#" is the window being closed.
void Play(FakeLink &f, const QList<QByteArray> &passes) {
    for (const QByteArray &p : passes)
        f.yield.then([&f, p] {
            if (p == "#") {
                f.g.Closing = true;
                return;
            }
            f.comm.inbox += p.endsWith('!') ? p.chopped(1) : p;
            if (p.endsWith('!'))
                f.timer.fire();
        });
    f.yield.limit = 100; // a wait that should have ended fails the test instead of hanging
}
} // namespace

class TestWaits : public QObject {
    Q_OBJECT
private slots:
    void wait_data();
    void wait();
};

void TestWaits::wait_data() {
    QTest::addColumn<bool>("xon");
    QTest::addColumn<QByteArray>("waiting"); // already in the input at the start
    QTest::addColumn<QList<QByteArray>>("passes");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("boxes");
    QTest::addColumn<QByteArray>("left"); // still unread at the end

    using L = QList<QByteArray>;
    const QByteArray dle("\x10"), xon("\x11"), xoff("\x13");
    QTest::newRow("go-ahead in one read")
        << false << QByteArray() << L{dle + "7"} << true << 0 << QByteArray();
    QTest::newRow("DLE alone is left, then read with its 7")
        << false << QByteArray() << L{dle, "", "7"} << true << 0 << QByteArray();
    QTest::newRow("noise and DLE read, lone 7 never read")
        << false << QByteArray() << L{"x" + dle, "7", "!"} << false << 1 << QByteArray("7");
    QTest::newRow("7 before DLE") << false << QByteArray() << L{"7" + dle, "!"} << false << 1
                                  << QByteArray();
    QTest::newRow("DLE, noise, 7")
        << false << QByteArray() << L{dle + "x7"} << true << 0 << QByteArray();
    QTest::newRow("seven DLEs") << false << QByteArray() << L{dle.repeated(7), "!"} << false << 1
                                << QByteArray();
    QTest::newRow("answer there when the time runs out")
        << false << QByteArray() << L{dle + "7!"} << true << 0 << QByteArray();
    QTest::newRow("silence") << false << QByteArray() << L{"", "", "!"} << false << 1
                             << QByteArray();
    QTest::newRow("closed window ends the answer wait")
        << false << QByteArray(dle) << L{"", "#"} << false << 0 << QByteArray(dle);
    QTest::newRow("X-on waiting at the start") << true << xon << L{} << true << 0 << QByteArray();
    QTest::newRow("X-off and X-on together")
        << true << QByteArray() << L{xoff + xon} << true << 0 << QByteArray();
    QTest::newRow("others dropped until X-on")
        << true << QByteArray() << L{xoff, "ab", xon} << true << 0 << QByteArray();
    QTest::newRow("X-off, then no X-on")
        << true << QByteArray() << L{xoff, "", "!"} << false << 1 << QByteArray();
    QTest::newRow("closed window ends the X-on wait")
        << true << QByteArray() << L{"#"} << false << 0 << QByteArray();
}

void TestWaits::wait() {
    QFETCH(bool, xon);
    QFETCH(QByteArray, waiting);
    QFETCH(QList<QByteArray>, passes);

    FakeLink f;
    f.g.Language = 3;
    f.g.TextTable[7 * 5 + 3] = QStringLiteral("Zeitüberschreitung");
    f.comm.open = true;
    f.comm.inbox = waiting;
    f.g.TimedOut = true; // left by an earlier wait: each wait starts afresh
    Play(f, passes);

    const bool result = xon ? WaitForXon(f.link) : WaitForAnswer(f.link);

    QTEST(result, "result");
    // A wait clears the flag on entry; on success it leaves it to the tick.
    const bool ticked = !passes.isEmpty() && passes.last().endsWith('!');
    QCOMPARE(f.g.TimedOut, !result || ticked);
    QTEST(int(f.screen.boxes.size()), "boxes");
    for (const auto &box : f.screen.boxes) {
        QCOMPARE(box.text, QStringLiteral("Zeitüberschreitung"));
        QCOMPARE(box.icon, BoxIcon::None);
        QCOMPARE(box.title, QString());
    }
    QTEST(f.comm.inbox, "left");
    QCOMPARE(f.timer.starts, 1);
    QVERIFY(!f.timer.on);
    QVERIFY(f.comm.writes.isEmpty());
    if (passes.isEmpty())
        QCOMPARE(f.yield.passes, 1L);
}

QTEST_GUILESS_MAIN(TestWaits)
#include "tst_waits.moc"
