#include "net_comm.h"

#include "wire_trace.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace {

// Time allowed beyond what the queued characters need at the line's speed.
constexpr qint64 DrainMarginMs = 1000;
// How long a closing connection may take to say goodbye before it is cut.
constexpr int GoodbyeMs = 1000;

int clamp16(qint64 n) {
    return int(std::clamp<qint64>(n, 0, 32767));
}

QByteArray bigEndian32(quint32 v) {
    const char b[] = {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
    return QByteArray(b, 4);
}

// RFC 2217's codes: parity 1 none, 2 odd, 3 even; stop size 1 one, 2 two.
char parityCode(QSerialPort::Parity p) {
    return p == QSerialPort::OddParity ? 2 : p == QSerialPort::EvenParity ? 3 : 1;
}

QString parityName(int code) {
    static const char *const names[] = {"?", "N", "O", "E", "M", "S"};
    return code >= 1 && code <= 5 ? QString::fromLatin1(names[code])
                                  : QStringLiteral("code %1").arg(code);
}

QString stopName(int code) {
    return code == 3 ? QStringLiteral("1.5") : QString::number(code);
}

} // namespace

NetComm::NetComm() {
    QObject::connect(&m_socket, &QAbstractSocket::errorOccurred, &m_socket,
                     [this](QAbstractSocket::SocketError e) { onError(e); });
    QObject::connect(&m_socket, &QIODevice::readyRead, &m_socket, [this] { acknowledgeNow(); });
}

