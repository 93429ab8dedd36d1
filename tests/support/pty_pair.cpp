#include "pty_pair.h"

#include <QElapsedTimer>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

PtyPair::PtyPair() {
    char name[256];
    if (::openpty(&m_master, &m_slave, name, nullptr, nullptr) != 0)
        return;
    m_slavePath = QString::fromLocal8Bit(name);
    termios t{};
    ::tcgetattr(m_slave, &t);
    ::cfmakeraw(&t);
    ::tcsetattr(m_slave, TCSANOW, &t);
    ::fcntl(m_master, F_SETFL, ::fcntl(m_master, F_GETFL) | O_NONBLOCK);
}

PtyPair::~PtyPair() {
    ::close(m_master);
    ::close(m_slave);
}

bool PtyPair::send(const QByteArray &bytes) {
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t n = ::write(m_master, bytes.constData() + done, size_t(bytes.size() - done));
        if (n > 0) {
            done += n;
        } else if (errno == EAGAIN) { // the slave's input is full: wait for room
            pollfd p{m_master, POLLOUT, 0};
            ::poll(&p, 1, 100);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

QByteArray PtyPair::receive(int maxBytes, int timeoutMs) {
    pollfd p{m_master, POLLIN, 0};
    QByteArray buf(maxBytes, Qt::Uninitialized);
    const ssize_t n =
        ::poll(&p, 1, timeoutMs) > 0 ? ::read(m_master, buf.data(), size_t(maxBytes)) : 0;
    buf.truncate(qMax<ssize_t>(n, 0));
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
    return ::ioctl(m_slave, FIONREAD, &n) == 0 ? n : -1;
}

void PtyPair::setSlaveOutputStopped(bool stopped) {
    ::tcflow(m_slave, stopped ? TCOOFF : TCOON);
}
