#include "wire_log.h"

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

int64_t nowUs() {
    auto read = [] {
        timespec t{};
        clock_gettime(CLOCK_MONOTONIC, &t);
        return int64_t(t.tv_sec) * 1000000 + t.tv_nsec / 1000;
    };
    static const int64_t start = read();
    return read() - start;
}

std::string hex(std::string_view data) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    out.reserve(data.size() * 3);
    for (unsigned char c : data) {
        if (!out.empty())
            out.push_back(' ');
        out.push_back(digits[c >> 4]);
        out.push_back(digits[c & 15]);
    }
    return out;
}

WireLog::~WireLog() {
    if (m_fd >= 0)
        ::close(m_fd);
}

bool WireLog::open(const std::string &path) {
    if (path.empty())
        return true;
    m_fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0644);
    return m_fd >= 0;
}

void WireLog::bytes(std::string_view dir, std::string_view data) {
    if (m_fd < 0)
        return;
    m_line = std::to_string(nowUs());
    m_line += ' ';
    m_line += dir;
    m_line += ' ';
    m_line += hex(data);
    put(m_line);
}

void WireLog::event(std::string_view word, std::string_view text) {
    if (m_fd < 0)
        return;
    m_line = std::to_string(nowUs());
    m_line += " EV ";
    m_line += word;
    if (!text.empty()) {
        m_line += ' ';
        for (char c : text) // a name may hold anything; keep the log one line per entry
            m_line += (static_cast<unsigned char>(c) < 0x20) ? '?' : c;
    }
    put(m_line);
}

// One write per line: a reader never sees half a line unless it reads while it is written.
void WireLog::put(std::string &line) {
    line += '\n';
    const char *p = line.data();
    size_t left = line.size();
    while (left > 0) {
        ssize_t n = ::write(m_fd, p, left);
        if (n <= 0)
            return; // a log that cannot be written must not stop the control
        p += n;
        left -= size_t(n);
    }
}