void NetComm::acknowledgeNow() {
    // A device server that holds a second short piece until the first is acknowledged (Nagle's
    // algorithm: the "7" of a go-ahead behind its DLE) would otherwise wait for our delayed
    // acknowledgement, some 40 ms on each line. Linux forgets this after a while: set at each read.
    const int fd = int(m_socket.socketDescriptor());
    const int on = 1;
    if (fd >= 0)
        ::setsockopt(fd, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
}

NetComm::~NetComm() = default;

void NetComm::setTarget(const NetDevice &device, const QString &name) {
    m_device = device;
    m_name = name;
}

QString NetComm::where() const {
    return QStringLiteral("%1 port %2").arg(m_device.host).arg(m_device.port);
}

void NetComm::setSettings(const QString &settings) {
    try {
        m_settings = parseLineSettings(settings);
        m_settingsText = settings;
    } catch (const LineSettingsError &e) {
        throw CommError{
            m_name,
            QCoreApplication::translate("Port", "the line settings \"%1\" cannot be used: %2")
                .arg(settings, e.why),
            CommError::Stage::Opening};
    }
}

void NetComm::setDTREnable(bool on) {
    m_dtr = on;
    if (m_open && !m_failure && m_device.kind == NetDevice::Kind::Rfc2217)
        m_socket.write(TelnetLayer::comPortRequest(
            Telnet::SetControl,
            QByteArray(1, char(on ? Telnet::ControlDtrOn : Telnet::ControlDtrOff))));
}

void NetComm::setPortOpen(bool open) {
    if (open == m_open)
        return;
    if (open)
        this->open();
    else
        close();
}

bool NetComm::holdsInput() const {
    return m_open && (!m_in.isEmpty() || m_socket.bytesAvailable() > 0);
}

void NetComm::open() {
    m_trace = WireTrace::fromEnvironment();
    m_failure.reset();
    m_in.clear();
    m_leftCounted = false;
    m_telnet = TelnetLayer();
    m_emptyAt = 0;
    m_opening = true;
    const QDeadlineTimer limit(m_openTimeoutMs);
    const qint64 started = WakeAlarm::now();
    connectSocket(limit);
    m_connectedAt = WakeAlarm::now();
    tuneSocket();
    if (m_device.kind == NetDevice::Kind::Rfc2217)
        negotiate(limit);
    m_opening = false;
    m_open = true;
    // What came before the line was set up is no answer to this operation.
    m_in.clear();
    trace(QStringLiteral("OPEN %1 %2 in %3 ms")
              .arg(m_name, m_settingsText)
              .arg(double(WakeAlarm::now() - started) / 1e6, 0, 'f', 1));
}

void NetComm::openFailed(const QString &reason) {
    m_socket.abort();
    m_opening = false;
    trace(QStringLiteral("OPEN FAILED %1 %2: %3").arg(m_name, m_settingsText, reason));
    m_trace.reset();
    throw CommError{m_name, reason, CommError::Stage::Opening};
}

void NetComm::sleepUntil(const QDeadlineTimer &limit) {
    m_alarm.ringAt(WakeAlarm::now() + std::max<qint64>(limit.remainingTimeNSecs(), 0));
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void NetComm::connectSocket(const QDeadlineTimer &limit) {
    // Such names never resolve, and a name server must not be asked about them (RFC 6761).
    const QString host = m_device.host.toLower();
    if (host.endsWith(QLatin1String(".invalid")) || host == QLatin1String("invalid"))
        openFailed(QCoreApplication::translate(
                       "Port", "the name %1 does not resolve to an "
                               "address. Check the device server's name, or give its address.")
                       .arg(m_device.host));
    m_socket.abort();
    m_socket.connectToHost(m_device.host, m_device.port);
    while (m_socket.state() != QAbstractSocket::ConnectedState) {
        if (m_socket.state() == QAbstractSocket::UnconnectedState) {
            switch (m_socket.error()) {
            case QAbstractSocket::HostNotFoundError:
                openFailed(QCoreApplication::translate(
                               "Port", "the name %1 does not resolve to an "
                                       "address. Check the device server's name, or give its "
                                       "address.")
                               .arg(m_device.host));
            case QAbstractSocket::ConnectionRefusedError:
                openFailed(QCoreApplication::translate(
                               "Port", "%1 refused the connection. Nothing "
                                       "listens there: check the port number set on the "
                                       "device server, and that it is on.")
                               .arg(where()));
            default:
                openFailed(QCoreApplication::translate("Port", "the connection to %1 failed (%2)")
                               .arg(where(), m_socket.errorString()));
            }
        }
        if (limit.hasExpired())
            openFailed(QCoreApplication::translate("Port",
                                                   "%1 did not answer within %2 s. Is the "
                                                   "device server on, and its address right?")
                           .arg(where())
                           .arg(m_openTimeoutMs / 1000.0));
        if (abandoned())
            openFailed(QCoreApplication::translate("Port", "the opening was given up"));
        sleepUntil(limit);
    }
}

void NetComm::tuneSocket() {
    // A short line or a go-ahead goes out at once, not when the next one joins it.
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    // A pulled cable leaves the connection looking alive: ask early and often, and do not
    // let sent data wait for an acknowledgement for minutes.
    const int fd = int(m_socket.socketDescriptor());
    const int idle = KeepIdleS, interval = KeepIntervalS, count = KeepCount;
    const unsigned user = UserTimeoutMs;
    ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPIDLE, &idle, sizeof idle);
    ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPINTVL, &interval, sizeof interval);
    ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPCNT, &count, sizeof count);
    ::setsockopt(fd, IPPROTO_TCP, TCP_USER_TIMEOUT, &user, sizeof user);
}

