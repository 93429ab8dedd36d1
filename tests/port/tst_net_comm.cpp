// The port on a device server against small scripted servers on loopback: what goes each way,
// the bound on what is in flight, and the faults a network adds, at the opening and later.
#include "files.h"
#include "net_comm.h"
#include "real_link_parts.h"
#include "rows.h"
#include "telnet_layer.h"

#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>
#include <memory>
#include <optional>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// How a scripted RFC 2217 server answers the line settings asked of it.
enum class Answer { AsAsked, Refuse, Baud9600, ParityNone, Silent, Garbage, Hangup, Raw };

B answerTo(const B &request, Answer how) {
    using namespace Telnet;
    B out;
    for (qsizetype at = 0; (at = request.indexOf(B("\xff\xfa\x2c"), at)) >= 0; at += 3) {
        const int cmd = uchar(request[at + 3]);
        const qsizetype end = request.indexOf(B("\xff\xf0"), at);
        B value = request.mid(at + 4, end - at - 4);
        if (cmd == SetControl)
            continue; // as servers on a pseudo-terminal do: the modem lines are never answered
        if (how == Answer::Baud9600 && cmd == SetBaudRate)
            value = B::fromHex("00002580");
        if (how == Answer::ParityNone && cmd == SetParity)
            value = B(1, 1);
        out += TelnetLayer::comPortRequest(cmd + ServerOffset, value);
    }
    return B::fromHex("fffd2cfffb00fffd00") + out;
}

// Accepts one connection; what it read is `got`; the first read is answered as `how` says.
class ScriptedServer : public QObject {
    QTcpServer m_server; // first: the connection it parents goes before it

public:
    explicit ScriptedServer(Answer how = Answer::AsAsked) : m_how(how) {
        QVERIFY(m_server.listen(QHostAddress::LocalHost));
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            peer.reset(m_server.nextPendingConnection());
            connect(peer.get(), &QTcpSocket::readyRead, this, [this] { read(); });
        });
    }
    QString name(const char *scheme) const {
        return QStringLiteral("%1://127.0.0.1:%2").arg(scheme).arg(m_server.serverPort());
    }
    B got;
    std::unique_ptr<QTcpSocket> peer;

private:
    void read() {
        const B chunk = peer->readAll();
        const bool first = got.isEmpty();
        got += chunk;
        if (first && m_how != Answer::Raw) {
            switch (m_how) {
            case Answer::Refuse:
                peer->write(B::fromHex("fffe2c"));
                break;
            case Answer::Silent:
                break;
            case Answer::Garbage:
                peer->write(B::fromHex("fffd2cff41"));
                break;
            case Answer::Hangup:
                peer->close();
                return;
            default:
                peer->write(answerTo(chunk, m_how));
            }
        }
    }
    Answer m_how;
};

NetDevice device(const QString &name) {
    return *parseNetDevice(name);
}

} // namespace

