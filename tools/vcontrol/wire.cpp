#include "wire.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

namespace {

volatile sig_atomic_t g_stop = 0;
sigset_t g_waitMask; // the mask during ppoll: stop signals let in

void onStop(int) {
    g_stop = 1;
}

bool stopPending() {
    sigset_t pending;
    if (sigpending(&pending) != 0)
        return false;
    for (int s : {SIGTERM, SIGINT, SIGHUP})
        if (sigismember(&pending, s) == 1)
            return true;
    return false;
}

} // namespace

void installStopSignals() {
    struct sigaction sa {};
    sa.sa_handler = onStop;
    sigemptyset(&sa.sa_mask);
    sigset_t stops;
    sigemptyset(&stops);
    for (int s : {SIGTERM, SIGINT, SIGHUP}) {
        sigaction(s, &sa, nullptr);
        sigaddset(&stops, s);
    }
    signal(SIGPIPE, SIG_IGN);
    sigprocmask(SIG_BLOCK, &stops, &g_waitMask);
    for (int s : {SIGTERM, SIGINT, SIGHUP})
        sigdelset(&g_waitMask, s);
}

Wire::Wire(int masterFd, WireLog &log, long exitAfterIdleMs)
    : m_fd(masterFd), m_log(log), m_idleUs(exitAfterIdleMs > 0 ? exitAfterIdleMs * 1000 : 0),
      m_lastActivity(nowUs()) {}

void Wire::setLineSpeed(long baud) {
    m_charUs = baud > 0 ? 10e6 / double(baud) : 0;
}

void Wire::consume(size_t n) {
    m_used += std::min(n, m_in.size() - m_used);
    // Drop the consumed front only now and then, so a long stream is not copied per line.
    if (m_used == m_in.size()) {
        m_in.clear();
        m_used = 0;
    } else if (m_used > 65536 && m_used * 2 > m_in.size()) {
        m_in.erase(0, m_used);
        m_used = 0;
    }
}

bool Wire::readSome() {
    char buf[65536];
    ssize_t n = ::read(m_fd, buf, sizeof buf);
    if (n > 0) {
        std::string_view got(buf, size_t(n));
        m_log.bytes("RX", got);
        m_received += uint64_t(n);
        m_lastActivity = nowUs();
        if (m_charUs > 0) {
            if (m_onLine.empty()) // an idle line starts on them now
                m_rxFree = std::max(m_rxFree, double(m_lastActivity));
            m_onLine.append(got);
            return false; // they arrive one by one
        }
        m_in.append(got);
        m_lastRx = m_lastActivity;
        return true;
    }
    if (n < 0 && errno != EAGAIN && errno != EINTR && errno != EIO)
        throw std::runtime_error(std::string("read: ") + std::strerror(errno));
    return false;
}

short Wire::waitFor(short events, int64_t deadlineUs) {
    for (;;) {
        if (g_stop)
            throw Stopped{};
        int64_t now = nowUs();
        int64_t until = deadlineUs;
        if (m_idleUs > 0) {
            if (now - m_lastActivity >= m_idleUs) {
                m_log.event("IDLE");
                throw Stopped{};
            }
            until = std::min(until, m_lastActivity + m_idleUs);
        }
        if (now >= until && until == deadlineUs) {
            // The stop signals get in only while ppoll waits: a run of waits already due
            // must still end at once.
            if (stopPending())
                throw Stopped{};
            return 0;
        }
        pollfd p{m_fd, events, 0};
        timespec ts{};
        timespec *tp = nullptr;
        if (until != Forever) {
            int64_t left = std::max<int64_t>(until - now, 0);
            ts.tv_sec = left / 1000000;
            ts.tv_nsec = (left % 1000000) * 1000;
            tp = &ts;
        }
        int r = ppoll(&p, 1, tp, &g_waitMask);
        if (r < 0 && errno != EINTR)
            throw std::runtime_error(std::string("ppoll: ") + std::strerror(errno));
        if (r > 0 && p.revents != 0)
            return p.revents;
    }
}

bool Wire::arrive(int64_t now) {
    size_t n = 0;
    while (n < m_onLine.size() && m_rxFree + m_charUs <= double(now)) {
        m_rxFree += m_charUs;
        ++n;
    }
    if (n == 0)
        return false;
    m_in.append(m_onLine, 0, n);
    m_onLine.erase(0, n);
    m_lastRx = int64_t(m_rxFree);
    return true;
}

int64_t Wire::nextArrival() const {
    if (m_onLine.empty())
        return Forever;
    // The controls act on a whole line or on the end of a write: woken for each character,
    // a busy machine would lose the line's pace.
    const size_t cr = m_onLine.find('\r');
    const size_t last = cr == std::string::npos ? m_onLine.size() - 1 : cr;
    return int64_t(m_rxFree + double(last + 1) * m_charUs) + 1;
}

bool Wire::receive(int64_t deadlineUs) {
    for (;;) {
        const bool read = readSome();
        if (arrive(nowUs()) || read)
            return true;
        short ev = waitFor(POLLIN, std::min(deadlineUs, nextArrival()));
        if (ev == 0) {
            if (nowUs() < deadlineUs)
                continue; // the next character is due
            return arrive(nowUs());
        }
        if ((ev & POLLIN) == 0)
            ::usleep(1000); // a hang-up without data: do not spin on it
    }
}

void Wire::send(std::string_view bytes) {
    if (m_charUs > 0 && bytes.size() > 1) {
        for (size_t i = 0; i < bytes.size(); ++i)
            send(bytes.substr(i, 1));
        return;
    }
    if (m_charUs > 0) {
        // Written once the line has carried it, as the far UART would hand it over. It goes on
        // the line when the control had what it answers (or ended a pause), not later because
        // this process was woken late: the control's own scheduling is no part of the line.
        const double handed = std::min(double(nowUs()), double(std::max(m_lastRx, m_pauseEnd)));
        m_txFree = std::max(m_txFree, handed) + m_charUs;
        const auto due = int64_t(m_txFree);
        while (nowUs() < due)
            receive(due);
    }
    while (!bytes.empty()) {
        ssize_t n = ::write(m_fd, bytes.data(), bytes.size());
        if (n > 0) {
            m_log.bytes("TX", bytes.substr(0, size_t(n)));
            bytes.remove_prefix(size_t(n));
            m_lastActivity = nowUs();
            continue;
        }
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            throw std::runtime_error(std::string("write: ") + std::strerror(errno));
        // The program is not reading: keep taking what it sends while we wait for room.
        short ev = waitFor(POLLOUT | POLLIN, Forever);
        if (ev & POLLIN)
            readSome();
    }
}

void Wire::pause(long ms) {
    int64_t until = nowUs() + int64_t(ms) * 1000;
    while (nowUs() < until)
        receive(until);
    m_pauseEnd = until;
}
