#pragma once
// Counts the tools of a program about to be sent. Every failure ends in one critical box;
// what was counted before it stays, and the caller sends the file all the same.

#include "link.h"
#include "tool_db.h"

class ToolListUpdater : public ToolListHook {
public:
    // With a `yield`, the count runs on a thread of its own while the caller's events go on
    // (the window paints while a lock is waited for); without one it runs on the caller's
    // thread. Either way UpdateToolList returns only when the count has ended.
    ToolListUpdater(Globals &g, Screen &screen, int busyTimeoutMs = DefaultBusyTimeoutMs,
                    Yield *yield = nullptr)
        : m_g(g), m_screen(screen), m_busyTimeoutMs(busyTimeoutMs), m_yield(yield) {}
    void UpdateToolList(const QString &file) override;
    QString failure() const override { return m_failure; }

private:
    Globals &m_g;
    Screen &m_screen;
    int m_busyTimeoutMs;
    Yield *m_yield;
    QString m_failure;
};
