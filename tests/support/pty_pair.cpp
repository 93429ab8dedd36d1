#include "pty_pair.h"

#include <QElapsedTimer>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

PtyPair::PtyPair() {
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (m_master >= 0 && ::grantpt(m_master) == 0 && ::unlockpt(m_master) == 0) {
        m_slavePath = QString::fromLocal8Bit(::ptsname(m_master));
        m_slave = ::open(::ptsname(m_master), O_RDWR | O_NOCTTY);
    }
    termios t{};
    if (m_slave < 0 || ::tcgetattr(m_slave, &t) != 0) {
        m_error = QStringLiteral("no pseudo-terminal %1: %2")
                      .arg(m_slavePath, QString::fromLocal8Bit(strerror(errno)));
        closeMaster();
        return;
    }
    ::cfmakeraw(&t);
    ::tcsetattr(m_slave, TCSANOW, &t);
    ::fcntl(m_master, F_SETFL, ::fcntl(m_master, F_GETFL) | O_NONBLOCK);
}

PtyPair::~PtyPair() {
    closeMaster();
    if (m_slave >= 0)
        ::close(m_slave);
}

void PtyPair::closeMaster() {
    if (m_master >= 0)
        ::close(m_master);
    m_master = -1;
}

bool PtyPair::send(const QByteArray &bytes) {
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(m_master, bytes.constData() + done, size_t(bytes.size() - done));
        if (n > 0) {
            done += n;
        } else if (n < 0 && errno == EAGAIN) {
            pollfd p{m_master, POLLOUT, 0};
            ::poll(&p, 1, 100);
        } else if (n < 0 && errno != EINTR) {
            return false;
        }
    }
    return true;
}

QByteArray PtyPair::receive(int maxBytes, int timeoutMs) {
    if (m_master < 0)
        return {};
    pollfd p{m_master, POLLIN, 0};
    if (::poll(&p, 1, timeoutMs) <= 0 || !(p.revents & POLLIN))
        return {};
    QByteArray buf(maxBytes, Qt::Uninitialized);
    const ssize_t n = ::read(m_master, buf.data(), size_t(maxBytes));
    if (n <= 0)
        return {};
    buf.truncate(n);
    return buf;
}

QByteArray PtyPair::receiveCount(int count, int timeoutMs) {
    QByteArray got;
    QElapsedTimer clock;
    clock.start();
    while (got.size() < count && clock.elapsed() < timeoutMs)
        got += receive(int(count - got.size()), int(qMax<qint64>(1, timeoutMs - clock.elapsed())));
    return got;
}

int PtyPair::waitingAtSlave() const {
    int n = 0;
    if (m_slave < 0 || ::ioctl(m_slave, FIONREAD, &n) != 0)
        return -1;
    return n;
}

void PtyPair::setSlaveOutputStopped(bool stopped) {
    if (m_slave >= 0)
        ::tcflow(m_slave, stopped ? TCOOFF : TCOON);
}
