// The port through the real QSerialPort on a pseudo-terminal; the test plays the far end.
#include "event_loop_yield.h"
#include "pty_pair.h"
#include "qt_link_timer.h"
#include "rows.h"
#include "serial_comm.h"
#include "serial_devices.h"

#include <QtTest>
#include <optional>

#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#define OPEN_PTY(pty)                                                                              \
    PtyPair pty;                                                                                   \
    QVERIFY2(pty.isOpen(), qPrintable(pty.error()))

namespace {

template <typename F> std::optional<CommError> thrown(F f) {
    try {
        f();
    } catch (const CommError &e) {
        return e;
    }
    return std::nullopt;
}

// Another program that holds the device with an exclusive open (TIOCEXCL), as terminal
// programs do: a child process that opens it and waits to be killed.
class ExclusiveHolder {
public:
    explicit ExclusiveHolder(const QString &path) {
        const QByteArray name = QFile::encodeName(path);
        int ready[2];
        if (::pipe(ready) != 0)
            return;
        m_pid = ::fork();
        if (m_pid == 0) {
            const int fd = ::open(name.constData(), O_RDWR | O_NOCTTY);
            const char ok = fd >= 0 && ::ioctl(fd, TIOCEXCL) == 0 ? 'y' : 'n';
            (void)!::write(ready[1], &ok, 1);
            for (;;)
                ::pause();
        }
        ::close(ready[1]);
        char ok = 'n';
        m_holding = m_pid > 0 && ::read(ready[0], &ok, 1) == 1 && ok == 'y';
        ::close(ready[0]);
    }
    ~ExclusiveHolder() {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
    }
    ExclusiveHolder(const ExclusiveHolder &) = delete;
    ExclusiveHolder &operator=(const ExclusiveHolder &) = delete;
    bool holding() const { return m_holding; }

private:
    pid_t m_pid = -1;
    bool m_holding = false;
};

// While alive, a test run by root has the rights of the user nobody (as far as opening files
// goes), so that it meets what an operator meets. Others keep their own rights.
class Unprivileged {
public:
    Unprivileged() {
        const passwd *me = ::getpwuid(::geteuid()), *nobody = ::getpwnam("nobody");
        m_user = me ? QString::fromLocal8Bit(me->pw_name) : QString();
        if (::geteuid() != 0)
            return;
        m_groups.resize(::getgroups(0, nullptr));
        ::getgroups(int(m_groups.size()), m_groups.data());
        m_changed = true;
        if (!nobody)
            m_why = QStringLiteral("there is no user nobody");
        else if (::setgroups(0, nullptr) != 0 || ::setegid(nobody->pw_gid) != 0 ||
                 ::seteuid(nobody->pw_uid) != 0)
            m_why = QString::fromLocal8Bit(std::strerror(errno));
        else
            m_user = QString::fromLocal8Bit(nobody->pw_name);
    }
    ~Unprivileged() {
        if (!m_changed)
            return;
        if (::geteuid() != 0 && ::seteuid(0) != 0)
            qFatal("cannot take root's rights back");
        (void)!::setegid(0);
        (void)!::setgroups(m_groups.size(), m_groups.data());
    }
    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

    QString why() const { return m_why; } // empty when the rights are the operator's
    QString user() const { return m_user; }

private:
    std::vector<gid_t> m_groups;
    bool m_changed = false;
    QString m_why;
    QString m_user;
};

// Until `n` characters wait at the port, without running the event loop.
bool waitingInDriver(const PtyPair &pty, int n) {
    QElapsedTimer clock;
    clock.start();
    while (pty.waitingAtSlave() < n && clock.elapsed() < 3000)
        QThread::msleep(1);
    return pty.waitingAtSlave() == n;
}

QByteArray pattern(qsizetype n) {
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
        const auto e = thrown([&] { comm.setSettings(text); });
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
        row("one Output of 256 KiB", 256 * 1024);
        row("lines of 80", 80);
        row("lines longer than the queue", 2000);
    }
    // Output waits for room, and a CC written and closed at once, held up by the line, goes too.
    void nothingLost() {
        QFETCH(int, chunk);
        OPEN_PTY(pty);
        SerialComm comm(pty.slavePath());
        comm.setSettings(QStringLiteral("4000000,N,8,1"));
        comm.setPortOpen(true);
        const QByteArray data = pattern(256 * 1024);
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
        row("an X-off alone", B());
        row("the 7 behind a DLE already fetched", Dle);
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
        const QByteArray late = fetched.isEmpty() ? Xoff : B("7");
        QVERIFY(pty.send(late));
        QVERIFY(waitingInDriver(pty, 1));
        QCOMPARE(comm.inBufferCount(), int(fetched.size()) + 1);
        QCOMPARE(comm.input(), fetched + late);
        QCOMPARE(comm.inBufferCount(), 0);
        comm.setPortOpen(false);
    }

