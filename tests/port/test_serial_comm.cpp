// The port through the real QSerialPort on a pseudo-terminal; the test plays the far end.
#include "pty_pair.h"
#include "serial_comm.h"

#include <QtTest>
#include <atomic>
#include <thread>

namespace {

// Reads until `want` bytes have come (or 10 s), at most `piece` every `pauseMs`: a slow line.
void SlowReader(PtyPair &pty, qsizetype want, int piece, int pauseMs, QByteArray &got,
                std::atomic<qint64> &count) {
    QElapsedTimer clock;
    clock.start();
    while (got.size() < want && clock.elapsed() < 10000) {
        got += pty.receive(piece, 50);
        count = got.size();
        std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
    }
}

// Everything the port has read within limitMs, once `want` bytes are there.
QByteArray ReadFromPort(SerialComm &comm, qsizetype want, int limitMs = 2000) {
    QByteArray got;
    QElapsedTimer clock;
    clock.start();
    while (got.size() < want && clock.elapsed() < limitMs) {
        QTest::qWait(2);
        if (comm.inBufferCount() > 0)
            got += comm.input();
    }
    return got;
}

QByteArray Pattern(qsizetype n) {
    QByteArray b(n, Qt::Uninitialized);
    for (qsizetype i = 0; i < n; ++i)
        b[i] = char((i * 7 + i / 251) & 0xff);
    return b;
}

} // namespace

class TestSerialComm : public QObject {
    Q_OBJECT
private slots:
    void allByteValuesBothWays();
    void largeOutputWaitsForRoom_data();
    void largeOutputWaitsForRoom();
    void closeRightAfterOutputPutsAllOnLine_data();
    void closeRightAfterOutputPutsAllOnLine();
    void pollingAloneDrainsTheQueue();
    void unsupportedSettingsOnPtyAreNoError_data();
    void unsupportedSettingsOnPtyAreNoError();
    void inputWaitingBeforeOpenIsDiscarded_data();
    void inputWaitingBeforeOpenIsDiscarded();
};

void TestSerialComm::allByteValuesBothWays() {
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    comm.setSettings(QStringLiteral("9600,N,8,1"));
    comm.setPortOpen(true);
    QVERIFY(comm.portOpen());

    const QByteArray all = [] {
        QByteArray b(256, Qt::Uninitialized);
        for (int i = 0; i < 256; ++i)
            b[i] = char(i);
        return b;
    }();
    comm.output(all);
    QCOMPARE(pty.receiveCount(256, 2000), all);
    QTRY_COMPARE(comm.outBufferCount(), 0);

    QVERIFY(pty.send(all));
    QCOMPARE(ReadFromPort(comm, 256), all);
    QCOMPARE(comm.inBufferCount(), 0);
    comm.setPortOpen(false);
    QVERIFY(!comm.portOpen());
}

void TestSerialComm::largeOutputWaitsForRoom_data() {
    QTest::addColumn<int>("chunk"); // bytes per Output call

    QTest::newRow("one Output of 256 KiB") << 256 * 1024;
    QTest::newRow("lines of 80") << 80;
    QTest::newRow("lines longer than the queue") << 2000;
}

void TestSerialComm::largeOutputWaitsForRoom() {
    QFETCH(int, chunk);
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    comm.setSettings(QStringLiteral("115200,N,8,1"));
    comm.setPortOpen(true);

    const QByteArray data = Pattern(256 * 1024);
    QByteArray got;
    std::atomic<qint64> received{0};
    std::jthread reader(SlowReader, std::ref(pty), data.size(), 2048, 1, std::ref(got),
                        std::ref(received));

    // In flight as the program sees it, sampled while Output waits and after each call.
    int most = 0;
    QTimer sampler;
    sampler.setInterval(1);
    connect(&sampler, &QTimer::timeout, this, [&] {
        try {
            most = qMax(most, comm.outBufferCount());
        } catch (const CommError &) {
            most = -1000000; // Output below throws the same and fails the test
        }
    });
    sampler.start();
    qint64 behindAtReturn = 0;
    for (qsizetype at = 0; at < data.size(); at += chunk) {
        comm.output(data.mid(at, chunk));
        most = qMax(most, comm.outBufferCount());
        const qint64 sent = qMin<qint64>(data.size(), at + chunk);
        behindAtReturn = qMax(behindAtReturn, sent - received.load());
    }
    sampler.stop();
    comm.setPortOpen(false);
    reader.join();

    QCOMPARE(got.size(), data.size());
    QVERIFY(got == data);
    QVERIFY2(most <= SerialComm::MaxInFlight, qPrintable(QString::number(most)));
    // Output returned only when all but the queue (and the pseudo-terminal's own kernel
    // buffer, which the driver count does not show) had reached the far end.
    QVERIFY2(behindAtReturn <= SerialComm::MaxInFlight + 64 * 1024,
             qPrintable(QString::number(behindAtReturn)));
}

