#include "signal_pipe.h"

#include <QString>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int pipeEnds[2] = {-1, -1};
constexpr int Handled[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void onSignal(int signal) {
    const int saved = errno;
    const unsigned char number = static_cast<unsigned char>(signal);
    // Non-blocking: a full pipe already holds a signal, which is all that counts.
    [[maybe_unused]] const ssize_t n = ::write(pipeEnds[1], &number, 1);
    errno = saved;
}

} // namespace

SignalPipe::SignalPipe(OperationState &state) : m_state(state) {
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { read(); });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int s : Handled)
        ::sigaction(s, &action, nullptr);
}

SignalPipe::~SignalPipe() {
    for (const int s : Handled)
        ::signal(s, SIG_DFL);
    m_notifier.reset();
    for (int &end : pipeEnds) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
}

void SignalPipe::read() {
    unsigned char numbers[16];
    ssize_t n;
    while ((n = ::read(pipeEnds[0], numbers, sizeof numbers)) > 0) {
        for (ssize_t i = 0; i < n; ++i) {
            if (numbers[i] == SIGHUP && m_onHangup)
                m_onHangup();
            else if (m_caught == 0)
                m_caught = numbers[i];
        }
    }
    if (m_caught != 0)
        m_state.requestEnd();
}

int SignalPipe::caught() {
    if (m_notifier)
        read();
    return m_caught;
}

QString signalName(int signal) {
    switch (signal) {
    case SIGINT:
        return QStringLiteral("SIGINT");
    case SIGTERM:
        return QStringLiteral("SIGTERM");
    case SIGHUP:
        return QStringLiteral("SIGHUP");
    default:
        return QStringLiteral("signal %1").arg(signal);
    }
}
