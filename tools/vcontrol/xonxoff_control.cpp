#include "xonxoff_control.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

constexpr char XON = 0x11;
constexpr char XOFF = 0x13;

} // namespace

XonXoffControl::XonXoffControl(const Options &o, Wire &w, ProgramStore &store)
    : m_o(o), m_w(w), m_store(store), m_charUs(o.baud > 0 ? 10e6 / double(o.baud) : 0),
      m_punchAt(nowUs() + int64_t(o.punchAfterMs) * 1000) {}

void XonXoffControl::punch() {
    const std::string &file = m_o.punches[m_punched++];
    std::ifstream in(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    m_w.log().event("PUNCH", std::to_string(bytes.size()) + " " + file);
    m_w.send(bytes);
    m_w.log().event("PUNCHED", std::to_string(bytes.size()));
    m_punchAt = nowUs() + int64_t(m_o.punchGapMs) * 1000;
}

void XonXoffControl::tx(char c) {
    if (!m_o.silent)
        m_w.send(std::string(1, c));
}

void XonXoffControl::run() {
    for (;;) {
        int64_t now = nowUs();
        deliver(now);
        drain(now);
        resumeIfDue(now);
        if (m_inProgram && fill() == 0 && !held() && m_w.inbox().empty() &&
            now - m_w.lastRxUs() >= int64_t(m_o.endGapMs) * 1000)
            finish();

        int64_t until = Forever;
        if (m_punched < m_o.punches.size()) {
            if (now >= m_punchAt)
                punch();
            if (m_punched < m_o.punches.size())
                until = m_punchAt;
        }
        if (fill() > 0) {
            // Wake often enough to drain about one character at a time (1 to 5 ms).
            until = now + std::clamp<int64_t>(1000000 / m_o.rate, 1000, 5000);
            m_w.busy();
        }
        if (!m_w.inbox().empty()) {
            // The next character off the line; a few at a time on a fast one.
            until = std::min(until, std::max(now + 100, int64_t(m_lineFree + m_charUs) + 1));
            m_w.busy();
        }
        if (m_haltUntil >= 0) {
            until = std::min(until, m_haltUntil);
            m_w.busy();
        }
        // The end of a program is looked for only when it can come: a held program's end
        // gap runs out in the past, and every pass would wait for nothing.
        if (m_inProgram && fill() == 0 && !held())
            until = std::min(until, m_w.lastRxUs() + int64_t(m_o.endGapMs) * 1000);
        const bool idleLine = m_w.inbox().empty();
        if (m_w.receive(until) && idleLine)
            m_lineFree = std::max(m_lineFree, double(nowUs())); // the line starts on it now
        noteReads();
    }
}

void XonXoffControl::noteReads() {
    const auto fresh = size_t(m_w.received() - m_noted);
    m_noted = m_w.received();
    if (!held())
        return;
    const std::string_view in = m_w.inbox();
    for (char c : in.substr(in.size() - std::min(fresh, in.size()))) {
        ++m_writtenAfter;
        if (m_lineEnded)
            ++m_beyondLine;
        m_lineEnded = m_lineEnded || c == '\r';
    }
}

void XonXoffControl::hold(char c) {
    // What the program wrote before the hold reached it is read first, so that it does not
    // count as after.
    m_w.receive(0);
    noteReads();
    tx(c);
    if (!held()) {
        m_afterHold = 0;
        m_heldAt = nowUs();
        m_writtenAfter = m_beyondLine = 0;
        m_lineEnded = false;
    }
}

void XonXoffControl::deliver(int64_t now) {
    if (m_o.baud == 0) {
        std::string chunk(m_w.inbox());
        m_w.consume(chunk.size());
        if (!chunk.empty())
            take(chunk, now);
        return;
    }
    // One character per character time, each at its own moment, the machine draining in
    // between: a control that was late to look catches up as the line would have gone.
    while (!m_w.inbox().empty() && m_lineFree + m_charUs <= double(now)) {
        m_lineFree += m_charUs;
        const auto at = int64_t(m_lineFree);
        drain(at);
        std::string one(m_w.inbox().substr(0, 1));
        m_w.consume(1);
        take(one, at);
    }
}

void XonXoffControl::drain(int64_t now) {
    if (fill() > 0) {
        m_credit += double(std::max<int64_t>(now - m_lastDrain, 0)) * double(m_o.rate) / 1e6;
        size_t n = std::min(fill(), size_t(m_credit));
        m_drained += n;
        m_credit -= double(n);
    }
    m_lastDrain = now;
}

void XonXoffControl::resumeIfDue(int64_t now) {
    if (!held())
        return;
    bool halting = m_haltUntil >= 0 && now < m_haltUntil;
    if (halting || (m_xoffSent && fill() > size_t(m_o.xonAt)))
        return;
    m_w.receive(0);
    noteReads();
    tx(XON);
    m_w.log().event("XON", std::to_string(m_afterHold) + " after hold, fill " +
                               std::to_string(fill()) + ", written after " +
                               std::to_string(m_writtenAfter) + ", beyond the line " +
                               std::to_string(m_beyondLine));
    m_xoffSent = false;
    m_haltUntil = -1;
}

// One read's worth of characters, taken one at a time as a UART would.
void XonXoffControl::take(std::string_view chunk, int64_t at) {
    // After the hold: what arrived once the X-off had gone out, not what was there before.
    if (held() && at >= m_heldAt)
        m_afterHold += long(chunk.size());
    m_maxAfterHold = std::max(m_maxAfterHold, m_afterHold);
    if (fill() == 0) {
        m_lastDrain = at; // the machine starts on what has just come, not before
        m_credit = 0;
    }
    long lost = 0;
    for (char c : chunk) {
        if (!m_inProgram) {
            m_inProgram = true;
            if (c == XON) { // the program's opening X-on is no part of the program
                if (m_o.xonAtStart) {
                    if (m_o.delayMs > 0)
                        m_w.pause(m_o.delayMs);
                    tx(XON);
                }
                continue;
            }
        }
        if (fill() >= size_t(m_o.buffer)) {
            ++lost;
            continue;
        }
        m_program.push_back(c);
        if (!m_xoffSent && fill() >= size_t(m_o.xoffAt)) {
            hold(XOFF);
            m_w.log().event("XOFF", "fill " + std::to_string(fill()));
            m_xoffSent = true;
        }
        if (c == '\r' && ++m_lines == m_o.haltAfterLine) {
            hold(char(m_o.haltChar));
            m_w.log().event("HALT", "after line " + std::to_string(m_lines));
            m_haltUntil = nowUs() + int64_t(m_o.haltMs) * 1000;
        }
    }
    if (lost > 0) {
        m_overruns += lost;
        m_w.log().event("OVERRUN",
                        std::to_string(lost) + " lost, " + std::to_string(m_overruns) + " in all");
    }
}

void XonXoffControl::finish() {
    std::string name = m_program.empty() ? std::string() : m_store.storeNew(m_program);
    m_w.log().event(name.empty() ? "RECEIVED" : "STORED",
                    std::to_string(m_program.size()) + (name.empty() ? "" : " " + name));
    m_program.clear();
    m_drained = 0;
    m_credit = 0;
    m_inProgram = false;
    m_lines = 0;
}