class TstNetComm : public QObject {
    Q_OBJECT
private slots:
    void opening_data() {
        QTest::addColumn<QString>("target"); // "server" or a name of its own
        QTest::addColumn<int>("answer");     // the server's Answer
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("told"); // words of the open failure; empty: it opens
        const auto a = [](Answer x) { return int(x); };
        const QString line = QStringLiteral("115200,E,7,2");
        row("rfc2217, no answer to DTR", QStringLiteral("rfc2217"), a(Answer::AsAsked), line,
            QString());
        row("nobody listening", QStringLiteral("refused"), 0, line,
            QStringLiteral("127.0.0.1 port %1 refused the connection"));
        row("host does not answer", QStringLiteral("deaf"), 0, line,
            QStringLiteral("127.0.0.1 port %1 did not answer within 0.3 s"));
        row("name does not resolve", QStringLiteral("rfc2217://box.invalid:4001"), 0, line,
            QStringLiteral("the name box.invalid does not resolve"));
        row("com port refused", QStringLiteral("rfc2217"), a(Answer::Refuse), line,
            QStringLiteral("does not take RFC 2217 (COM port control). If it carries the line's "
                           "bytes alone, name it tcp://127.0.0.1:%1"));
        row("baud changed", QStringLiteral("rfc2217"), a(Answer::Baud9600), line,
            QStringLiteral("refused the baud rate 115200: it set 9600"));
        row("parity changed", QStringLiteral("rfc2217"), a(Answer::ParityNone), line,
            QStringLiteral("refused the parity E: it set N"));
        row("settings never answered", QStringLiteral("rfc2217"), a(Answer::Silent), line,
            QStringLiteral("did not confirm the baud rate within 0.3 s"));
        row("garbage in the opening", QStringLiteral("rfc2217"), a(Answer::Garbage), line,
            QStringLiteral("sent what is not Telnet (IAC followed by 41"));
        row("hung up in the opening", QStringLiteral("rfc2217"), a(Answer::Hangup), line,
            QStringLiteral("closed the connection while the line was set up"));
    }
    void opening() {
        QFETCH(QString, target);
        QFETCH(int, answer);
        QFETCH(QString, told);
        ScriptedServer server{Answer(answer)};
        QString name;
        int deaf = -1;
        if (target == u"tcp" || target == u"rfc2217") {
            name = server.name(qPrintable(target));
        } else if (target == u"refused") {
            QTcpServer gone;
            QVERIFY(gone.listen(QHostAddress::LocalHost));
            name = QStringLiteral("tcp://127.0.0.1:%1").arg(gone.serverPort());
        } else if (target == u"deaf") {
            // A backlog filled by a connection nobody accepts: the kernel drops the next SYNs,
            // as a host that does not answer would, without a packet leaving the machine.
            deaf = ::socket(AF_INET, SOCK_STREAM, 0);
            sockaddr_in a{};
            a.sin_family = AF_INET;
            a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            socklen_t len = sizeof a;
            QVERIFY(::bind(deaf, reinterpret_cast<sockaddr *>(&a), len) == 0 &&
                    ::listen(deaf, 0) == 0 &&
                    ::getsockname(deaf, reinterpret_cast<sockaddr *>(&a), &len) == 0);
            name = QStringLiteral("tcp://127.0.0.1:%1").arg(ntohs(a.sin_port));
            for (int i = 0; i < 2; ++i) {
                const int filler = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
                ::connect(filler, reinterpret_cast<sockaddr *>(&a), len);
            }
            QTest::qWait(50);
        } else {
            name = target;
        }
        const NetDevice d = device(name);
        if (told.contains(QLatin1String("%1")))
            told = told.arg(d.port);

        NetComm comm;
        comm.setTarget(d, QStringLiteral("COM1: (%1)").arg(name));
        comm.setOpenTimeout(300);
        QFETCH(QString, settings);
        comm.setSettings(settings);
        comm.setDTREnable(true);
        std::optional<CommError> e;
        QElapsedTimer took;
        took.start();
        try {
            comm.setPortOpen(true);
        } catch (const CommError &c) {
            e = c;
        }
        if (deaf >= 0)
            ::close(deaf);
        QVERIFY2(took.elapsed() < 2000, qPrintable(QString::number(took.elapsed())));
        if (told.isEmpty()) {
            QVERIFY2(!e, e ? qPrintable(e->reason) : "");
            QVERIFY(comm.portOpen());
            if (target == u"rfc2217") // 115200 7E2 asked as RFC 2217 says, DTR up, RTS down
                QCOMPARE(
                    server.got.toHex(' '),
                    B("ff fb 2c ff fb 00 ff fd 00 ff fa 2c 01 00 01 c2 00 ff f0 ff fa 2c 02 07 "
                      "ff f0 ff fa 2c 03 03 ff f0 ff fa 2c 04 02 ff f0 ff fa 2c 05 08 ff f0 ff fa "
                      "2c 05 "
                      "0c ff f0"));
            comm.setPortOpen(false);
            return;
        }
        QVERIFY(e);
        QCOMPARE(e->device, QStringLiteral("COM1: (%1)").arg(name));
        QVERIFY2(e->reason.contains(told), qPrintable(e->reason));
        QVERIFY(!comm.portOpen());
    }

