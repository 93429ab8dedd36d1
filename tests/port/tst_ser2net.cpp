// The operations through a device server the project does not write: Debian's ser2net on
// loopback in front of the virtual control's pseudo-terminal, over raw TCP and over RFC 2217,
// set up as the README tells a shop to set up its box.
#include "files.h"
#include "net_link.h"
#include "rows.h"
#include "ser2net_process.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QProcess>
#include <QtTest>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {

const QStringList Schemes{QStringLiteral("tcp"), QStringLiteral("rfc2217")};

B everyByte() {
    B all;
    for (int i = 0; i < 256; ++i)
        all += char(i);
    return all;
}

// A row for each carrier, named by it; the rows of other tables begin with its name.
void carrierRows() {
    QTest::addColumn<QString>("carrier");
    for (const QString &s : Schemes)
        QTest::newRow(qPrintable(s)) << s;
}

// The carrier of a row's name: "rfc2217, ..." or "tcp, ...".
bool rfc2217Row() {
    return QByteArray(QTest::currentDataTag()).startsWith("rfc2217");
}

struct Served {
    VControlProcess vc;
    Ser2netProcess box;
    QTemporaryDir store;

    bool start(const QStringList &control, Ser2netProcess::Options o = {}) {
        o.rfc2217 = rfc2217Row();
        if (!vc.start(control + QStringList{"--dir", store.path()})) {
            qWarning("%s", qPrintable(vc.errorString()));
            return false;
        }
        if (!box.start(vc.device(), o)) {
            qWarning("%s", qPrintable(box.errorString()));
            return false;
        }
        return true;
    }
};

} // namespace

class TstSer2net : public QObject {
    Q_OBJECT
private slots:
    // Each control type, each way it offers, exact bytes at the control and in the file.
    void transfer_data() {
        QTest::addColumn<QStringList>("control");
        QTest::addColumn<QString>("operation"); // send, receive
        QTest::addColumn<B>("content");         // the file sent, or the program the control holds
        QTest::addColumn<B>("arrived");         // at the control; for a reception its start
        QTest::addColumn<B>("saved");           // the file received
        const B all = everyByte(), lines = all.left(13) + "\r" + all.mid(14) + "\r";
        const B program = numberedLines(3, "\r") + B(all).remove(4, 1) + "\r";
        const B saved = B(program).replace("\r", "\r\n") + "\r\n";
        for (const QString &s : Schemes) {
            const QByteArray k = s.toLatin1();
            row(k + ", 303 send", QStringList{"--type", "303"}, QStringLiteral("send"), all,
                "R\r" + lines + Eot, B());
            row(k + ", 504 send", QStringList{"--type", "504"}, QStringLiteral("send"), all,
                "R\r" + lines + Eot, B());
            row(k + ", XonXoff send", QStringList{"--type", "XonXoff", "--end-gap", "200"},
                QStringLiteral("send"), all, Xon + lines, B());
            row(k + ", 303 receive", QStringList{"--type", "303", "--pc-program", "P.NC"},
                QStringLiteral("receive"), program, "PC\r" + Go.repeated(5), saved);
            row(k + ", 504 receive", QStringList{"--type", "504"}, QStringLiteral("receive"),
                program, "MC,/ISO\r" + Go, saved);
        }
    }
    void transfer() {
        if (!Ser2netProcess::required())
            return;
        QFETCH(QStringList, control);
        QFETCH(QString, operation);
        QFETCH(B, content);
        QFETCH(B, arrived);
        Served s;
        const QString path = s.store.filePath(operation == u"send" ? "S.tap" : "P.NC");
        QVERIFY(writeFile(path, content));
        QVERIFY(s.start(control));
        const qint16 type = control[1] == u"303"   ? Cnc303
                            : control[1] == u"504" ? Cnc504
                                                   : CncXonXoff;
        NetLink r(s.box.name(), type);
        const QString target = s.store.filePath(QStringLiteral("GOT.tap"));
        r.screen.saveAnswers << target;
        r.screen.pick = 0;
        if (operation == u"send")
            SendData(r.link, path);
        else
            ReceiveFile(r.link);
        QCOMPARE(leftOver(r), QString());
        QVERIFY2(r.screen.boxes.isEmpty(),
                 r.screen.boxes.isEmpty() ? "" : qPrintable(r.screen.boxes.first().text));
        QCOMPARE(outcomeWord(r.link.outcome.kind), QStringLiteral("done"));
        if (operation == u"receive") {
            QVERIFY(s.vc.rxSettled(arrived.size()).startsWith(arrived));
            QTEST(readFile(target), "saved");
        } else {
            QCOMPARE(s.vc.rxSettled(arrived.size()), arrived);
        }
    }

