#include "punch_reader.h"

#include <QCoreApplication>

#include "comm.h"
#include "wire_chars.h"

namespace {

constexpr char DC2 = 0x12; // punch on
constexpr char DC4 = 0x14; // punch off

bool notPartOfProgram(char c) {
    return c == '\0' || c == DC2 || c == DC4 || c == WireChar::XON || c == WireChar::XOFF;
}

bool isLineEnd(char c) {
    return c == '\r' || c == '\n';
}

} // namespace

bool PunchReader::take(char c, Punch &p) {
    if (notPartOfProgram(c))
        return false;
    if (!m_started) {
        m_line += c;
        if (c == '%') {
            m_started = true;
            p.bytes = m_line;
            m_line.clear();
        } else if (isLineEnd(c)) {
            m_ignored += m_line.size();
            m_line.clear();
        }
        return false;
    }
    // An LF right behind a CR ends the same line; behind the closing line it belongs to it.
    if (c == '\n' && m_afterCr) {
        m_afterCr = false;
        p.bytes += c;
        return false;
    }
    m_afterCr = c == '\r';
    p.bytes += c;
    if (isLineEnd(c)) {
        ++p.lines;
        return m_closing;
    }
    if (c == '%' && p.lines > 0)
        m_closing = p.complete = true;
    return false;
}

void PunchReader::takeLateLf(Link &l, Punch &p) {
    l.g.TimedOut = false;
    l.timer.setEnabled(false);
    l.timer.setInterval(LateLfMs);
    l.timer.setEnabled(true);
    while (!l.g.TimedOut && !l.state.ending()) {
        l.yield.DoEvents();
        if (l.comm.inBufferCount() == 0)
            continue;
        m_pending = l.comm.input();
        if (m_pending.startsWith('\n')) {
            p.bytes += '\n';
            m_pending.remove(0, 1);
        }
        break;
    }
}

Punch PunchReader::read(Link &l, int waitMs, int silenceMs,
                        const std::function<bool()> &stopWaiting) {
    Punch p;
    m_started = m_closing = m_afterCr = false;
    m_line.clear();
    m_ignored = 0;
    bool ended = false;
    // Before the start the clock bounds the wait, if at all; after it, each silence.
    l.g.TimedOut = false;
    l.timer.setInterval(waitMs >= 0 ? waitMs : silenceMs);
    l.timer.setEnabled(waitMs >= 0);
    try {
        for (;;) {
            QByteArray chunk;
            if (!m_pending.isEmpty())
                chunk.swap(m_pending);
            else if (l.comm.inBufferCount() > 0)
                chunk = l.comm.input();
            if (!chunk.isEmpty()) {
                const bool wasStarted = m_started;
                qsizetype i = 0;
                for (; i < chunk.size() && !ended; ++i)
                    ended = take(chunk[i], p);
                if (ended) {
                    // The LF of a CR LF that ends the punch may be the next character, or
                    // come a moment later.
                    if (i < chunk.size() && chunk[i] == '\n' && m_afterCr)
                        p.bytes += chunk[i++];
                    else if (i == chunk.size() && m_afterCr)
                        takeLateLf(l, p);
                    m_pending += chunk.mid(i);
                    break;
                }
                if (m_started) {
                    // A fresh silence is counted from this chunk.
                    if (!wasStarted)
                        l.timer.setInterval(silenceMs);
                    l.timer.setEnabled(false);
                    l.timer.setEnabled(true);
                    l.g.TimedOut = false;
                }
                continue;
            }
            if (l.g.TimedOut) {
                p.cutBySilence = m_started;
                break;
            }
            if (l.state.ending() || (!m_started && stopWaiting && stopWaiting()))
                break;
            l.yield.DoEvents();
        }
    } catch (const CommError &e) {
        p.portFailure = e.message();
    }
    l.timer.setEnabled(false);
    m_ignored += m_line.size();
    return p;
}
