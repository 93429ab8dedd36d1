#pragma once
// Controls of type 303 and 504: every line is answered with the go-ahead DLE "7", by whichever
// side has taken it. Written as straight dialogues over a blocking wire: one command at a time.

#include "options.h"
#include "program_store.h"
#include "wire.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class HandshakeControl {
public:
    // `crash` runs just before a --crash-after-line exit (it tidies what must not outlive us).
    HandshakeControl(const Options &o, Wire &w, ProgramStore &store, std::function<void()> crash);

    // Serves commands until Stopped is thrown.
    [[noreturn]] void run();

private:
    void serveOne();
    void dispatch(const std::string &line);
    void receiveProgram();
    void sendProgram(const std::string &name);
    void sendLines(const std::vector<std::string_view> &lines);
    std::string lineBytes(std::string_view line) const;
    void answer();
    bool takeGoAhead();
    void ignore(size_t n);
    [[noreturn]] void crash();

    const Options &m_o;
    Wire &m_w;
    ProgramStore &m_store;
    std::function<void()> m_crash;
    bool m_is504;
};
