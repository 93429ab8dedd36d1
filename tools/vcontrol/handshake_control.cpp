#include "handshake_control.h"

#include <unistd.h>

namespace {

constexpr char DLE = 0x10;
constexpr char EOT = 0x04;
const std::string Iso = "/ISO/";

bool startsCommand(char c) {
    return c == 'R' || c == 'M' || c == 'P' || c == 'D' || c == 'C';
}

bool startsWith(std::string_view s, std::string_view prefix) {
    return s.substr(0, prefix.size()) == prefix;
}

} // namespace

HandshakeControl::HandshakeControl(const Options &o, Wire &w, ProgramStore &store,
                                   std::function<void()> crash)
    : m_o(o), m_w(w), m_store(store), m_crash(std::move(crash)),
      m_is504(o.type == ControlType::T504) {}

void HandshakeControl::run() {
    for (;;)
        serveOne();
}

void HandshakeControl::ignore(size_t n) {
    m_w.log().event("IGNORED", hex(m_w.inbox().substr(0, n)));
    m_w.consume(n);
}

// Commands come as a byte stream in pieces of any size. No command but "CC"/"CE" begins with
// "C", so those two need no terminator to be told apart; the others end at CR.
void HandshakeControl::serveOne() {
    for (;;) {
        std::string_view in = m_w.inbox();
        size_t skip = 0;
        while (skip < in.size() && !startsCommand(in[skip]))
            ++skip;
        if (skip > 0) {
            ignore(skip); // e.g. a go-ahead that came after its dialogue had ended
            continue;
        }
        if (in.empty() || (in[0] == 'C' && in.size() < 2)) {
            m_w.receive(Forever);
            continue;
        }
        if (in[0] == 'C') {
            if (in[1] != 'C' && in[1] != 'E') {
                ignore(1);
                continue;
            }
            std::string cmd(in.substr(0, 2));
            m_w.consume(2);
            m_w.log().event(m_is504 ? "UNKNOWN" : "CMD", cmd);
            return;
        }
        size_t cr = in.find('\r');
        if (cr == std::string_view::npos) {
            if (in.size() > 4096)
                ignore(in.size()); // no command is that long
            else
                m_w.receive(Forever);
            continue;
        }
        std::string line(in.substr(0, cr));
        m_w.consume(cr + 1);
        dispatch(line);
        return;
    }
}

void HandshakeControl::dispatch(const std::string &line) {
    if (line == "R") {
        receiveProgram();
        return;
    }
    std::string_view l = line;
    bool list = l == (m_is504 ? "MC,/ISO" : "MC");
    bool send = m_is504 ? startsWith(l, "PC," + Iso) : l == "PC";
    bool del = m_is504 && startsWith(l, "DC," + Iso);
    if (!list && !send && !del) {
        m_w.log().event("UNKNOWN", line);
        return;
    }
    if (!takeGoAhead()) {
        m_w.log().event("NO-GO-AHEAD", line);
        return;
    }
    m_w.log().event("CMD", line);
    std::string name = m_is504 && !list ? line.substr(3 + Iso.size()) : std::string();
    if (list) {
        std::string listing;
        for (const std::string &n : m_store.names())
            listing += n + '\r';
        sendLines(splitLines(listing));
    } else if (send) {
        if (!m_is504) {
            auto names = m_store.names();
            name = !m_o.pcProgram.empty() ? m_o.pcProgram : names.empty() ? "" : names.front();
        }
        sendProgram(name);
    } else if (m_store.remove(name)) {
        m_w.log().event("DELETED", name);
    } else {
        m_w.log().event("MISSING", name);
    }
}

// The go-ahead that ends a command: DLE "7" next in the stream.
bool HandshakeControl::takeGoAhead() {
    int64_t until = nowUs() + int64_t(m_o.giveUpMs) * 1000;
    for (;;) {
        std::string_view in = m_w.inbox();
        if (!in.empty() && in[0] != DLE)
            return false; // something else: the program has moved on
        if (in.size() >= 2) {
            if (in[1] != '7')
                return false;
            m_w.consume(2);
            return true;
        }
        if (!m_w.receive(until))
            return false;
    }
}

void HandshakeControl::answer() {
    if (m_o.silent)
        return;
    if (m_o.delayMs > 0)
        m_w.pause(m_o.delayMs);
    std::string head = m_o.noise + DLE;
    if (m_o.splitAnswerMs >= 0) {
        m_w.send(head);
        m_w.pause(m_o.splitAnswerMs);
        m_w.send("7");
    } else {
        m_w.send(head + '7');
    }
}