    // Every byte value as it was, IAC doubled on the wire of RFC 2217 only (what comes in is met
    // against ser2net). A long output never has more than the bound in flight and goes at the
    // line's pace; what is written right before closing still leaves.
    void exchange_data() {
        QTest::addColumn<QString>("scheme");
        row("raw", QStringLiteral("tcp"));
        row("rfc2217", QStringLiteral("rfc2217"));
    }
    void exchange() {
        QFETCH(QString, scheme);
        const bool telnet = scheme == u"rfc2217";
        ScriptedServer server{telnet ? Answer::AsAsked : Answer::Raw};
        NetComm comm;
        comm.setTarget(device(server.name(qPrintable(scheme))), QStringLiteral("COM1:"));
        comm.setSettings(QStringLiteral("115200,N,8,1"));
        comm.setPortOpen(true);
        const qsizetype opening = server.got.size();
        QVERIFY(server.peer);

        B data; // 6144 characters: 0.53 s at 115 200 baud
        for (int i = 0; i < 6144; ++i)
            data += char(i);
        int most = 0;
        QTimer probe;
        connect(&probe, &QTimer::timeout, this, [&] { most = qMax(most, comm.outBufferCount()); });
        probe.start(1);
        QElapsedTimer took;
        took.start();
        comm.output(data);
        const qint64 queued = took.elapsed();
        probe.stop();
        comm.output("CC");
        comm.setPortOpen(false);
        const qint64 closed = took.elapsed();
        const B wire = telnet ? TelnetLayer::escape(data + "CC") : data + "CC";
        QTRY_COMPARE_WITH_TIMEOUT(server.got.size() - opening, wire.size(), 3000);
        QVERIFY(server.got.mid(opening) == wire);
        QVERIFY2(most <= NetComm::MaxInFlight && most > 0, qPrintable(QString::number(most)));
        // Output returns when the rest fits in flight; closing waits until all has left.
        const double charMs = 10000.0 / 115200;
        QVERIFY2(queued >= (data.size() - NetComm::MaxInFlight) * charMs * 0.95,
                 qPrintable(QString::number(queued)));
        QVERIFY2(closed >= (data.size() + 2) * charMs * 0.95, qPrintable(QString::number(closed)));
    }

    // Garbage in the Telnet layer in a reception: what came before it is handed over, then the
    // port fails within the bound of a wait. A connection closed mid-send or mid-reception is
    // met against ser2net itself.
    void garbageInReception() {
        ScriptedServer server;
        NetComm comm;
        comm.setTarget(device(server.name("rfc2217")), QStringLiteral("COM1:"));
        comm.setSettings(QStringLiteral("115200,N,8,1"));
        comm.setPortOpen(true);
        server.peer->write("AB" + B::fromHex("ff01") + "CD");
        QElapsedTimer took;
        took.start();
        std::optional<CommError> e;
        B in;
        try {
            while (took.elapsed() < 3000) {
                if (comm.inBufferCount() > 0)
                    in += comm.input();
                QTest::qWait(1);
            }
        } catch (const CommError &c) {
            e = c;
        }
        QVERIFY(e);
        QVERIFY2(e->reason.contains(QStringLiteral("sent what is not Telnet (IAC followed by 01")),
                 qPrintable(e->reason));
        QVERIFY2(took.elapsed() < 2000, qPrintable(QString::number(took.elapsed())));
        QCOMPARE(in, B("AB"));
        comm.setPortOpen(false);
        QVERIFY(!comm.portOpen());
    }

    // The connection closed behind part of an answer: what came is counted once, and a wait
    // that needs more than came ends on the port's failure, not on its own time-out.
    void closedMidAnswer_data() {
        QTest::addColumn<B>("sent");
        QTest::addColumn<int>("least"); // what the waiter needs before it takes anything
        row("whole answer, then closed",
            B("\x10"
              "7"),
            2);
        row("half an answer, then closed", B("\x10"), 2);
    }
    void closedMidAnswer() {
        QFETCH(B, sent);
        QFETCH(int, least);
        ScriptedServer server{Answer::Raw};
        NetComm comm;
        comm.setTarget(device(server.name("tcp")), QStringLiteral("COM1:"));
        comm.setSettings(QStringLiteral("9600,N,8,1"));
        comm.setPortOpen(true);
        QVERIFY(server.peer);
        server.peer->write(sent);
        server.peer->flush();
        server.peer->disconnectFromHost();
        QElapsedTimer took;
        took.start();
        std::optional<CommError> e;
        B in;
        int counted = 0;
        try {
            while (took.elapsed() < 3000) {
                counted = qMax(counted, comm.inBufferCount());
                if (counted >= least)
                    in += comm.input();
                QTest::qWait(1);
            }
        } catch (const CommError &c) {
            e = c;
        }
        QVERIFY2(e && e->reason.contains(QStringLiteral("closed the connection")),
                 e ? qPrintable(e->reason) : "no failure");
        QVERIFY2(took.elapsed() < 1000, qPrintable(QString::number(took.elapsed())));
        QCOMPARE(counted, sent.size());
        QCOMPARE(in, sent.size() >= least ? sent : B());
        comm.setPortOpen(false);
    }