    // What the pseudo-terminal is set to while the port is open over RFC 2217: the baud rate and
    // the stop bits. A pseudo-terminal keeps 8 data bits without parity whatever it is told, so
    // those two are checked in the server's answers, which the opening compares with what it
    // asked (a wrong answer fails it).
    void lineSettings_data() {
        QTest::addColumn<QString>("settings");
        QTest::addColumn<int>("speed");
        QTest::addColumn<bool>("twoStop");
        row("rfc2217, 9600,N,8,2", QStringLiteral("9600,N,8,2"), int(B9600), true);
        row("rfc2217, 19200,E,7,1", QStringLiteral("19200,E,7,1"), int(B19200), false);
        row("rfc2217, 115200,O,8,2", QStringLiteral("115200,O,8,2"), int(B115200), true);
    }
    void lineSettings() {
        if (!Ser2netProcess::required())
            return;
        Served s;
        QVERIFY(s.start({"--type", "303"}, Ser2netProcess::Options{true, "38400n81"}));
        QFETCH(QString, settings);
        NetComm comm;
        comm.setTarget(*parseNetDevice(s.box.name()), QStringLiteral("COM1:"));
        comm.setSettings(settings);
        comm.setDTREnable(true);
        comm.setPortOpen(true);
        const int fd =
            ::open(QFile::encodeName(s.vc.device()).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        QVERIFY(fd >= 0);
        termios t{};
        const bool read = ::tcgetattr(fd, &t) == 0;
        ::close(fd);
        comm.setPortOpen(false);
        QVERIFY(read);
        QTEST(int(cfgetospeed(&t)), "speed");
        QTEST(bool(t.c_cflag & CSTOPB), "twoStop");
    }

    // A box switched off in a send or a reception: the message of a device that vanished, the
    // port closed, a reception offered for saving; no hang.
    void stopped_data() {
        QTest::addColumn<QString>("operation");
        for (const QString &s : Schemes) {
            row(s.toLatin1() + ", box stopped mid-send", QStringLiteral("send"));
            row(s.toLatin1() + ", box stopped mid-reception", QStringLiteral("receive"));
        }
    }
    void stopped() {
        if (!Ser2netProcess::required())
            return;
        QFETCH(QString, operation);
        Served s;
        const B lines = numberedLines(400, "\r");
        QVERIFY(writeFile(s.store.filePath(QStringLiteral("P.NC")), lines));
        QVERIFY(s.start({"--type", "303", "--pc-program", "P.NC", "--baud", "9600"}));
        const QString name = s.box.name();
        // A slow clock (the answer's wait 1.25 s): the box's going, not a time-out, ends it.
        NetLink r(name, Cnc303, 4);
        r.g.ComSettings = QStringLiteral("COM1:9600,N,8,1");
        const QString target = s.store.filePath(QStringLiteral("GOT.tap"));
        r.screen.saveAnswers << target;
        QTimer watch; // the box goes once the control has seen 20 lines of the dialogue
        connect(&watch, &QTimer::timeout, this, [&] {
            s.vc.refresh();
            if ((operation == u"send" ? s.vc.rx() : s.vc.tx()).count('\r') >= 20) {
                watch.stop();
                s.box.kill();
            }
        });
        watch.start(5);
        QElapsedTimer took;
        took.start();
        if (operation == u"receive")
            ReceiveFile(r.link);
        else
            SendData(r.link, s.store.filePath(QStringLiteral("P.NC")));
        QVERIFY2(took.elapsed() < 5000, qPrintable(QString::number(took.elapsed())));
        const RecordingScreen::Box box = r.screen.takeBox();
        QVERIFY2(box.text.contains(QStringLiteral("The port COM1: (%1) ").arg(name)) &&
                     box.text.contains(QStringLiteral("the device is gone")),
                 qPrintable(box.text + " / ended: " + outcomeWord(r.link.outcome.kind) + ", " +
                            r.link.outcome.reason));
        QCOMPARE(outcomeWord(r.link.outcome.kind), QStringLiteral("port failure"));
        QCOMPARE(leftOver(r), QString());
        if (operation == u"receive") { // what came is offered, and it is what the control sent
            QCOMPARE(r.screen.saveRequests.size(), 1);
            const B got = readFile(target);
            QVERIFY2(got.count('\n') >= 10 &&
                         B(lines).replace("\r", "\r\n").startsWith(got.left(got.size() - 2)),
                     got.right(40).constData());
        } else { // whole lines in order, as far as they came
            const B got = s.vc.rx();
            QVERIFY2(("R\r" + lines).startsWith(got) && got.count('\r') >= 20,
                     got.right(40).constData());
        }
    }

    // After the control's X-off, what still reaches it stays within what the program lets be in
    // flight and the line in progress, the device server and the network in between.
    void xoffBound_data() { carrierRows(); }
    void xoffBound() {
        if (!Ser2netProcess::required())
            return;
        B file;
        int longest = 0;
        for (int i = 1; file.size() < 60000; ++i) {
            const B line = "N" + B::number(i) + " G01 X" + B::number(i % 977) + ".125 Y-" +
                           B::number(i % 313) + ".5" + B(i % 37, 'Z') + "\r\n";
            longest = qMax(longest, int(line.size()) - 1);
            file += line;
        }
        Served s;
        const QString path = s.store.filePath(QStringLiteral("X.LCC"));
        QVERIFY(writeFile(path, file));
        Ser2netProcess::Options o;
        o.line = QStringLiteral("230400n81");
        QVERIFY(s.start({"--type", "XonXoff", "--buffer", "4096", "--xoff-at", "3072", "--xon-at",
                         "1024", "--rate", "15000", "--baud", "230400", "--end-gap", "300",
                         "--realtime"},
                        o));
        NetLink r(s.box.name(), CncXonXoff, 1);
        r.g.ComSettings = QStringLiteral("COM1:230400,N,8,1");
        SendData(r.link, path);
        QCOMPARE(leftOver(r), QString());
        QVERIFY2(r.screen.boxes.isEmpty(),
                 r.screen.boxes.isEmpty() ? "" : qPrintable(r.screen.boxes.first().text));
        QVERIFY(s.vc.waitForEvent(QStringLiteral("STORED"), 1, 20000));
        const QStringList stored = QDir(s.store.path()).entryList({"PROG*"}, QDir::Files);
        QCOMPARE(stored.size(), 1);
        const B got = readFile(s.store.filePath(stored[0]));
        QVERIFY(got == B(file).replace("\r\n", "\r"));
        int most = 0;
        const QStringList holds = s.vc.eventTexts(QStringLiteral("XON"));
        for (const QString &xon : holds)
            most = qMax(most, xon.section(' ', 0, 0).toInt());
        qInfo("%s: %lld X-offs, most characters after one %d (bound %d)", QTest::currentDataTag(),
              qint64(holds.size()), most, 512 + longest);
        QVERIFY(holds.size() >= 3);
        QVERIFY2(most <= 512 + longest, qPrintable(QString::number(most)));
    }

    // A send keeps up with the line through the box: a go-ahead whose "7" the box holds until
    // its DLE is acknowledged (Nagle's algorithm) would cost a delayed acknowledgement, some
    // 40 ms, on each line, ten times what the line needs.
    void lineSpeed_data() { carrierRows(); }
    void lineSpeed() {
        if (!Ser2netProcess::required())
            return;
        const int baud = 115200;
        Served s;
        QVERIFY(s.start({"--type", "303", "--baud", QString::number(baud), "--realtime"}));
        const QString path = s.store.filePath(QStringLiteral("P.tap"));
        B file;
        for (int i = 1; i <= 300; ++i)
            file += "N" + B::number(i) + " G01 X12.345 Y-67.890 F300\r\n";
        QVERIFY(writeFile(path, file));
        NetLink r(s.box.name(), Cnc303);
        r.g.ComSettings = QStringLiteral("COM1:%1,N,8,1").arg(baud);
        const double lineMs = double(file.size() + file.count('\n')) * 10000 / baud;
        QElapsedTimer took;
        took.start();
        SendData(r.link, path);
        QVERIFY(r.screen.boxes.isEmpty());
        QVERIFY2(
            took.elapsed() <= 1.5 * lineMs + 300,
            qPrintable(
                QStringLiteral("%1 ms, the line needs %2 ms").arg(took.elapsed()).arg(lineMs)));
    }

    // dncctl pointed at a device server by --port: the control's list through the box.
    void dncctl_data() { carrierRows(); }
    void dncctl() {
        if (!Ser2netProcess::required())
            return;
        Served s;
        QVERIFY(writeFile(s.store.filePath(QStringLiteral("A1.NC")), "A\r") &&
                writeFile(s.store.filePath(QStringLiteral("B2.NC")), "B\r"));
        QVERIFY(s.start({"--type", "303"}));
        QTemporaryDir home;
        QProcess ctl;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
        ctl.setProcessEnvironment(env);
        ctl.start(QStringLiteral(DNCCTL_PATH),
                  {"--port", s.box.name(), "--baud", "115200", "--parity", "N", "--data", "8",
                   "--stop", "1", "--cnc", "303", "--quiet", "list"});
        QVERIFY(ctl.waitForFinished(30000));
        QVERIFY2(ctl.exitCode() == 0, ctl.readAllStandardError().constData());
        QCOMPARE(ctl.readAllStandardOutput(), QByteArray("A1.NC\nB2.NC\n"));
    }
};

QTEST_GUILESS_MAIN(TstSer2net)
#include "tst_ser2net.moc"
