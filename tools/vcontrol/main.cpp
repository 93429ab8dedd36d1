// vcontrol: a CNC control played on a pseudo-terminal, the far end for the DNC program's tests
// and demo. See README.md and --help.

#include "handshake_control.h"
#include "options.h"
#include "program_store.h"
#include "pty_link.h"
#include "wire.h"
#include "wire_log.h"
#include "xonxoff_control.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sched.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/stat.h>

namespace {

const char *typeName(ControlType t) {
    switch (t) {
    case ControlType::T303:
        return "303";
    case ControlType::T504:
        return "504";
    case ControlType::XonXoff:
        return "XonXoff";
    }
    return "?";
}

} // namespace

int main(int argc, char **argv) {
    const Options o = parseOptions(argc, argv);
    installStopSignals();
    nowUs(); // time stamps count from here
    // A character time at 230 400 baud is 43 us: the default slack of 50 us on every timed
    // wait would let the line's pace slip.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    if (o.realtime) {
        sched_param p{};
        p.sched_priority = 10;
        if (sched_setscheduler(0, SCHED_FIFO, &p) != 0)
            std::fprintf(stderr, "vcontrol: --realtime: %s; running at the usual priority\n",
                         std::strerror(errno));
    }

    if (!o.dir.empty()) {
        struct stat st {};
        if (stat(o.dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) {
            std::fprintf(stderr, "vcontrol: --dir %s is no folder\n", o.dir.c_str());
            return 1;
        }
    }
    WireLog log;
    if (!log.open(o.log)) {
        std::fprintf(stderr, "vcontrol: cannot write --log %s: %s\n", o.log.c_str(),
                     std::strerror(errno));
        return 1;
    }
    Pty pty;
    try {
        pty = openPty();
        if (!o.link.empty())
            makeLink(o.link, pty.path);
    } catch (const std::exception &e) {
        std::fprintf(stderr, "vcontrol: %s\n", e.what());
        return 1;
    }
    log.event("START", std::string("type ") + typeName(o.type) + " on " + pty.path);
    // The first line of stdout says where we are, and that we are ready.
    std::printf("%s\n", pty.path.c_str());
    std::fflush(stdout);

    Wire wire(pty.master, log, o.exitAfterIdleMs);
    // The XonXoff control times each character itself, its buffer draining in between.
    if (o.type != ControlType::XonXoff)
        wire.setLineSpeed(o.baud);
    ProgramStore store(o.dir, o.type == ControlType::XonXoff ? ".LCC" : ".NC");
    XonXoffControl xonxoff(o, wire, store);
    HandshakeControl handshake(o, wire, store, [&] { removeLink(o.link, pty.path); });
    int rc = 0;
    try {
        if (o.type == ControlType::XonXoff)
            xonxoff.run();
        else
            handshake.run();
    } catch (const Stopped &) {
    } catch (const std::exception &e) {
        log.event("ERROR", e.what());
        std::fprintf(stderr, "vcontrol: %s\n", e.what());
        rc = 1;
    }
    if (o.type == ControlType::XonXoff) {
        std::string summary = "overruns " + std::to_string(xonxoff.overruns()) +
                              ", most after hold " + std::to_string(xonxoff.maxAfterHold());
        log.event("EXIT", summary);
        std::fprintf(stderr, "vcontrol: %s\n", summary.c_str());
    } else {
        log.event("EXIT");
    }
    removeLink(o.link, pty.path);
    return rc;
}
