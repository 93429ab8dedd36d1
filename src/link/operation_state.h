#pragma once
// Whether an operation is running, and whether it is being ended (the window is closing, the
// operator pressed Ctrl-C). Every front end starts its operations through one of these; the
// waits and the port ask it whether to give up at their next pass.

class OperationState {
public:
    bool running() const { return m_running; }
    bool ending() const { return m_ending; }

    // Asks the running operation to end at its next pass. False when none is running.
    bool requestEnd() {
        if (m_running)
            m_ending = true;
        return m_running;
    }

    // Held for the length of one operation. An end asked for during it stays visible after it,
    // so that the front end can finish what was asked (close the window, exit).
    class Run {
    public:
        explicit Run(OperationState &s) : m_s(s) {
            m_s.m_running = true;
            m_s.m_ending = false;
        }
        ~Run() { m_s.m_running = false; }
        Run(const Run &) = delete;
        Run &operator=(const Run &) = delete;

    private:
        OperationState &m_s;
    };

private:
    bool m_running = false;
    bool m_ending = false;
};
