#pragma once
// The wire log: every byte each way with a time stamp, and the control's events, one line per
// read, write or event, written out at once so that a test can read it while the control runs.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Microseconds on a monotonic clock, counted from the first call.
int64_t nowUs();

class WireLog {
public:
    WireLog() = default;
    WireLog(const WireLog &) = delete;
    WireLog &operator=(const WireLog &) = delete;
    ~WireLog();

    // Empty path: no log. Returns false with errno set when the file cannot be made.
    bool open(const std::string &path);
    // "<us> RX|TX <hex bytes>"
    void bytes(std::string_view dir, std::string_view data);
    // "<us> EV <WORD> [text]"
    void event(std::string_view word, std::string_view text = {});

private:
    void put(std::string &line);
    int m_fd = -1;
    std::string m_line;
};

// "0d 10 37": the form bytes take in the log and in event texts.
std::string hex(std::string_view data);
