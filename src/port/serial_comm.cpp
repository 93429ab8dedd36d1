#include "serial_comm.h"

#include "open_failure.h"
#include "port_owner.h"
#include "serial_devices.h"
#include "wire_trace.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

// Time allowed beyond what the queued characters need at the line's speed.
constexpr qint64 DrainMarginMs = 1000;

QString systemText(int code) {
    return QString::fromLocal8Bit(std::strerror(code));
}

// Unix98 pseudo-terminal slaves (/dev/pts/N) have majors 136 to 143.
bool isPseudoTerminal(const QString &path) {
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0 || !S_ISCHR(st.st_mode))
        return false;
    const unsigned m = major(st.st_rdev);
    return m >= 136 && m <= 143;
}

int clamp16(qint64 n) {
    return int(std::clamp<qint64>(n, 0, 32767));
}

} // namespace

SerialComm::SerialComm(const QString &device) : m_device(device) {
    QObject::connect(&m_port, &QSerialPort::errorOccurred, &m_port,
                     [this](QSerialPort::SerialPortError e) { onError(e); });
    QObject::connect(&m_port, &QSerialPort::readyRead, &m_port,
                     [this] { m_fetchedAt = WakeAlarm::now(); });
}

SerialComm::~SerialComm() = default;

QString SerialComm::devicePath() const {
    if (!m_device.isEmpty())
        return m_device;
    return comDevicePath(m_commPort, m_configured ? m_configured(m_commPort) : QString());
}

QString SerialComm::deviceName() const {
    return QStringLiteral("COM%1: (%2)").arg(m_commPort).arg(devicePath());
}

void SerialComm::setSettings(const QString &settings) {
    try {
        m_settings = parseLineSettings(settings);
        m_settingsText = settings;
    } catch (const LineSettingsError &e) {
        throw CommError{
            deviceName(),
            QCoreApplication::translate("Port", "the line settings \"%1\" cannot be used: %2")
                .arg(settings, e.why),
            CommError::Stage::Opening};
    }
}

void SerialComm::setDTREnable(bool on) {
    m_dtr = on;
    if (m_port.isOpen()) {
        if (const QString lines = applyModemLines(); !lines.isEmpty())
            trace(lines);
    }
}

void SerialComm::setPortOpen(bool open) {
    if (open == m_port.isOpen())
        return;
    if (open)
        this->open();
    else
        close();
}

bool SerialComm::openWith(const LineSettings &s) {
    m_port.setBaudRate(s.baud);
    m_port.setDataBits(s.dataBits);
    m_port.setParity(s.parity);
    m_port.setStopBits(s.stopBits);
    m_port.setFlowControl(QSerialPort::NoFlowControl); // pacing is the program's own
    return m_port.open(QIODevice::ReadWrite);
}

void SerialComm::open() {
    m_trace = WireTrace::fromEnvironment();
    m_failure.reset();
    m_closePosted = false;

    const QString path = devicePath();
    // A station serves this machine: say so, rather than that some program holds the port.
    if (const std::optional<PortOwner> station = stationHolding(path))
        throw CommError{deviceName(), heldByStation(*station), CommError::Stage::Opening};
    const bool pty = isPseudoTerminal(path);
    m_pty = pty;
    m_emptyAt = 0;
    // Qt locks by name: the real device, so that two names for one port still collide.
    const QString real = QFileInfo(path).canonicalFilePath();
    m_port.setPortName(real.isEmpty() ? path : real);

    m_quiet = true;
    bool ok = openWith(m_settings);
    bool plain = false;
    if (!ok && pty) {
        // A pseudo-terminal runs 8 bits without parity and may refuse anything else; a
        // real line would take them, so this is no fault of the operator's settings.
        const QString why = m_port.errorString();
        if (m_port.error() == QSerialPort::UnsupportedOperationError || why == systemText(EINVAL) ||
            why == systemText(ENOTTY)) {
            LineSettings eight = m_settings;
            eight.dataBits = QSerialPort::Data8;
            eight.parity = QSerialPort::NoParity;
            ok = plain = openWith(eight);
        }
    }
    if (!ok) {
        const CommError e = openError();
        m_quiet = false;
        trace(QStringLiteral("OPEN FAILED %1 %2: %3").arg(deviceName(), m_settingsText, e.reason));
        m_trace.reset();
        throw e;
    }
    const QString lines = applyModemLines();
    // Qt keeps what came while the port was closed; a late answer to the last operation
    // must not satisfy a wait of this one.
    m_port.clear(QSerialPort::Input);
    m_port.clearError();
    m_quiet = false;
    trace(
        QStringLiteral("OPEN %1 %2%3%4")
            .arg(deviceName(), m_settingsText,
                 plain ? QStringLiteral(" (as 8,N: a pseudo-terminal takes no other)") : QString(),
                 lines.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(lines)));
}

