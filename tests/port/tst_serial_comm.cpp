// The port through the real QSerialPort on a pseudo-terminal; the test plays the far end.
#include "event_loop_yield.h"
#include "pty_pair.h"
#include "qt_link_timer.h"
#include "rows.h"
#include "serial_comm.h"
#include "serial_devices.h"

#include <QtTest>
#include <optional>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <typename F> std::optional<CommError> thrown(F f) {
    try {
        f();
    } catch (const CommError &e) {
        return e;
    }
    return std::nullopt;
}

// While alive, a test run by root opens files with the rights of the user nobody, so that it
// meets what an operator meets. Others keep their own rights.
class Unprivileged {
public:
    Unprivileged() {
        const passwd *me = ::getpwuid(::geteuid()), *nobody = ::getpwnam("nobody");
        m_user = me ? QString::fromLocal8Bit(me->pw_name) : QString();
        if (!m_root)
            return;
        m_groups.resize(::getgroups(0, nullptr));
        ::getgroups(int(m_groups.size()), m_groups.data());
        if (!nobody || ::setgroups(0, nullptr) != 0 || ::setegid(nobody->pw_gid) != 0 ||
            ::seteuid(nobody->pw_uid) != 0)
            m_why = nobody ? QString::fromLocal8Bit(std::strerror(errno)) : "no user nobody";
        else
            m_user = QString::fromLocal8Bit(nobody->pw_name);
    }
    ~Unprivileged() {
        if (!m_root)
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
    const bool m_root = ::geteuid() == 0;
    std::vector<gid_t> m_groups;
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

} // namespace

class TstSerialComm : public QObject {
    Q_OBJECT
    std::optional<PtyPair> m_pty; // a fresh far end for each test
    PtyPair &pty() { return *m_pty; }

private slots:
    void init() {
        m_pty.emplace();
        QVERIFY2(pty().isOpen(), qPrintable(pty().error()));
    }

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

    // Lines longer than what may be in flight: Output waits for room, never more than the
    // bound is in flight, and a CC written and closed at once, held up by the line, goes too.
    void nothingLost() {
        SerialComm comm(pty().slavePath());
        comm.setSettings(QStringLiteral("4000000,N,8,1"));
        comm.setPortOpen(true);
        QByteArray data;
        for (int i = 0; data.size() < 256 * 1024; ++i)
            data += char((i * 7 + i / 251) & 0xff);
        QByteArray got;
        int most = 0; // in flight as the program sees it, also while Output waits
        QTimer farEnd;
        connect(&farEnd, &QTimer::timeout, this, [&] {
            most = qMax(most, comm.outBufferCount());
            got += pty().receive(65536, 0);
        });
        farEnd.start(1);
        for (qsizetype at = 0; at < data.size(); at += 2000)
            comm.output(data.mid(at, 2000));
        farEnd.stop();
        pty().setSlaveOutputStopped(true);
        comm.output("CC");
        QTimer::singleShot(50, this, [&] { pty().setSlaveOutputStopped(false); });
        comm.setPortOpen(false);
        got += pty().receiveCount(int(data.size() + 2 - got.size()), 3000);
        QVERIFY(got == data + "CC");
        QVERIFY2(most <= SerialComm::MaxInFlight, qPrintable(QString::number(most)));
    }

    // What reached the driver after the event loop last looked is counted, and Input hands it
    // over with what came before: the 7 of a go-ahead whose DLE was fetched already.
    void countsWhatWaitsInTheDriver() {
        SerialComm comm(pty().slavePath());
        comm.setPortOpen(true);
        QVERIFY(pty().send(Dle));
        QTRY_COMPARE(comm.inBufferCount(), 1);
        QVERIFY(pty().send("7"));
        QVERIFY(waitingInDriver(pty(), 1));
        QCOMPARE(comm.inBufferCount(), 2);
        QCOMPARE(comm.input(), Go);
        QCOMPARE(comm.inBufferCount(), 0);
        comm.setPortOpen(false);
    }

    void whenAPassSleeps_data() {
        QTest::addColumn<bool>("inWait"); // the wait's clock runs, and a line has just gone out
        row("nothing done since a pass that found nothing", false);
        // All a wait waits for comes as an event, even right after a line went out.
        row("in a wait, after Output", true);
    }
    // A pass with nothing ready sleeps until an event: neither a wait nor an idle loop spins.
    // (That it does not sleep with work to do, the sends in tests/transfer and tests/faults
    // show: they would slow down or time out.)
    void whenAPassSleeps() {
        QFETCH(bool, inWait);
        Globals g;
        QtLinkTimer clock(g);
        SerialComm comm(pty().slavePath());
        comm.setSettings(QStringLiteral("115200,N,8,1"));
        EventLoopYield yield(comm, clock);
        comm.setPortOpen(true);
        QCoreApplication::processEvents(); // what earlier tests left
        yield.DoEvents();                  // finds nothing
        clock.setEnabled(inWait);
        if (inWait)
            comm.output("N1\r");
        bool woken = false; // by the watchdog: the pass slept
        QObject watchdog;
        QTimer::singleShot(1000, &watchdog, [&] { woken = true; });
        yield.DoEvents();
        QVERIFY(woken);
        clock.setEnabled(false);
        comm.setPortOpen(false);
    }