void NetComm::negotiate(const QDeadlineTimer &limit) {
    using namespace Telnet;
    const QByteArray asked[] = {
        {},
        bigEndian32(quint32(m_settings.baud)),
        QByteArray(1, char(m_settings.dataBits)),
        QByteArray(1, parityCode(m_settings.parity)),
        QByteArray(1, char(m_settings.stopBits == QSerialPort::TwoStop ? 2 : 1)),
    };
    QByteArray request = TelnetLayer::opening();
    for (int c = SetBaudRate; c <= SetStopSize; ++c)
        request += TelnetLayer::comPortRequest(c, asked[c]);
    // The modem lines as on a local port: DTR as the operation set it, RTS down. Their answers
    // are not waited for: servers answer them in their own ways, some never, and a port
    // without modem lines (a pseudo-terminal) carries the data all the same.
    request += TelnetLayer::comPortRequest(
        SetControl, QByteArray(1, char(m_dtr ? ControlDtrOn : ControlDtrOff)));
    request += TelnetLayer::comPortRequest(SetControl, QByteArray(1, char(ControlRtsOff)));
    m_socket.write(request);
    m_socket.flush();

    bool settled[SetStopSize + 1] = {true, false, false, false, false};
    const auto pending = [&] {
        for (int c = SetBaudRate; c <= SetStopSize; ++c)
            if (!settled[c])
                return c;
        return 0;
    };
    static const char *const what[] = {"", "baud rate", "data bits", "parity", "stop bits"};
    for (;;) {
        pull();
        if (m_telnet.comPortRefused())
            openFailed(QCoreApplication::translate(
                           "Port", "%1 does not take RFC 2217 (COM port "
                                   "control). If it carries the line's bytes alone, name it "
                                   "tcp://%2:%3.")
                           .arg(where(), m_device.host)
                           .arg(m_device.port));
        if (!m_telnet.garbage().isEmpty())
            openFailed(QCoreApplication::translate("Port", "%1 sent what is not Telnet (%2)")
                           .arg(where(), m_telnet.garbage()));
        for (const ComPortAnswer &a : m_telnet.takeAnswers()) {
            if (a.command < SetBaudRate || a.command > SetStopSize) {
                trace(QStringLiteral("RFC 2217 answer %1: %2")
                          .arg(a.command)
                          .arg(QString::fromLatin1(a.value.toHex(' '))));
                continue;
            }
            checkAnswer(a, asked[a.command], &settled[a.command]);
        }
        const int missing = pending();
        if (missing == 0)
            return;
        if (m_socket.state() != QAbstractSocket::ConnectedState)
            openFailed(QCoreApplication::translate("Port",
                                                   "%1 closed the connection while the line "
                                                   "was set up")
                           .arg(where()));
        if (limit.hasExpired())
            openFailed(QCoreApplication::translate("Port", "%1 did not confirm the %2 within %3 s")
                           .arg(where(), QString::fromLatin1(what[missing]))
                           .arg(m_openTimeoutMs / 1000.0));
        if (abandoned())
            openFailed(QCoreApplication::translate("Port", "the opening was given up"));
        sleepUntil(limit);
    }
}

void NetComm::checkAnswer(const ComPortAnswer &a, const QByteArray &asked, bool *settled) {
    using namespace Telnet;
    *settled = true;
    if (a.value == asked)
        return;
    const auto number = [](const QByteArray &v) {
        quint32 n = 0;
        for (const char c : v)
            n = (n << 8) | uchar(c);
        return n;
    };
    QString want, got;
    switch (a.command) {
    case SetBaudRate:
        want = QString::number(number(asked));
        got =
            a.value.size() == 4
                ? QString::number(number(a.value))
                : QCoreApplication::translate("Port", "an answer of %1 bytes").arg(a.value.size());
        openFailed(QCoreApplication::translate("Port", "%1 refused the baud rate %2: it set %3")
                       .arg(where(), want, got));
    case SetDataSize:
        openFailed(QCoreApplication::translate("Port", "%1 refused %2 data bits: it set %3")
                       .arg(where())
                       .arg(number(asked))
                       .arg(number(a.value)));
    case SetParity:
        openFailed(
            QCoreApplication::translate("Port", "%1 refused the parity %2: it set %3")
                .arg(where(), parityName(int(number(asked))), parityName(int(number(a.value)))));
    default:
        openFailed(QCoreApplication::translate("Port", "%1 refused %2 stop bits: it set %3")
                       .arg(where(), stopName(int(number(asked))), stopName(int(number(a.value)))));
    }
}

