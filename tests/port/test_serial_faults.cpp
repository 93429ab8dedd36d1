// How the port fails: absent, held by another, gone while open; and the wire trace.
#include "pty_pair.h"
#include "serial_comm.h"

#include <QtTest>
#include <thread>

namespace {

// Event-loop passes within ms; a port that spins on an error makes this huge.
int PassesWithin(int ms) {
    QTimer tick;
    tick.start(20);
    QElapsedTimer clock;
    clock.start();
    int passes = 0;
    while (clock.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        ++passes;
    }
    return passes;
}

QStringList TraceLines(const QString &path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// Index of the first line matching re at or after `from`, -1 if none.
int Find(const QStringList &lines, const QString &re, int from = 0) {
    const QRegularExpression rx(re);
    for (int i = from; i < lines.size(); ++i)
        if (rx.match(lines[i]).hasMatch())
            return i;
    return -1;
}

} // namespace

class TestSerialFaults : public QObject {
    Q_OBJECT
private slots:
    void absentDevice();
    void deviceHeldElsewhere_data();
    void deviceHeldElsewhere();
    void farEndGoneWhileOpen();
    void farEndGoneWhileOutputWaits();
    void traceRecordsTheLine();
    void traceThatCannotBeWrittenIsNoError();
};

void TestSerialFaults::absentDevice() {
    const QString path = QStringLiteral("/dev/dnc-test-no-such-port");
    qputenv("DNC_COM3", path.toLocal8Bit());
    SerialComm comm;
    comm.setCommPort(3);
    try {
        comm.setPortOpen(true);
        QFAIL("opened");
    } catch (const CommError &e) {
        QVERIFY2(e.device.contains(QLatin1String("COM3:")), qPrintable(e.device));
        QVERIFY2(e.device.contains(path), qPrintable(e.device));
        QVERIFY2(e.reason.contains(QLatin1String("no such device")), qPrintable(e.reason));
    }
    QVERIFY(!comm.portOpen());
    comm.setPortOpen(false); // closing a port that never opened is no error
    qunsetenv("DNC_COM3");
}

void TestSerialFaults::deviceHeldElsewhere_data() {
    QTest::addColumn<bool>("viaLink"); // the second opener names the device by a symlink

    QTest::newRow("same path") << false;
    QTest::newRow("through a symlink") << true;
}

void TestSerialFaults::deviceHeldElsewhere() {
    QFETCH(bool, viaLink);
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    QTemporaryDir dir;
    QString second = pty.slavePath();
    if (viaLink) {
        second = dir.filePath(QStringLiteral("com1"));
        QVERIFY(QFile::link(pty.slavePath(), second));
    }
    SerialComm first(pty.slavePath());
    first.setPortOpen(true);

    SerialComm other(second);
    try {
        other.setPortOpen(true);
        QFAIL("opened twice");
    } catch (const CommError &e) {
        QVERIFY2(e.device.contains(second), qPrintable(e.device));
        QVERIFY2(e.reason.contains(QLatin1String("another program holds the port")),
                 qPrintable(e.reason));
    }
    QVERIFY(!other.portOpen());

    // The holder is not disturbed.
    first.output("ok");
    QCOMPARE(pty.receiveCount(2, 2000), QByteArray("ok"));
    first.setPortOpen(false);
}

void TestSerialFaults::farEndGoneWhileOpen() {
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    comm.setPortOpen(true);
    pty.closeMaster();

    // As a wait would: yield, poll. The first poll after the fault throws.
    std::optional<CommError> fault;
    QTimer tick;
    tick.start(5);
    QElapsedTimer clock;
    clock.start();
    while (!fault && clock.elapsed() < 2000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        try {
            comm.inBufferCount();
        } catch (const CommError &e) {
            fault = e;
        }
    }
    QVERIFY(fault);
    QVERIFY2(fault->device.contains(pty.slavePath()), qPrintable(fault->device));
    QVERIFY2(fault->reason.contains(QLatin1String("closed at the other end")),
             qPrintable(fault->reason));

    // No spinning on the dead port afterwards: only the 20 ms tick wakes the loop.
    const int passes = PassesWithin(200);
    QVERIFY2(passes < 100, qPrintable(QString::number(passes)));

    QVERIFY_THROWS_EXCEPTION(CommError, comm.output("x"));
    QVERIFY_THROWS_EXCEPTION(CommError, comm.input());
    QVERIFY_THROWS_EXCEPTION(CommError, comm.outBufferCount());
    comm.setPortOpen(false);
    QVERIFY(!comm.portOpen());
}

void TestSerialFaults::farEndGoneWhileOutputWaits() {
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    SerialComm comm(pty.slavePath());
    comm.setPortOpen(true);
    // Nobody reads; the far end vanishes while Output waits for room.
    std::jthread vanish([&pty] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        pty.closeMaster();
    });
    QElapsedTimer clock;
    clock.start();
    QVERIFY_THROWS_EXCEPTION(CommError, comm.output(QByteArray(256 * 1024, 'N')));
    vanish.join();
    QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
    comm.setPortOpen(false);
    QVERIFY(!comm.portOpen());
}