    // A device server's name, wherever COM1:'s device is named (which place wins is
    // tst_serial_comm's), opens its port; the kind is the name's. A malformed one is refused.
    void deviceNames_data() {
        QTest::addColumn<QString>("where"); // given, environment, ports
        QTest::addColumn<QString>("scheme");
        QTest::addColumn<QString>("told"); // words of the refusal; empty: it opens
        row("given, raw", QStringLiteral("given"), QStringLiteral("tcp"), QString());
        row("environment, rfc2217", QStringLiteral("environment"), QStringLiteral("rfc2217"),
            QString());
        row("ports, rfc2217", QStringLiteral("ports"), QStringLiteral("rfc2217"), QString());
        row("ports, no TCP port", QStringLiteral("ports"), QStringLiteral("tcp://box"),
            QStringLiteral(
                "The port COM1: (tcp://box) cannot be opened: \"tcp://box\" names no TCP "
                "port"));
    }
    void deviceNames() {
        QFETCH(QString, where);
        QFETCH(QString, scheme);
        QFETCH(QString, told);
        ScriptedServer server{scheme == u"tcp" ? Answer::Raw : Answer::AsAsked};
        const QString name = scheme.contains(u':') ? scheme : server.name(qPrintable(scheme));
        QTemporaryDir dir;
        Globals g;
        g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        QVERIFY(writeFile(
            g.iniPath,
            "[Ports]\nCOM1=" + (where == u"ports" ? name : QString("/dev/ttyS7")).toUtf8() + "\n"));
        if (where == u"environment")
            qputenv("DNC_COM1", name.toUtf8());
        OperationState state;
        RealLinkParts parts(g, state, where == u"given" ? name : QString());
        parts.comm.setCommPort(1);
        parts.comm.setSettings(QStringLiteral("9600,N,8,1"));
        std::optional<CommError> e;
        try {
            parts.comm.setPortOpen(true);
        } catch (const CommError &c) {
            e = c;
        }
        qunsetenv("DNC_COM1");
        if (!told.isEmpty()) {
            QVERIFY(e);
            QVERIFY2(e->message().startsWith(told), qPrintable(e->message()));
            return;
        }
        QVERIFY2(!e, e ? qPrintable(e->reason) : "");
        QVERIFY(parts.comm.onNetwork() && parts.comm.portOpen() && server.peer);
        QCOMPARE(server.got.startsWith(TelnetLayer::opening()), scheme == u"rfc2217");
        parts.comm.output("G1\r");
        parts.comm.setPortOpen(false);
        QTRY_VERIFY(server.got.endsWith("G1\r"));
    }

    // A station on this PC that serves the box is named, and the box is left alone: a second
    // connection would take it over from the station.
    void heldByStation() {
        ScriptedServer server{Answer::Raw};
        QTemporaryDir locks;
        qputenv("DNC_LOCK_DIR", locks.path().toUtf8());
        QProcess station; // a live process other than this one
        station.start(QStringLiteral("sleep"), {QStringLiteral("30")});
        QVERIFY(station.waitForStarted());
        const qint64 pid = station.processId();
        const QString name = server.name("tcp");
        QVERIFY(writeFile(locks.filePath("dnc-station." + QString(name).replace(u'/', u'_')),
                          QByteArray::number(pid) + "\nLathe1\n"));
        Globals g;
        OperationState state;
        RealLinkParts parts(g, state, name.toUpper() + u'/'); // written another way
        std::optional<CommError> e;
        try {
            parts.comm.setPortOpen(true);
        } catch (const CommError &c) {
            e = c;
        }
        station.kill();
        station.waitForFinished();
        qunsetenv("DNC_LOCK_DIR");
        QVERIFY(e);
        QVERIFY2(e->reason.contains(
                     QStringLiteral("the station of section Lathe1 (process %1)").arg(pid)),
                 qPrintable(e->reason));
        QTest::qWait(50);
        QVERIFY(!server.peer);
    }
};

QTEST_GUILESS_MAIN(TstNetComm)
#include "tst_net_comm.moc"