void NetComm::pull() {
    const int fd = int(m_socket.socketDescriptor());
    int waiting = 0;
    // What reached the kernel since the event loop last looked counts too.
    if (fd >= 0 && ::ioctl(fd, FIONREAD, &waiting) == 0 && waiting > 0) {
        m_looking = true;
        m_socket.waitForReadyRead(0);
        m_looking = false;
        acknowledgeNow();
    }
    const QByteArray raw = m_socket.readAll();
    if (raw.isEmpty())
        return;
    if (m_device.kind == NetDevice::Kind::Raw) {
        m_in += raw;
        return;
    }
    m_telnet.feed(raw, m_in);
    const QByteArray replies = m_telnet.takeReplies();
    if (!replies.isEmpty() && m_socket.state() == QAbstractSocket::ConnectedState)
        m_socket.write(replies);
    if (!m_opening)
        m_telnet.takeAnswers(); // late answers to the modem lines change nothing
    if (!m_telnet.garbage().isEmpty() && !m_failure && !m_opening) {
        m_failure = QCoreApplication::translate(
                        "Port", "the device server sent what is not Telnet (%1): the line's "
                                "characters behind it cannot be trusted")
                        .arg(m_telnet.garbage());
        trace(QStringLiteral("FAULT %1: %2").arg(m_name, *m_failure));
    }
}

double NetComm::characterNs() const {
    return double(m_settings.bitsPerCharacter()) * 1e9 / double(m_settings.baud);
}

qint64 NetComm::inFlight() const {
    if (!m_open)
        return 0;
    const double onLine = double(m_emptyAt - WakeAlarm::now()) / characterNs();
    int kernel = 0;
    const int fd = int(m_socket.socketDescriptor());
    if (fd < 0 || ::ioctl(fd, SIOCOUTQ, &kernel) != 0 || kernel < 0)
        kernel = 0;
    return std::max<qint64>(m_socket.bytesToWrite() + kernel, qint64(std::ceil(onLine)));
}

void NetComm::wakeWhenInFlight(qint64 left) {
    const qint64 paced = m_emptyAt - qint64(double(left) * characterNs());
    const qint64 counted =
        WakeAlarm::now() + qint64(double(std::max<qint64>(inFlight() - left, 1)) * characterNs());
    m_alarm.ringAt(std::max(paced, std::min(counted, WakeAlarm::now() + 2000000)));
}

void NetComm::workDone() const {
    if (m_workDone)
        m_workDone();
}

void NetComm::requireUsable() const {
    if (m_failure)
        throw CommError{m_name, *m_failure};
    if (!m_open)
        throw CommError{m_name, QCoreApplication::translate("Port", "the port is not open")};
}

void NetComm::output(const QByteArray &bytes) {
    requireUsable();
    const bool telnet = m_device.kind == NetDevice::Kind::Rfc2217;
    qsizetype done = 0;
    while (done < bytes.size()) {
        const qint64 room = MaxInFlight - inFlight();
        if (room <= 0) {
            if (abandoned()) {
                trace(QStringLiteral("OUTPUT given up: %1 characters not sent")
                          .arg(bytes.size() - done));
                return;
            }
            wakeWhenInFlight(MaxInFlight - std::min<qint64>(bytes.size() - done, MaxInFlight / 2));
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            requireUsable();
            continue;
        }
        // The socket's count is of bytes on the wire, where an IAC of the line is two.
        qsizetype take = 0;
        for (qint64 cost = 0; done + take < bytes.size(); ++take) {
            cost += telnet && bytes[done + take] == Telnet::Iac ? 2 : 1;
            if (cost > room)
                break;
        }
        if (take == 0) {
            wakeWhenInFlight(MaxInFlight - 2);
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            requireUsable();
            continue;
        }
        const QByteArray piece = bytes.mid(done, take);
        const QByteArray wire = telnet ? TelnetLayer::escape(piece) : piece;
        if (m_socket.write(wire) != wire.size()) {
            requireUsable();
            throw CommError{m_name, QCoreApplication::translate(
                                        "Port", "writing to the device server failed (%1)")
                                        .arg(m_socket.errorString())};
        }
        m_socket.flush();
        if (m_trace)
            m_trace->bytes(WireTrace::Direction::Sent, piece);
        m_emptyAt =
            std::max(m_emptyAt, WakeAlarm::now()) + qint64(double(piece.size()) * characterNs());
        done += piece.size();
        requireUsable();
    }
    if (!bytes.isEmpty())
        workDone();
}