void TestSerialComm::closeRightAfterOutputPutsAllOnLine_data() {
    QTest::addColumn<int>("before"); // bytes queued ahead of "CC"
    QTest::addColumn<bool>("held");  // the line takes nothing until the close has begun

    QTest::newRow("CC alone") << 0 << false;
    QTest::newRow("CC behind a held queue") << 300 << true;
}

void TestSerialComm::closeRightAfterOutputPutsAllOnLine() {
    QFETCH(int, before);
    QFETCH(bool, held);
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    comm.setSettings(QStringLiteral("9600,E,7,2"));
    comm.setPortOpen(true);
    pty.setSlaveOutputStopped(held);

    const QByteArray ahead = Pattern(before);
    QByteArray got;
    std::atomic<qint64> received{0};
    std::jthread reader([&] {
        if (held) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            pty.setSlaveOutputStopped(false);
        }
        SlowReader(pty, before + 2, 64, 2, got, received);
    });
    comm.output(ahead);
    comm.output("CC");
    if (held)
        QCOMPARE(comm.outBufferCount(), before + 2); // all of it still in our queue
    comm.setPortOpen(false);
    QVERIFY(!comm.portOpen());
    reader.join();
    QCOMPARE(got.size(), qsizetype(before + 2));
    QVERIFY(got == ahead + "CC");
}

void TestSerialComm::pollingAloneDrainsTheQueue() {
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    comm.setPortOpen(true);
    pty.setSlaveOutputStopped(true);
    comm.output(Pattern(400));
    QCOMPARE(comm.outBufferCount(), 400);
    pty.setSlaveOutputStopped(false);

    // A drain loop that only polls, with no event-loop pass between, still sees it leave.
    QElapsedTimer clock;
    clock.start();
    int left = 400;
    while (left > 0 && clock.elapsed() < 2000)
        left = comm.outBufferCount();
    QCOMPARE(left, 0);
    QCOMPARE(pty.receiveCount(400, 2000), Pattern(400));
    comm.setPortOpen(false);
}

void TestSerialComm::unsupportedSettingsOnPtyAreNoError_data() {
    QTest::addColumn<QString>("settings");
    QTest::addColumn<bool>("dtr");

    QTest::newRow("7,E,2 with DTR") << "9600,E,7,2" << true;
    QTest::newRow("7,E,1 without DTR") << "9600,E,7,1" << false;
    QTest::newRow("5,O,2 with DTR") << "300,O,5,2" << true;
}

void TestSerialComm::unsupportedSettingsOnPtyAreNoError() {
    QFETCH(QString, settings);
    QFETCH(bool, dtr);
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    comm.setSettings(settings);
    comm.setDTREnable(dtr);
    try {
        comm.setPortOpen(true);
    } catch (const CommError &e) {
        QFAIL(qPrintable(e.device + QStringLiteral(": ") + e.reason));
    }
    comm.output("R\r");
    QCOMPARE(pty.receiveCount(2, 2000), QByteArray("R\r"));
    QVERIFY(pty.send("\x10"
                     "7"));
    QCOMPARE(ReadFromPort(comm, 2), QByteArray("\x10"
                                               "7"));
    comm.setPortOpen(false);
}

void TestSerialComm::inputWaitingBeforeOpenIsDiscarded_data() {
    QTest::addColumn<bool>("openedBefore");

    QTest::newRow("before the first opening") << false;
    QTest::newRow("between two operations") << true;
}

void TestSerialComm::inputWaitingBeforeOpenIsDiscarded() {
    QFETCH(bool, openedBefore);
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    if (openedBefore) {
        comm.setPortOpen(true);
        comm.output("MC\r");
        comm.setPortOpen(false);
        QCOMPARE(pty.receiveCount(3, 2000), QByteArray("MC\r"));
    }
    QVERIFY(pty.send("late answer"));
    QTRY_COMPARE(pty.waitingAtSlave(), 11); // it really waits at the port

    comm.setPortOpen(true);
    QVERIFY(pty.send("\x10"
                     "7"));
    QByteArray got = ReadFromPort(comm, 2);
    QTest::qWait(50);
    got += comm.input();
    QCOMPARE(got, QByteArray("\x10"
                             "7"));
    comm.setPortOpen(false);
}

QTEST_GUILESS_MAIN(TestSerialComm)
#include "test_serial_comm.moc"