    // 7,E and DTR, which a pseudo-terminal refuses, are no error; what waited at the port before
    // an opening is dropped; the trace records each opening, byte and closing.
    void session() {
        QTemporaryDir dir;
        const QString trace = dir.filePath(QStringLiteral("trace.log"));
        qputenv("DNC_TRACE", trace.toLocal8Bit());
        SerialComm comm(pty().slavePath());
        comm.setSettings(QStringLiteral("9600,E,7,2"));
        comm.setDTREnable(true);
        for (int i = 0; i < 2; ++i) { // before the first opening, then between two
            QVERIFY(pty().send("late answer"));
            QTRY_COMPARE(pty().waitingAtSlave(), 11);
            comm.setPortOpen(true);
            comm.output("R\r");
            QCOMPARE(pty().receiveCount(2, 2000), QByteArray("R\r"));
            QVERIFY(pty().send(Go));
            QTRY_COMPARE(comm.inBufferCount(), 2);
            QCOMPARE(comm.input(), Go);
            comm.setPortOpen(false);
        }
        comm.setDevice(QStringLiteral("/dev/dnc-test-no-such-port"));
        QVERIFY(thrown([&] { comm.setPortOpen(true); }));
        qunsetenv("DNC_TRACE");
        QFile f(trace);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(f.readAll());
        const QString at = QStringLiteral(R"(.*^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )");
        const QString dev = "COM1: \\(" + QRegularExpression::escape(pty().slavePath()) + "\\)";
        const QString one = at + "OPEN " + dev + " 9600,E,7,2" + at + R"(TX 52 0d  \|R\.\|$)" + at +
                            R"(RX 10 37  \|\.7\|$)" + at + "CLOSE " + dev;
        const QRegularExpression rx(one + one + at + "OPEN FAILED COM1: .*no such device",
                                    QRegularExpression::MultilineOption |
                                        QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(rx.match(text).hasMatch(), qPrintable(text));
    }

    // udev's by-id links are the stable names; a device without one keeps its own.
    void stablePath() {
        PtyPair other;
        QTemporaryDir byId;
        const QString link = byId.filePath(QStringLiteral("usb-FTDI_FT232R_A5-if00-port0"));
        QVERIFY(QFile::link(pty().slavePath(), link));
        QVERIFY(QFile::link(QStringLiteral("/nonexistent"), byId.filePath(QStringLiteral("a"))));
        QCOMPARE(stablePathOf(pty().slavePath(), byId.path()), link);
        QCOMPARE(stablePathOf(other.slavePath(), byId.path()), other.slavePath());
        QCOMPARE(stablePathOf(QStringLiteral("/dev/none"), byId.path()),
                 QStringLiteral("/dev/none")); // gone: not the dangling link
    }

    void openRefused_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("says"); // parts of the reason; %user: who opens
        const QString denied = QStringLiteral("cannot be opened: the user %user may not open it");
        row("busy: another port holds it", "locked",
            QStringList{"cannot be opened: another program holds it", "Close that program"});
        row("no permission: the group dialout may", "group",
            QStringList{denied, "The group dialout may open it", "sudo adduser %user dialout"});
        row("no permission: no group may", "private",
            QStringList{denied, "sudo adduser %user dialout", "lets no group open it"});
    }
    // The device is named through the settings, by a link as udev's by-id links are.
    void openRefused() {
        QFETCH(QString, kind);
        QFETCH(QStringList, says);
        QTemporaryDir dir; // the operator may look into it
        QVERIFY(::chmod(QFile::encodeName(dir.path()).constData(), 0711) == 0);
        const QByteArray slave = QFile::encodeName(pty().slavePath());
        const QString path = dir.filePath(QStringLiteral("com3"));
        QVERIFY(QFile::link(pty().slavePath(), path));
        const bool root = ::geteuid() == 0;
        const group *dialout = ::getgrnam("dialout");
        SerialComm holder(pty().slavePath());
        if (kind == u"locked") { // only the other's hold stands in the way
            QVERIFY(::chmod(slave, 0666) == 0);
            holder.setPortOpen(true);
        }
        if (kind == u"group" && (!root || !dialout))
            QSKIP("giving a device to the group dialout needs root and that group");
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
            // Root opens what the operator may not.
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
};

QTEST_GUILESS_MAIN(TstSerialComm)
#include "tst_serial_comm.moc"