int NetComm::outBufferCount() {
    requireUsable();
    m_socket.flush();
    const qint64 queued = inFlight();
    if (queued > 0)
        wakeWhenInFlight(0);
    return clamp16(queued);
}

int NetComm::inBufferCount() {
    if (m_open)
        pull();
    // What came before the connection was lost is handed over first. Counted once and left
    // there, it is short of what its reader waits for, which can no longer come: the wait
    // ends on the port's failure, not on its own time-out.
    if (m_in.isEmpty() || (m_failure && std::exchange(m_leftCounted, true)))
        requireUsable();
    return clamp16(m_in.size());
}

QByteArray NetComm::input() {
    if (m_open)
        pull();
    if (m_in.isEmpty())
        requireUsable();
    const QByteArray got = std::exchange(m_in, QByteArray());
    m_leftCounted = false;
    if (m_trace && !got.isEmpty())
        m_trace->bytes(WireTrace::Direction::Received, got);
    if (!got.isEmpty())
        workDone();
    return got;
}

void NetComm::drain() {
    qint64 queued = inFlight();
    if (queued == 0)
        return;
    const qint64 needMs = qint64(double(queued) * characterNs() / 1e6);
    const QDeadlineTimer limit(2 * needMs + DrainMarginMs);
    for (;;) {
        m_socket.flush();
        if (m_failure)
            return;
        queued = inFlight();
        if (queued == 0)
            return;
        if (limit.hasExpired() || abandoned()) {
            trace(
                QStringLiteral("CLOSE without waiting longer: %1 characters dropped").arg(queued));
            return;
        }
        wakeWhenInFlight(0);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void NetComm::close() {
    if (!m_failure)
        drain();
    m_alarm.cancel();
    if (!m_failure && m_device.kind == NetDevice::Kind::Raw)
        settle();
    if (!m_failure && m_socket.state() == QAbstractSocket::ConnectedState) {
        m_socket.disconnectFromHost();
        const QDeadlineTimer limit(GoodbyeMs);
        while (m_socket.state() != QAbstractSocket::UnconnectedState && !limit.hasExpired())
            sleepUntil(limit);
    }
    m_socket.abort();
    m_open = false;
    m_in.clear();
    trace(QStringLiteral("CLOSE %1").arg(m_name));
    m_trace.reset();
}

void NetComm::settle() {
    const QDeadlineTimer limit(DrainMarginMs);
    for (;;) {
        m_socket.flush();
        const qint64 held = (WakeAlarm::now() - m_connectedAt) / 1000000;
        int unacknowledged = 0;
        const int fd = int(m_socket.socketDescriptor());
        if (fd >= 0)
            ::ioctl(fd, SIOCOUTQ, &unacknowledged);
        if (m_failure || fd < 0 || limit.hasExpired() || abandoned() ||
            (held >= RawSettleMs && unacknowledged <= 0 && m_socket.bytesToWrite() == 0))
            return;
        sleepUntil(QDeadlineTimer(std::max<qint64>(RawSettleMs - held, 1)));
    }
}

void NetComm::onError(QAbstractSocket::SocketError error) {
    if (m_opening || !m_open || m_failure)
        return;
    // Our own look without waiting says "time-out" when it finds nothing; the kernel giving up
    // on a dead peer (keep-alive, unacknowledged data) says it too, and ends the connection.
    if (error == QAbstractSocket::SocketTimeoutError && m_looking)
        return;
    if (error == QAbstractSocket::RemoteHostClosedError)
        m_failure =
            QCoreApplication::translate("Port", "the device is gone: %1 closed the connection")
                .arg(where());
    else
        m_failure = QCoreApplication::translate(
                        "Port", "the device is gone: the connection to %1 was lost (%2)")
                        .arg(where(), m_socket.errorString());
    trace(QStringLiteral("FAULT %1: %2").arg(m_name, *m_failure));
}

void NetComm::trace(const QString &event) {
    if (m_trace)
        m_trace->note(event);
}