CommError SerialComm::openError() const {
    const OpenFailure f{m_port.error(), m_port.errorString(), devicePath(),
                        QStringLiteral("COM%1:").arg(m_commPort), m_device.isEmpty()};
    const QList<SerialDevice> present = f.error == QSerialPort::DeviceNotFoundError
                                            ? presentSerialDevices()
                                            : QList<SerialDevice>();
    return CommError{deviceName(), openFailureReason(f, present), CommError::Stage::Opening};
}

int SerialComm::setModemLines(int fd, bool dtr, bool rts) {
    const int up = (dtr ? TIOCM_DTR : 0) | (rts ? TIOCM_RTS : 0);
    const int down = (TIOCM_DTR | TIOCM_RTS) & ~up;
    if (down != 0 && ::ioctl(fd, TIOCMBIC, &down) != 0)
        return errno;
    if (up != 0 && ::ioctl(fd, TIOCMBIS, &up) != 0)
        return errno;
    return 0;
}

QString SerialComm::applyModemLines() {
    // The kernel raises DTR and RTS as it opens a tty: a control that watches them would see
    // the PC ready before a send has said so. RTS stays down. A pseudo-terminal has no modem
    // lines, and an adapter without them still carries the data: a refusal is only noted.
    const int refused = m_modemLines(m_port.handle(), m_dtr, false);
    if (refused == 0 || m_pty)
        return QString();
    return QStringLiteral("DTR %1, RTS off not set: %2")
        .arg(m_dtr ? QStringLiteral("on") : QStringLiteral("off"), systemText(refused));
}

void SerialComm::close() {
    if (!m_failure)
        drain();
    m_alarm.cancel();
    m_port.close();
    trace(QStringLiteral("CLOSE %1").arg(deviceName()));
    m_trace.reset();
}