void HandshakeControl::receiveProgram() {
    m_w.log().event("CMD", "R");
    answer();
    std::string program;
    long lineNo = 0;
    size_t scanned = 0; // the inbox up to here holds no CR
    for (;;) {
        std::string_view in = m_w.inbox();
        size_t cr = in.find('\r', scanned);
        if (cr == std::string_view::npos) {
            scanned = in.size();
            if (!m_w.receive(m_w.lastRxUs() + int64_t(m_o.giveUpMs) * 1000)) {
                m_w.log().event("ABANDONED",
                                "reception after " + std::to_string(lineNo) + " lines");
                return;
            }
            continue;
        }
        scanned = 0;
        if (in.substr(0, cr) == std::string_view(&EOT, 1)) {
            m_w.consume(cr + 1);
            std::string name = m_store.storeNew(program);
            m_w.log().event(name.empty() ? "RECEIVED" : "STORED",
                            std::to_string(program.size()) + (name.empty() ? "" : " " + name));
            return;
        }
        program.append(in.substr(0, cr + 1));
        m_w.consume(cr + 1);
        ++lineNo;
        if (lineNo == m_o.crashAfterLine)
            crash();
        if (m_o.silentFromLine > 0 && lineNo >= m_o.silentFromLine)
            continue;
        answer();
    }
}

void HandshakeControl::sendProgram(const std::string &name) {
    auto program = name.empty() ? std::nullopt : m_store.read(name);
    if (!program) {
        m_w.log().event("MISSING", name);
        sendLines({}); // a program with no lines: EOT alone
        return;
    }
    sendLines(splitLines(*program));
}

// A line as it goes out: CR-ended, with the LF of --crlf / --lf-late.
std::string HandshakeControl::lineBytes(std::string_view line) const {
    std::string s(line);
    if (s.empty() || (s.back() != '\r' && s.back() != '\n'))
        s += '\r';
    if ((m_o.crlf || m_o.lfLateMs >= 0) && s.back() == '\r')
        s += '\n';
    return s;
}

// Each write waits for the program's go-ahead before the next; EOT alone ends the run.
void HandshakeControl::sendLines(const std::vector<std::string_view> &lines) {
    if (m_o.silent)
        return;
    size_t i = 0;
    while (i < lines.size()) {
        long lineNo = long(i) + 1;
        if (m_o.silentFromLine > 0 && lineNo >= m_o.silentFromLine) {
            m_w.log().event("SILENT", "from line " + std::to_string(lineNo));
            return;
        }
        if (m_o.delayMs > 0)
            m_w.pause(m_o.delayMs);
        std::string chunk = lineBytes(lines[i]);
        size_t taken = 1;
        if (m_o.twoLines && i + 1 < lines.size()) {
            chunk += lineBytes(lines[i + 1]);
            taken = 2;
        }
        bool last = i + taken == lines.size();
        bool lateLf = m_o.lfLateMs >= 0 && chunk.back() == '\n';
        if (lateLf)
            chunk.pop_back();
        if (m_o.lineAndEot && last)
            chunk += EOT;
        if (lineNo == m_o.stallMidLine) {
            size_t half = lineBytes(lines[i]).size() / 2;
            m_w.send(std::string_view(chunk).substr(0, half));
            if (m_o.stallResumeMs == 0) {
                m_w.log().event("STALLED", "line " + std::to_string(lineNo));
                return;
            }
            m_w.pause(m_o.stallResumeMs);
            m_w.send(std::string_view(chunk).substr(half));
        } else {
            m_w.send(chunk);
        }
        if (lateLf) {
            m_w.pause(m_o.lfLateMs);
            m_w.send("\n");
        }
        if (m_o.crashAfterLine >= lineNo && m_o.crashAfterLine < lineNo + long(taken))
            crash();
        i += taken;
        if (m_o.lineAndEot && last)
            return;
        if (!takeGoAhead()) {
            m_w.log().event("ABANDONED", "no go-ahead after line " + std::to_string(i));
            return;
        }
    }
    if (m_o.delayMs > 0)
        m_w.pause(m_o.delayMs);
    m_w.send(std::string(1, EOT));
}

void HandshakeControl::crash() {
    m_w.log().event("CRASH");
    if (m_crash)
        m_crash();
    _exit(3);
}
