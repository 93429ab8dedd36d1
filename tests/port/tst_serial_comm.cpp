// The port through the real QSerialPort on a pseudo-terminal; the test plays the far end.
#include "event_loop_yield.h"
#include "pty_pair.h"
#include "qt_link_timer.h"
#include "serial_comm.h"

#include <QtTest>
#include <optional>

#define OPEN_PTY(pty)                                                                              \
    PtyPair pty;                                                                                   \
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()))

namespace {

const QByteArray GoAhead("\x10\x37");

template <typename F> std::optional<CommError> Thrown(F f) {
    try {
        f();
    } catch (const CommError &e) {
        return e;
    }
    return std::nullopt;
}

// Until `n` characters wait at the port, without running the event loop.
bool WaitingInDriver(const PtyPair &pty, int n) {
    QElapsedTimer clock;
    clock.start();
    while (pty.waitingAtSlave() < n && clock.elapsed() < 3000)
        QThread::msleep(1);
    return pty.waitingAtSlave() == n;
}

QByteArray Pattern(qsizetype n) {
    QByteArray b(n, Qt::Uninitialized);
    for (qsizetype i = 0; i < n; ++i)
        b[i] = char((i * 7 + i / 251) & 0xff);
    return b;
}

} // namespace

class TstSerialComm : public QObject {
    Q_OBJECT
private slots:
    void settings_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<int>>("values"); // baud, parity (2 E, 3 O), data, stop, bits
        QTest::addColumn<QString>("why");       // a word of the refusal; empty: accepted
        const auto row = [](const char *text, QList<int> values, const char *why) {
            QTest::newRow(text) << QString(text) << values << QString(why);
        };
        row("9600,E,7,2", {9600, 2, 7, 2, 11}, "");
        row("300,O,5,1", {300, 3, 5, 1, 8}, "");
        row(" 19200 , n , 8 , 1 ", {19200, 0, 8, 1, 10}, "");
        row("9600,E,7", {}, "four values");
        row("+9600,E,7,2", {}, "baud");
        row("9600,X,7,2", {}, "parity");
        row("9600,E,9,2", {}, "data bits");
        row("9600,E,7,1.5", {}, "1.5");
    }
    void settings() {
        QFETCH(QString, text);
        QFETCH(QString, why);
        SerialComm comm;
        comm.setCommPort(2);
        const auto e = Thrown([&] { comm.setSettings(text); });
        QCOMPARE(bool(e), !why.isEmpty());
        if (e) {
            QCOMPARE(e->device, QStringLiteral("COM2: (/dev/ttyS1)"));
            QVERIFY2(e->reason.contains('"' + text + '"') && e->reason.contains(why),
                     qPrintable(e->reason));
            return;
        }
        const LineSettings s = parseLineSettings(text);
        QTEST((QList<int>{s.baud, int(s.parity), int(s.dataBits), int(s.stopBits),
                          s.bitsPerCharacter()}),
              "values");
    }

    void nothingLost_data() {
        QTest::addColumn<int>("chunk"); // bytes per Output call
        QTest::newRow("one Output of 256 KiB") << 256 * 1024;
        QTest::newRow("lines of 80") << 80;
        QTest::newRow("lines longer than the queue") << 2000;
    }
    // Output waits for room, and a CC written and closed at once, held up by the line, goes too.
    void nothingLost() {
        QFETCH(int, chunk);
        OPEN_PTY(pty);
        SerialComm comm(pty.slavePath());
        comm.setSettings(QStringLiteral("4000000,N,8,1"));
        comm.setPortOpen(true);
        const QByteArray data = Pattern(256 * 1024);
        QByteArray got;
        int most = 0; // in flight as the program sees it, also while Output waits
        QTimer farEnd;
        connect(&farEnd, &QTimer::timeout, this, [&] {
            most = qMax(most, comm.outBufferCount());
            got += pty.receive(65536, 0);
        });
        farEnd.start(1);
        for (qsizetype at = 0; at < data.size(); at += chunk) {
            comm.output(data.mid(at, chunk));
            most = qMax(most, comm.outBufferCount());
        }
        farEnd.stop();
        pty.setSlaveOutputStopped(true);
        comm.output("CC");
        QTimer::singleShot(50, this, [&] { pty.setSlaveOutputStopped(false); });
        comm.setPortOpen(false);
        got += pty.receiveCount(int(data.size() + 2 - got.size()), 3000);
        QVERIFY(got == data + "CC");
        QVERIFY2(most <= SerialComm::MaxInFlight, qPrintable(QString::number(most)));
    }

    void countsWhatWaitsInTheDriver_data() {
        QTest::addColumn<QByteArray>("fetched"); // read in by the event loop first
        QTest::newRow("an X-off alone") << QByteArray();
        QTest::newRow("the 7 behind a DLE already fetched") << QByteArray("\x10");
    }
    // What reached the driver after the event loop last looked is counted, and Input hands it
    // over with what came before: an X-off stops the sender after the line in progress.
    void countsWhatWaitsInTheDriver() {
        QFETCH(QByteArray, fetched);
        OPEN_PTY(pty);
        SerialComm comm(pty.slavePath());
        comm.setPortOpen(true);
        QVERIFY(pty.send(fetched));
        QTRY_COMPARE(comm.inBufferCount(), int(fetched.size()));
        const QByteArray late = fetched.isEmpty() ? QByteArray("\x13") : QByteArray("7");
        QVERIFY(pty.send(late));
        QVERIFY(WaitingInDriver(pty, 1));
        QCOMPARE(comm.inBufferCount(), int(fetched.size()) + 1);
        QCOMPARE(comm.input(), fetched + late);
        QCOMPARE(comm.inBufferCount(), 0);
        comm.setPortOpen(false);
    }

    void whenAPassSleeps_data() {
        QTest::addColumn<QString>("work");
        QTest::addColumn<bool>("inWait"); // the wait's clock runs
        QTest::addColumn<bool>("sleeps");
        QTest::newRow("after Output") << "output" << false << false;
        QTest::newRow("after Input") << "input" << false << false;
        QTest::newRow("nothing done") << "" << false << true;
        // All a wait waits for comes as an event...
        QTest::newRow("in a wait, after Output") << "output" << true << true;
        // ...unless it has come already and waits to be read.
        QTest::newRow("in a wait, after Output, an answer fetched")
            << "fetched, output" << true << false;
    }
    // A pass sleeps until an event only when nothing else can be ready: the next line of a
    // send is not held up, and a wait does not spin.
    void whenAPassSleeps() {
        QFETCH(QString, work);
        QFETCH(bool, inWait);
        OPEN_PTY(pty);
        Globals g;
        QtLinkTimer clock(g);
        SerialComm comm(pty.slavePath());
        comm.setSettings(QStringLiteral("115200,N,8,1"));
        EventLoopYield yield(comm, clock);
        comm.setPortOpen(true);
        QCoreApplication::processEvents(); // what earlier tests left
        yield.DoEvents();                  // finds nothing
        clock.setEnabled(inWait);
        if (work.contains("fetched")) {
            QVERIFY(pty.send("\x10\x37"));
            QVERIFY(WaitingInDriver(pty, 2));
            QCOMPARE(comm.inBufferCount(), 2);
        }
        if (work.contains("output"))
            comm.output("N1\r");
        if (work == "input") {
            QVERIFY(pty.send("\x10\x37"));
            QVERIFY(WaitingInDriver(pty, 2));
            QCOMPARE(comm.inBufferCount(), 2);
            QCOMPARE(comm.input(), QByteArray("\x10\x37"));
        }
        bool woken = false; // by the watchdog: the pass slept
        QTimer watchdog;
        watchdog.setSingleShot(true);
        connect(&watchdog, &QTimer::timeout, this, [&] { woken = true; });
        watchdog.start(1000);
        yield.DoEvents();
        QTEST(woken, "sleeps");
        clock.setEnabled(false);
        comm.setPortOpen(false);
    }

    // A drain sleeps until the moment the line should be empty, and wakes then: not before,
    // not at some later tick, and not in many passes.
    void drainWakesWhenTheLineIsEmpty() {
        OPEN_PTY(pty);
        SerialComm comm(pty.slavePath());
        comm.setSettings(QStringLiteral("9600,N,8,1")); // 960 characters a second
        Globals g;
        QtLinkTimer idle(g);
        EventLoopYield yield(comm, idle);
        comm.setPortOpen(true);
        bool stuck = false;
        QTimer watchdog;
        connect(&watchdog, &QTimer::timeout, this, [&] { stuck = true; });
        watchdog.start(3000);
        QElapsedTimer clock;
        clock.start();
        comm.output(QByteArray(96, 'N')); // 100 ms on the line
        int passes = 0;
        while (comm.outBufferCount() > 0 && !stuck) {
            yield.DoEvents();
            ++passes;
        }
        const qint64 ms = clock.elapsed();
        QVERIFY2(!stuck && ms >= 99 && ms < 600, qPrintable(QString::number(ms)));
        QVERIFY2(passes <= 6, qPrintable(QString::number(passes)));
        QCOMPARE(pty.receiveCount(96, 1000), QByteArray(96, 'N'));
        comm.setPortOpen(false);
    }

    void session_data() {
        QTest::addColumn<bool>("writable"); // a trace that cannot be written stops nothing
        QTest::newRow("traced") << true;
        QTest::newRow("trace cannot be written") << false;
    }
    // 7,E and DTR, which a pseudo-terminal refuses, are no error; what waited at the port before
    // an opening is dropped; the trace records each opening, byte and closing.
    void session() {
        QFETCH(bool, writable);
        OPEN_PTY(pty);
        QTemporaryDir dir;
        const QString trace = writable ? dir.filePath(QStringLiteral("trace.log"))
                                       : QStringLiteral("/nonexistent-dnc-dir/trace.log");
        qputenv("DNC_TRACE", trace.toLocal8Bit());
        SerialComm comm(pty.slavePath());
        comm.setSettings(QStringLiteral("9600,E,7,2"));
        comm.setDTREnable(true);
        for (int i = 0; i < 2; ++i) { // before the first opening, then between two
            QVERIFY(pty.send("late answer"));
            QTRY_COMPARE(pty.waitingAtSlave(), 11);
            comm.setPortOpen(true);
            comm.output("R\r");
            QCOMPARE(pty.receiveCount(2, 2000), QByteArray("R\r"));
            QVERIFY(pty.send(GoAhead));
            QTRY_COMPARE(comm.inBufferCount(), 2);
            QCOMPARE(comm.input(), GoAhead);
            comm.setPortOpen(false);
        }
        comm.setDevice(QStringLiteral("/dev/dnc-test-no-such-port"));
        QVERIFY(Thrown([&] { comm.setPortOpen(true); }));
        qunsetenv("DNC_TRACE");
        QFile f(trace);
        QCOMPARE(f.open(QIODevice::ReadOnly), writable);
        if (!writable)
            return;
        const QString text = QString::fromUtf8(f.readAll());
        const QString at = QStringLiteral(R"(.*^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )");
        const QString dev = "COM1: \\(" + QRegularExpression::escape(pty.slavePath()) + "\\)";
        const QString one = at + "OPEN " + dev + " 9600,E,7,2" + at + R"(TX 52 0d  \|R\.\|$)" + at +
                            R"(RX 10 37  \|\.7\|$)" + at + "CLOSE " + dev;
        const QRegularExpression rx(one + one + at + "OPEN FAILED COM1: .*no such device",
                                    QRegularExpression::MultilineOption |
                                        QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(rx.match(text).hasMatch(), qPrintable(text));
    }

    void openRefused_data() {
        QTest::addColumn<bool>("busy"); // held by another, named through a symlink; else absent
        QTest::addColumn<QString>("reason");
        QTest::newRow("absent") << false << "cannot be opened: no such device";
        QTest::newRow("busy") << true << "cannot be opened: another program holds the port";
    }
    void openRefused() {
        QFETCH(bool, busy);
        QFETCH(QString, reason);
        OPEN_PTY(pty);
        QTemporaryDir dir;
        const QString path = busy ? dir.filePath(QStringLiteral("com3"))
                                  : QStringLiteral("/dev/dnc-test-no-such-port");
        SerialComm holder(pty.slavePath());
        holder.setPortOpen(busy);
        QVERIFY(!busy || QFile::link(pty.slavePath(), path));
        qputenv("DNC_COM3", path.toLocal8Bit());
        SerialComm comm;
        comm.setCommPort(3);
        const auto e = Thrown([&] { comm.setPortOpen(true); });
        qunsetenv("DNC_COM3");
        QVERIFY(e && !comm.portOpen());
        QCOMPARE(e->device, QStringLiteral("COM3: (%1)").arg(path));
        QVERIFY2(e->reason.contains(reason), qPrintable(e->reason));
        comm.setPortOpen(false); // closing a port that never opened is no error
    }

    void farEndGone_data() {
        QTest::addColumn<bool>("writing");
        QTest::newRow("while a wait polls") << false;
        QTest::newRow("while Output waits for room") << true;
    }
    // A cable pulled out: the next call throws, naming the device and why.
    void farEndGone() {
        QFETCH(bool, writing);
        OPEN_PTY(pty);
        SerialComm comm(pty.slavePath());
        comm.setPortOpen(true);
        QTimer::singleShot(100, this, [&] { pty.closeMaster(); });
        QElapsedTimer clock;
        clock.start();
        const auto fault = Thrown([&] {
            if (writing)
                comm.output(QByteArray(256 * 1024, 'N'));   // minutes of work at 9600 baud
            for (; clock.elapsed() < 3000; QTest::qWait(5)) // as a wait does
                comm.inBufferCount();
        });
        QVERIFY2(fault && clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(fault->device, QStringLiteral("COM1: (%1)").arg(pty.slavePath()));
        QVERIFY2(fault->reason.contains(QLatin1String("closed at the other end")),
                 qPrintable(fault->reason));
        comm.setPortOpen(false);
        QVERIFY(!comm.portOpen());
    }
};

QTEST_GUILESS_MAIN(TstSerialComm)
#include "tst_serial_comm.moc"
