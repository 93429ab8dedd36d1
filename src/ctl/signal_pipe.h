#pragma once
// SIGINT and SIGTERM turned into an event: the handler only writes the signal's number into a
// pipe; the event loop reads it at the operation's next yield and asks the operation to end
// there, as closing the window does. Nothing else runs inside the handler.

#include "operation_state.h"

#include <QSocketNotifier>
#include <functional>
#include <memory>

class SignalPipe {
public:
    // One per process. Asks `state` to end its running operation when a signal comes.
    explicit SignalPipe(OperationState &state);
    ~SignalPipe(); // the default handlers come back
    SignalPipe(const SignalPipe &) = delete;
    SignalPipe &operator=(const SignalPipe &) = delete;

    bool isValid() const { return m_notifier != nullptr; }
    // SIGHUP is handed to `onHangup` where one is set (a service re-reads its settings), and
    // ends the operation as SIGTERM does where none is.
    void setHangupHandler(std::function<void()> onHangup) { m_onHangup = std::move(onHangup); }
    // The first signal that came, 0 if none. Reads what the pipe holds.
    int caught();

private:
    void read();

    OperationState &m_state;
    std::unique_ptr<QSocketNotifier> m_notifier;
    int m_caught = 0;
    std::function<void()> m_onHangup;
};

// "SIGINT", "SIGTERM", else the number.
QString signalName(int signal);
