// A device server whose cable is pulled sends no reset: the connection looks alive until
// keep-alive or the bound on unacknowledged data gives up on it. The box here lives in a network
// namespace of its own, joined to the test's by a veth pair, and its end is taken down under an
// open port: what leaves the test is lost without a word, as on a pulled cable.
#include "net_comm.h"
#include "rows.h"

#include <QProcess>
#include <QtTest>
#include <atomic>
#include <optional>
#include <thread>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const char *const BoxAddress = "10.79.79.2";
constexpr quint16 BoxPort = 4001;

// Runs a command; its error output when it fails.
QString run(const QString &program, const QStringList &args) {
    QProcess p;
    p.start(program, args);
    if (!p.waitForFinished(10000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return program + QLatin1Char(' ') + args.join(QLatin1Char(' ')) + QStringLiteral(": ") +
               QString::fromLocal8Bit(p.readAllStandardError()) + p.errorString();
    return QString();
}

// Accepts connections in the box's namespace and reads what comes, until stopped.
class Box {
public:
    explicit Box(qint64 holder) {
        m_thread = std::thread([this, holder] { serve(holder); });
        while (!m_ready)
            QThread::msleep(5);
    }
    ~Box() {
        m_stop = true;
        m_thread.join();
    }
    QString error() const { return m_error; }

private:
    void serve(qint64 holder) {
        const int ns = ::open(QStringLiteral("/proc/%1/ns/net").arg(holder).toLocal8Bit(),
                              O_RDONLY | O_CLOEXEC);
        const int on = 1; // the last test's connection may still hold the port
        sockaddr_in at{};
        at.sin_family = AF_INET;
        at.sin_port = htons(BoxPort);
        ::inet_pton(AF_INET, BoxAddress, &at.sin_addr);
        // This thread alone moves into the box's namespace, before its socket is made.
        if (ns < 0 || ::setns(ns, CLONE_NEWNET) != 0 ||
            (m_fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) < 0 ||
            ::setsockopt(m_fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
            ::bind(m_fd, reinterpret_cast<sockaddr *>(&at), sizeof at) != 0 ||
            ::listen(m_fd, 1) != 0)
            m_error = QString::fromLocal8Bit(std::strerror(errno));
        if (ns >= 0)
            ::close(ns);
        m_ready = true;
        int peer = -1;
        char sink[4096];
        while (!m_stop && m_error.isEmpty()) {
            pollfd p{peer >= 0 ? peer : m_fd, POLLIN, 0};
            if (::poll(&p, 1, 50) <= 0)
                continue;
            if (peer < 0)
                peer = ::accept4(m_fd, nullptr, nullptr, SOCK_CLOEXEC);
            else if (::read(peer, sink, sizeof sink) <= 0)
                break;
        }
        if (peer >= 0)
            ::close(peer);
        ::close(m_fd);
    }

    std::thread m_thread;
    std::atomic<bool> m_ready{false}, m_stop{false};
    int m_fd = -1;
    QString m_error;
};

} // namespace

class TstNetDeadPeer : public QObject {
    Q_OBJECT
    QProcess m_holder; // keeps the box's namespace alive

    QString cable(bool plugged) {
        return run(QStringLiteral("nsenter"),
                   {QStringLiteral("-t"), QString::number(m_holder.processId()),
                    QStringLiteral("-n"), QStringLiteral("ip"), QStringLiteral("link"),
                    QStringLiteral("set"), QStringLiteral("dncbox1"),
                    plugged ? QStringLiteral("up") : QStringLiteral("down")});
    }

private slots:
    void initTestCase() {
        // Only the main thread moves, and what it starts: the machine's own network is untouched.
        if (::unshare(CLONE_NEWNET) != 0)
            QSKIP(qPrintable("a network namespace of its own needs CAP_SYS_ADMIN (root): " +
                             QString::fromLocal8Bit(std::strerror(errno))));
        m_holder.start(QStringLiteral("unshare"),
                       {QStringLiteral("-n"), QStringLiteral("sleep"), QStringLiteral("600")});
        QVERIFY(m_holder.waitForStarted());
        const QString pid = QString::number(m_holder.processId());
        QTRY_VERIFY(QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid))
                        .symLinkTarget()
                        .endsWith(QLatin1String("sleep")));
        const QString ip = QStringLiteral("ip");
        const QStringList steps[] = {
            {"link", "add", "dncbox0", "type", "veth", "peer", "name", "dncbox1"},
            {"link", "set", "dncbox1", "netns", pid},
            {"addr", "add", "10.79.79.1/24", "dev", "dncbox0"},
            {"link", "set", "dncbox0", "up"},
        };
        for (const QStringList &step : steps) {
            const QString why = run(ip, step);
            QVERIFY2(why.isEmpty(), qPrintable(why));
        }
        const QString why = run(QStringLiteral("nsenter"), {"-t", pid, "-n", "ip", "addr", "add",
                                                            "10.79.79.2/24", "dev", "dncbox1"});
        QVERIFY2(why.isEmpty(), qPrintable(why));
    }
    void cleanupTestCase() {
        m_holder.kill();
        m_holder.waitForFinished();
    }

    // The port fails as a vanished device does, within seconds, whether it waits for the
    // control with nothing in flight (keep-alive finds the peer gone) or has characters the
    // box never acknowledged (the bound on unacknowledged data).
    void cablePulled_data() {
        QTest::addColumn<bool>("sending");
        row("waiting for the control", false);
        row("in a send", true);
    }
    void cablePulled() {
        QFETCH(bool, sending);
        QVERIFY(cable(true).isEmpty());
        Box box(m_holder.processId());
        QVERIFY2(box.error().isEmpty(), qPrintable(box.error()));
        NetComm comm;
        comm.setTarget({NetDevice::Kind::Raw, QString::fromLatin1(BoxAddress), BoxPort},
                       QStringLiteral("COM1: (box)"));
        comm.setSettings(QStringLiteral("115200,N,8,1"));
        comm.setPortOpen(true);
        const QString why = cable(false);
        QVERIFY2(why.isEmpty(), qPrintable(why));

        QElapsedTimer took;
        took.start();
        std::optional<CommError> e;
        try {
            while (took.elapsed() < 30000) {
                if (sending)
                    comm.output(QByteArray(100, 'x'));
                comm.inBufferCount();
                QTest::qWait(sending ? 5 : 50);
            }
        } catch (const CommError &c) {
            e = c;
        }
        QVERIFY2(e, "the port still looked alive after 30 s");
        QVERIFY2(e->reason.contains(QStringLiteral("%1 port %2").arg(BoxAddress).arg(BoxPort)),
                 qPrintable(e->reason));
        // Keep-alive: idle, then its probes; or the bound on what stays unacknowledged.
        const qint64 bound =
            sending ? NetComm::UserTimeoutMs
                    : 1000 * (NetComm::KeepIdleS + NetComm::KeepIntervalS * NetComm::KeepCount);
        QVERIFY2(took.elapsed() < bound + 3000, qPrintable(QString::number(took.elapsed())));
        comm.setPortOpen(false);
        QVERIFY(!comm.portOpen());
    }
};

QTEST_MAIN(TstNetDeadPeer)
#include "tst_net_dead_peer.moc"