void TestSerialFaults::traceRecordsTheLine() {
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("trace.log"));
    qputenv("DNC_TRACE", path.toLocal8Bit());

    SerialComm comm(pty.slavePath());
    comm.setSettings(QStringLiteral("9600,E,7,2"));
    for (int session = 0; session < 2; ++session) {
        comm.setPortOpen(true);
        comm.output("R\r");
        QCOMPARE(pty.receiveCount(2, 2000), QByteArray("R\r"));
        QVERIFY(pty.send("\x10"
                         "7"));
        QTRY_COMPARE(comm.inBufferCount(), 2);
        QCOMPARE(comm.input(), QByteArray("\x10"
                                          "7"));
        comm.setPortOpen(false);
    }
    comm.setDevice(QStringLiteral("/dev/dnc-test-no-such-port"));
    QVERIFY_THROWS_EXCEPTION(CommError, comm.setPortOpen(true));
    qunsetenv("DNC_TRACE");

    const QStringList lines = TraceLines(path);
    const QString stamp = QStringLiteral(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )");
    const QString dev = QRegularExpression::escape(pty.slavePath());
    int at = 0;
    for (int session = 0; session < 2; ++session) { // appended, not overwritten
        at = Find(lines, stamp + "OPEN COM1: \\(" + dev + "\\) 9600,E,7,2", at);
        QVERIFY2(at >= 0, qPrintable(lines.join('\n')));
        at = Find(lines, stamp + R"(TX 52 0d  \|R\.\|$)", at);
        QVERIFY2(at >= 0, qPrintable(lines.join('\n')));
        at = Find(lines, stamp + R"(RX 10 37  \|\.7\|$)", at);
        QVERIFY2(at >= 0, qPrintable(lines.join('\n')));
        at = Find(lines, stamp + "CLOSE COM1: \\(" + dev + "\\)", at);
        QVERIFY2(at >= 0, qPrintable(lines.join('\n')));
    }
    QVERIFY2(Find(lines, stamp + "OPEN FAILED COM1: .*no such device", at) > at,
             qPrintable(lines.join('\n')));
}

void TestSerialFaults::traceThatCannotBeWrittenIsNoError() {
    PtyPair pty;
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()));
    qputenv("DNC_TRACE", "/nonexistent-dnc-dir/trace.log");
    SerialComm comm(pty.slavePath());
    comm.setPortOpen(true);
    comm.output("CC");
    comm.setPortOpen(false);
    qunsetenv("DNC_TRACE");
    QCOMPARE(pty.receiveCount(2, 2000), QByteArray("CC"));
    QVERIFY(!QFile::exists(QStringLiteral("/nonexistent-dnc-dir/trace.log")));
}

QTEST_GUILESS_MAIN(TestSerialFaults)
#include "test_serial_faults.moc"