void SerialComm::drain() {
    qint64 queued = inFlight();
    if (queued == 0)
        return;
    // Qt's close() drops its buffer: let it leave first, for as long as the line needs.
    const qint64 needMs = qint64(double(queued) * characterNs() / 1e6);
    const QDeadlineTimer limit(2 * needMs + DrainMarginMs);
    for (;;) {
        push();
        if (m_failure || !m_port.isOpen())
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

void SerialComm::push() {
    if (m_port.isOpen() && m_port.bytesToWrite() > 0)
        m_port.flush(); // one chunk to the driver; a full driver queue is no error
}

double SerialComm::characterNs() const {
    return double(m_settings.bitsPerCharacter()) * 1e9 / double(m_settings.baud);
}

qint64 SerialComm::inFlight() const {
    if (!m_port.isOpen())
        return 0;
    if (m_pty) {
        const double onLine = double(m_emptyAt - WakeAlarm::now()) / characterNs();
        return std::max<qint64>(m_port.bytesToWrite(), qint64(std::ceil(onLine)));
    }
    int driver = 0;
    if (::ioctl(m_port.handle(), TIOCOUTQ, &driver) != 0 || driver < 0)
        driver = 0;
    return m_port.bytesToWrite() + driver;
}

void SerialComm::wakeWhenInFlight(qint64 left) {
    // On a pseudo-terminal the moment is known; a real port's queue is counted again, and the
    // alarm goes on ringing one character time or more apart while the line lags behind.
    const qint64 at =
        m_pty ? m_emptyAt - qint64(double(left) * characterNs())
              : WakeAlarm::now() +
                    qint64(double(std::max<qint64>(inFlight() - left, 1)) * characterNs());
    m_alarm.ringAt(at);
}

qint64 SerialComm::writeDirect(const QByteArray &piece) {
    // Straight to the driver while Qt holds nothing back: QSerialPort would arm and disarm its
    // write notifier for every line, and each change wakes the event loop once more. What the
    // driver does not take, and any error, goes the way of Qt, which reports it.
    if (m_port.bytesToWrite() > 0)
        return 0;
    const ssize_t n = ::write(m_port.handle(), piece.constData(), size_t(piece.size()));
    return std::max<qint64>(n, 0);
}

void SerialComm::workDone() const {
    if (m_workDone)
        m_workDone();
}

void SerialComm::requireUsable() const {
    if (m_failure)
        throw CommError{deviceName(), *m_failure};
    if (!m_port.isOpen())
        throw CommError{deviceName(), QCoreApplication::translate("Port", "the port is not open")};
}

void SerialComm::output(const QByteArray &bytes) {
    requireUsable();
    qsizetype done = 0;
    while (done < bytes.size()) {
        const qint64 room = MaxInFlight - inFlight();
        if (room <= 0) {
            if (abandoned()) {
                trace(QStringLiteral("OUTPUT given up: %1 characters not sent")
                          .arg(bytes.size() - done));
                return;
            }
            // Woken when the rest fits, or half the bound, so that the line never runs dry.
            wakeWhenInFlight(MaxInFlight - std::min<qint64>(bytes.size() - done, MaxInFlight / 2));
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            requireUsable();
            push();
            requireUsable();
            continue;
        }
        const QByteArray piece = bytes.mid(done, room);
        const qint64 direct = writeDirect(piece);
        if (direct < piece.size() && m_port.write(piece.mid(direct)) != piece.size() - direct) {
            requireUsable();
            throw CommError{deviceName(),
                            QCoreApplication::translate("Port", "writing to the device failed (%1)")
                                .arg(m_port.errorString())};
        }
        if (m_trace)
            m_trace->bytes(WireTrace::Direction::Sent, piece);
        if (m_pty)
            m_emptyAt = std::max(m_emptyAt, WakeAlarm::now()) +
                        qint64(double(piece.size()) * characterNs());
        done += piece.size();
        push();
        requireUsable();
    }
    if (!bytes.isEmpty()) {
        m_fetchedAt = 0; // an answer to these can only be counted in the driver
        workDone();
    }
}

int SerialComm::outBufferCount() {
    requireUsable();
    push();
    requireUsable();
    const qint64 queued = inFlight();
    if (queued > 0)
        wakeWhenInFlight(0); // a drain that sleeps wakes when the line should be empty
    return clamp16(queued);
}

int SerialComm::inBufferCount() {
    requireUsable();
    // What reached the driver since the event loop last looked counts too: read it in, so
    // that Input hands over all that was counted. Right after the event loop emptied the
    // driver (a read takes all a terminal's input queue holds) that count is the one asked.
    const bool fresh = WakeAlarm::now() - m_fetchedAt < FreshReadNs;
    m_fetchedAt = 0;
    int driver = 0;
    if (!fresh && ::ioctl(m_port.handle(), FIONREAD, &driver) == 0 && driver > 0) {
        m_port.waitForReadyRead(0);
        requireUsable();
    }
    return clamp16(m_port.bytesAvailable());
}

QByteArray SerialComm::input() {
    requireUsable();
    const QByteArray got = m_port.readAll();
    if (m_trace)
        m_trace->bytes(WireTrace::Direction::Received, got);
    if (!got.isEmpty())
        workDone();
    return got;
}

void SerialComm::onError(QSerialPort::SerialPortError error) {
    if (m_quiet || m_failure || error == QSerialPort::NoError)
        return;
    const QString why = m_port.errorString();
    switch (error) {
    case QSerialPort::ResourceError:
        if (why == systemText(EAGAIN))
            return; // the driver's queue is full for now; Qt writes on when there is room
        m_failure = QCoreApplication::translate(
            "Port", "the device is gone: unplugged, or closed at the other end");
        break;
    case QSerialPort::DeviceNotFoundError:
        m_failure = QCoreApplication::translate(
            "Port", "the device is gone: unplugged, or closed at the other end");
        break;
    case QSerialPort::ReadError:
        m_failure = QCoreApplication::translate(
            "Port", "reading from the device failed: it was unplugged, or "
                    "closed at the other end");
        break;
    case QSerialPort::WriteError:
        m_failure = QCoreApplication::translate(
            "Port", "writing to the device failed: it was unplugged, or "
                    "closed at the other end");
        break;
    default:
        return; // not a fault of the line (an unsupported setting, a time-out of Qt's own)
    }
    trace(QStringLiteral("FAULT %1: %2 (%3)").arg(deviceName(), *m_failure, why));
    if (m_closePosted)
        return;
    m_closePosted = true;
    // Qt 6.4 reports end-of-file on a dead pseudo-terminal on every pass; closing stops it.
    // Not from inside Qt's own notification, which goes on using the port after the signal.
    QMetaObject::invokeMethod(
        &m_port,
        [this] {
            if (m_failure && m_port.isOpen()) {
                m_port.close();
                trace(QStringLiteral("CLOSE %1 after the fault").arg(deviceName()));
                m_trace.reset();
            }
        },
        Qt::QueuedConnection);
}

void SerialComm::trace(const QString &event) {
    if (m_trace)
        m_trace->note(event);
}
