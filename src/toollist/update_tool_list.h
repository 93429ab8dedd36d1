#pragma once
// Counts the tools of a program about to be sent. Every failure ends in one critical box;
// what was counted before it stays, and the caller sends the file all the same.

#include "link.h"
#include "tool_db.h"

class ToolListUpdater : public ToolListHook {
public:
    ToolListUpdater(Globals &g, Screen &screen, int busyTimeoutMs = DefaultBusyTimeoutMs)
        : m_g(g), m_screen(screen), m_busyTimeoutMs(busyTimeoutMs) {}
    void UpdateToolList(const QString &file) override;

private:
    Globals &m_g;
    Screen &m_screen;
    int m_busyTimeoutMs;
};
