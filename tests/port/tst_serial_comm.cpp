// The port through the real QSerialPort on a pseudo-terminal; the test plays the far end. And
// the device a port stands for in the parts every front end builds.
#include "files.h"
#include "open_failure.h"
#include "pty_pair.h"
#include "real_link_parts.h"
#include "rows.h"
#include "serial_comm.h"
#include "serial_devices.h"

#include <QtTest>
#include <optional>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

class TstSerialComm : public QObject {
    Q_OBJECT
    std::optional<PtyPair> m_pty; // a fresh far end for each test
    PtyPair &pty() { return *m_pty; }

private slots:
    void init() {
        m_pty.emplace();
        QVERIFY2(pty().isOpen(), "no pseudo-terminal");
    }

    void settings_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<int>>("values"); // baud, parity (2 E, 3 O), data, stop, bits
        QTest::addColumn<QString>("why");       // a word of the refusal; empty: accepted
        const auto row = [](const char *text, QList<int> values, const char *why) {
            QTest::newRow(text) << QString(text) << values << QString(why);
        };
        row("9600,E,7,2", {9600, 2, 7, 2, 11}, "");
        row(" 300 , o , 5 , 1 ", {300, 3, 5, 1, 8}, "");
        row("19200,N,8,1", {19200, 0, 8, 1, 10}, "");
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
        std::optional<CommError> e;
        try {
            comm.setSettings(text);
        } catch (const CommError &c) {
            e = c;
        }
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

    // The device COM1: stands for in the parts every front end builds: a device given to them,
    // else DNC_COM1, else the choice of the setup dialog in [Ports], read at each opening.
    void deviceOfPort_data() {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("environment"); // DNC_COM1
        QTest::addColumn<QString>("ports");       // COM1 in [Ports]
        QTest::addColumn<QString>("opened");
        const QString usb = QStringLiteral("/dev/serial/by-id/usb-FTDI-port0");
        row("[Ports]", QString(), QString(), usb, usb);
        row("nothing chosen", QString(), QString(), QString(), QStringLiteral("/dev/ttyS0"));
        row("DNC_COM1 before [Ports]", QString(), QStringLiteral("/dev/ttyUSB7"), usb,
            QStringLiteral("/dev/ttyUSB7"));
        row("a device given before both", QStringLiteral("/dev/pts/9"),
            QStringLiteral("/dev/ttyUSB7"), usb, QStringLiteral("/dev/pts/9"));
    }
    void deviceOfPort() {
        QFETCH(QString, given);
        QFETCH(QString, environment);
        QFETCH(QString, ports);
        QTemporaryDir dir;
        Globals g;
        g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        OperationState state;
        RealLinkParts parts(g, state, given);
        // Chosen after the parts were made, as in the setup dialog between two operations.
        QVERIFY(writeFile(g.iniPath, "[Ports]\nCOM1=" + ports.toUtf8() + "\n"));
        if (environment.isEmpty())
            qunsetenv("DNC_COM1");
        else
            qputenv("DNC_COM1", environment.toUtf8());
        parts.comm.setCommPort(1);
        const QString opened = parts.comm.devicePath();
        qunsetenv("DNC_COM1");
        QTEST(opened, "opened");
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
        const QDeadlineTimer limit(3000);
        while (pty().waitingAtSlave() < 1 && !limit.hasExpired())
            QThread::msleep(1); // not the event loop: it would fetch the 7
        QCOMPARE(comm.inBufferCount(), 2);
        QCOMPARE(comm.input(), Go);
        QCOMPARE(comm.inBufferCount(), 0);
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
        qunsetenv("DNC_TRACE");
        QFile f(trace);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(f.readAll());
        const QString one = QStringLiteral(R"(\d\d:\d\d:\d\d\.\d{3} OPEN COM1: \(%1\) 9600,E,7,2.*)"
                                           R"(TX 52 0d  \|R\.\|\n.*RX 10 37  \|\.7\|\n.*CLOSE )")
                                .arg(QRegularExpression::escape(pty().slavePath()));
        const QRegularExpression rx(one, QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(rx.match(text).hasMatch(), qPrintable(text));
    }

    // The kernel raises DTR and RTS at each opening: right behind it the port sets them on the
    // device it opened, DTR as enabled and RTS down. A pseudo-terminal refuses both and opens.
    void modemLines() {
        struct stat device {};
        QCOMPARE(::stat(QFile::encodeName(pty().slavePath()).constData(), &device), 0);
        QList<QList<bool>> set; // on the device opened, DTR, RTS
        SerialComm comm(pty().slavePath());
        comm.setModemLineSetter([&](int fd, bool dtr, bool rts) {
            struct stat st {};
            set << QList<bool>{::fstat(fd, &st) == 0 && st.st_rdev == device.st_rdev, dtr, rts};
            return SerialComm::setModemLines(fd, dtr, rts);
        });
        comm.setPortOpen(true);
        QCOMPARE(set, (QList<QList<bool>>{{true, false, false}}));
        comm.setDTREnable(true);
        comm.setPortOpen(false);
        comm.setPortOpen(true);
        comm.output("R\r");
        QCOMPARE(pty().receiveCount(2, 2000), QByteArray("R\r"));
        comm.setPortOpen(false);
        QCOMPARE(set, (QList<QList<bool>>{
                          {true, false, false}, {true, true, false}, {true, true, false}}));
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
        QTest::addColumn<int>("error");        // the system's words that QSerialPort passes on
        QTest::addColumn<QStringList>("says"); // parts of the reason; %user: who opens
        row("busy: another program holds it", EBUSY,
            QStringList{"another program holds it", "Close that program"});
        row("no permission", EACCES,
            QStringList{"the user %user may not open it", "sudo adduser %user dialout",
                        "lets no group open it"});
    }
    // A device another program holds: the operator is told which, to close it.
    void openRefusedHolderNamed() {
        QProcess holder;
        holder.start("/bin/sh", {"-c", "exec 3<>\"$0\"; exec sleep 30", pty().slavePath()});
        QVERIFY(holder.waitForStarted());
        QTRY_VERIFY(QFileInfo(QStringLiteral("/proc/%1/exe").arg(holder.processId()))
                        .symLinkTarget()
                        .endsWith("sleep"));
        const QString reason = openFailureReason({QSerialPort::PermissionError,
                                                  QString::fromLocal8Bit(std::strerror(EBUSY)),
                                                  pty().slavePath(), QStringLiteral("COM1:")},
                                                 {});
        QVERIFY2(
            reason.contains(QStringLiteral("sleep (process %1) holds it").arg(holder.processId())),
            qPrintable(reason));
        holder.kill();
        holder.waitForFinished();
    }

    // Qt says "permission" both for a device another program holds and for one this user may
    // not open: the reason tells them apart, and says what to do.
    void openRefused() {
        QFETCH(int, error);
        QFETCH(QStringList, says);
        QTemporaryFile device; // no group may open it
        QVERIFY(device.open());
        const QString reason = openFailureReason({QSerialPort::PermissionError,
                                                  QString::fromLocal8Bit(std::strerror(error)),
                                                  device.fileName(), QStringLiteral("COM3:")},
                                                 {});
        for (QString part : says)
            QVERIFY2(reason.contains(part.replace("%user", ::getpwuid(::geteuid())->pw_name)),
                     qPrintable(reason));
    }
};

QTEST_GUILESS_MAIN(TstSerialComm)
#include "tst_serial_comm.moc"