    void whenAPassSleeps_data() {
        QTest::addColumn<QString>("work");
        QTest::addColumn<bool>("inWait"); // the wait's clock runs
        QTest::addColumn<bool>("sleeps");
        row("after Output", "output", false, false);
        row("after Input", "input", false, false);
        row("nothing done", "", false, true);
        // All a wait waits for comes as an event...
        row("in a wait, after Output", "output", true, true);
        // ...unless it has come already and waits to be read.
        row("in a wait, after Output, an answer fetched", "fetched, output", true, false);
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
        if (work.contains("fetched") || work == "input") {
            QVERIFY(pty.send(Go));
            QVERIFY(waitingInDriver(pty, 2));
            QCOMPARE(comm.inBufferCount(), 2);
        }
        if (work.contains("output"))
            comm.output("N1\r");
        if (work == "input")
            QCOMPARE(comm.input(), Go);
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
        row("traced", true);
        row("trace cannot be written", false);
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
            QVERIFY(pty.send(PromptSeq));
            QTRY_COMPARE(comm.inBufferCount(), 2);
            QCOMPARE(comm.input(), PromptSeq);
            comm.setPortOpen(false);
        }
        comm.setDevice(QStringLiteral("/dev/dnc-test-no-such-port"));
        QVERIFY(thrown([&] { comm.setPortOpen(true); }));
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

    // udev's by-id links are the stable names; a device without one keeps its own.
    void stablePath() {
        OPEN_PTY(pty);
        OPEN_PTY(other);
        QTemporaryDir byId;
        const QString link =
            byId.filePath(QStringLiteral("usb-FTDI_FT232R_USB_UART_A5-if00-port0"));
        QVERIFY(QFile::link(pty.slavePath(), link));
        QVERIFY(QFile::link(QStringLiteral("/nonexistent"), byId.filePath(QStringLiteral("a"))));
        QVERIFY(QFile::link(QStringLiteral("/dev/null"), byId.filePath(QStringLiteral("b"))));
        QCOMPARE(stablePathOf(pty.slavePath(), byId.path()), link);
        QCOMPARE(stablePathOf(other.slavePath(), byId.path()), other.slavePath());
        QCOMPARE(stablePathOf(QStringLiteral("/dev/none"), byId.path()),
                 QStringLiteral("/dev/none"));
    }

    void openRefused_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("says"); // parts of the reason; %user: who opens
        const QStringList busy{"cannot be opened: another program holds it", "Close that program"};
        const QStringList denied{"cannot be opened: the user %user may not open it",
                                 "sudo adduser %user dialout", "log out and in again"};
        row("absent", "absent", QStringList{"cannot be opened: there is no such device"});
        row("busy: another port holds it", "locked", busy);
        row("busy: another process's exclusive open", "exclusive", busy);
        row("no permission: the group dialout may", "group",
            denied + QStringList{"The group dialout may open it"});
        row("no permission: no group may", "private",
            denied + QStringList{"lets no group open it", "------- "});
    }
    // The device is named through the settings, by a link as udev's by-id links are.
    void openRefused() {
        QFETCH(QString, kind);
        QFETCH(QStringList, says);
        OPEN_PTY(pty);
        QTemporaryDir dir; // the operator may look into it
        QVERIFY(::chmod(QFile::encodeName(dir.path()).constData(), 0711) == 0);
        const QByteArray slave = QFile::encodeName(pty.slavePath());
        const QString path = kind == u"absent"
                                 ? QStringLiteral("/dev/serial/by-id/dnc-test-no-such-port")
                                 : dir.filePath(QStringLiteral("com3"));
        QVERIFY(kind == u"absent" || QFile::link(pty.slavePath(), path));
        const bool root = ::geteuid() == 0;
        const group *dialout = ::getgrnam("dialout");
        if (kind == u"group" && (!root || !dialout))
            QSKIP("giving a device to the group dialout needs root and that group");

        SerialComm holder(pty.slavePath());
        std::optional<ExclusiveHolder> exclusive;
        if (kind == u"locked" || kind == u"exclusive") // only the other's hold stands in the way
            QVERIFY(::chmod(slave, 0666) == 0);
        if (kind == u"locked")
            holder.setPortOpen(true);
        if (kind == u"exclusive")
            QVERIFY2(exclusive.emplace(pty.slavePath()).holding(), "the other could not take it");
        if (kind == u"group")
            QVERIFY(::chown(slave, 0, dialout->gr_gid) == 0 && ::chmod(slave, 0660) == 0);
        if (kind == u"private")
            QVERIFY(::chmod(slave, root ? 0600 : 0) == 0);

        SerialComm comm;
        comm.setConfiguredDevices([&](int port) { return port == 3 ? path : QString(); });
        comm.setCommPort(3);
        std::optional<CommError> e;
        QString user;
        {
            // Root opens what the operator may not, and past another's exclusive open.
            const Unprivileged operatorRights;
            if (!operatorRights.why().isEmpty())
                QSKIP(qPrintable("cannot open as an operator: " + operatorRights.why()));
            user = operatorRights.user();
            e = thrown([&] { comm.setPortOpen(true); });
        }
        QVERIFY(e && !comm.portOpen());
        QCOMPARE(e->device, QStringLiteral("COM3: (%1)").arg(path));
        for (QString part : says)
            QVERIFY2(e->reason.contains(part.replace(QStringLiteral("%user"), user)),
                     qPrintable(e->reason));
        comm.setPortOpen(false); // closing a port that never opened is no error
    }

    // A cable pulled out while Output waits for room: it throws at once, naming the device and
    // why. (Pulled while a wait polls: tests/faults.)
    void farEndGone() {
        OPEN_PTY(pty);
        SerialComm comm(pty.slavePath());
        comm.setPortOpen(true);
        QTimer::singleShot(100, this, [&] { pty.closeMaster(); });
        QElapsedTimer clock;
        clock.start();
        // Minutes of work at 9600 baud.
        const auto fault = thrown([&] { comm.output(QByteArray(256 * 1024, 'N')); });
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
