#include "options.h"

#include <cstdio>
#include <cstdlib>

namespace {

const char *const Usage = R"(Usage: vcontrol [options]
A virtual CNC control on a pseudo-terminal. Prints the slave device path as its first line,
then answers on it until killed (SIGTERM/SIGINT) or idle for --exit-after-idle.

  --type 303|504|XonXoff   the control played (default 303)
  --dir FOLDER             program store: received programs are written here (PROG<n>.NC,
                           PROG<n>.LCC for XonXoff), listed by MC, sent by PC, deleted by DC
  --log FILE               wire log, one line per read or write:
                             <us> RX <hex bytes>   from the program to the control
                             <us> TX <hex bytes>   from the control to the program
                             <us> EV <WORD> [text] an event (CMD, STORED, DELETED, OVERRUN...)
  --link PATH              symlink to the slave device at PATH (an old link is replaced)
  --exit-after-idle MS     exit after MS without a byte either way
  --realtime               run at a real-time priority where the system allows it, so that
                           the control keeps the line's pace however busy the machine is,
                           as the hardware it stands for would
  --pc-program NAME        type 303: the program sent on "PC" (default: the first by name)
  --give-up MS             drop a dialogue the program stopped answering (default 10000)

Faults (types 303 and 504):
  --silent                 never send anything
  --delay MS               wait MS before each answer and each line sent
  --silent-from-line N     no answer from the Nth program line on (received or sent)
  --noise HEX              bytes put before each DLE "7", e.g. 2a or 2a41
  --split-answer MS        send DLE, pause MS, then "7" (the noise goes with the DLE)
  --crash-after-line N     exit at once (code 3) after the Nth line received or sent
  --line-and-eot           last line and EOT in one write (listing and program)
  --two-lines              two lines in each write (listing and program)
  --crlf                   lines sent end CR LF
  --lf-late MS             lines sent end CR LF, the LF written MS after the CR
  --stall-mid-line N       send half of the Nth line, then stop (listing and program)
  --stall-resume MS        with --stall-mid-line: send the rest after MS

Type XonXoff:
  --buffer N               input buffer size (default 4096)
  --rate CPS               buffer drained at CPS characters a second (default 1000)
  --xoff-at N              send X-off when the buffer holds N (default 3/4 of --buffer)
  --xon-at N               send X-on when it is back to N (default 1/4 of --buffer)
  --xon-at-start           answer the program's opening X-on with an X-on
  --halt-after-line N      after the Nth line send --halt-char, X-on after --halt-ms
  --halt-char HEX          the halting character (default 13, X-off)
  --halt-ms MS             (default 1000)
  --end-gap MS             a program ends after MS of silence once drained (default 1000)
  --punch FILE             punch the bytes of FILE as they are, as an operator at the control
                           does (a program, or a request for one); repeat for several
  --punch-after MS         the first punch MS after the start (default 300)
  --punch-gap MS           each further punch MS after the one before (default 1000)
  --baud N                 characters reach the control at the speed of an 8N1 line of N
                           baud, as a UART would hand them over, and what it sends reaches
                           the program at that speed too (XonXoff: its X-off and X-on go at
                           once; default: as soon as written, both ways)
)";

[[noreturn]] void fail(const std::string &why) {
    std::fprintf(stderr, "vcontrol: %s (see --help)\n", why.c_str());
    std::exit(2);
}

long number(const std::string &opt, const std::string &text) {
    char *end = nullptr;
    long v = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || v < 0)
        fail(opt + " wants a number >= 0, not \"" + text + "\"");
    return v;
}

std::string hexBytes(const std::string &opt, const std::string &text) {
    std::string out;
    if (text.size() % 2 != 0)
        fail(opt + " wants pairs of hex digits, not \"" + text + "\"");
    for (size_t i = 0; i < text.size(); i += 2) {
        char *end = nullptr;
        std::string pair = text.substr(i, 2);
        long v = std::strtol(pair.c_str(), &end, 16);
        if (*end != '\0')
            fail(opt + " wants hex digits, not \"" + text + "\"");
        out.push_back(char(v));
    }
    return out;
}

} // namespace

Options parseOptions(int argc, char **argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        std::string opt = argv[i];
        std::string value;
        bool inlineValue = false;
        if (auto eq = opt.find('='); opt.rfind("--", 0) == 0 && eq != std::string::npos) {
            value = opt.substr(eq + 1);
            opt.resize(eq);
            inlineValue = true;
        }
        auto arg = [&]() -> std::string {
            if (inlineValue)
                return value;
            if (i + 1 >= argc)
                fail(opt + " needs a value");
            return argv[++i];
        };
        auto num = [&] { return number(opt, arg()); };

        if (opt == "--help" || opt == "-h") {
            std::fputs(Usage, stdout);
            std::exit(0);
        } else if (opt == "--type") {
            std::string t = arg();
            if (t == "303")
                o.type = ControlType::T303;
            else if (t == "504")
                o.type = ControlType::T504;
            else if (t == "XonXoff")
                o.type = ControlType::XonXoff;
            else
                fail("--type is 303, 504 or XonXoff, not \"" + t + "\"");
        } else if (opt == "--dir") {
            o.dir = arg();
        } else if (opt == "--log") {
            o.log = arg();
        } else if (opt == "--link") {
            o.link = arg();
        } else if (opt == "--realtime") {
            o.realtime = true;
        } else if (opt == "--exit-after-idle") {
            o.exitAfterIdleMs = num();
        } else if (opt == "--pc-program") {
            o.pcProgram = arg();
        } else if (opt == "--give-up") {
            o.giveUpMs = num();
        } else if (opt == "--silent") {
            o.silent = true;
        } else if (opt == "--delay") {
            o.delayMs = num();
        } else if (opt == "--silent-from-line") {
            o.silentFromLine = num();
        } else if (opt == "--noise") {
            o.noise = hexBytes(opt, arg());
        } else if (opt == "--split-answer") {
            o.splitAnswerMs = num();
        } else if (opt == "--crash-after-line") {
            o.crashAfterLine = num();
        } else if (opt == "--line-and-eot") {
            o.lineAndEot = true;
        } else if (opt == "--two-lines") {
            o.twoLines = true;
        } else if (opt == "--crlf") {
            o.crlf = true;
        } else if (opt == "--lf-late") {
            o.lfLateMs = num();
        } else if (opt == "--stall-mid-line") {
            o.stallMidLine = num();
        } else if (opt == "--stall-resume") {
            o.stallResumeMs = num();
        } else if (opt == "--buffer") {
            o.buffer = num();
        } else if (opt == "--rate") {
            o.rate = num();
        } else if (opt == "--xoff-at") {
            o.xoffAt = num();
        } else if (opt == "--xon-at") {
            o.xonAt = num();
        } else if (opt == "--xon-at-start") {
            o.xonAtStart = true;
        } else if (opt == "--halt-after-line") {
            o.haltAfterLine = num();
        } else if (opt == "--halt-char") {
            std::string c = hexBytes(opt, arg());
            if (c.size() != 1 || c[0] == 0x11)
                fail("--halt-char is one character, and not X-on (11)");
            o.haltChar = static_cast<unsigned char>(c[0]);
        } else if (opt == "--halt-ms") {
            o.haltMs = num();
        } else if (opt == "--punch") {
            o.punches.push_back(arg());
        } else if (opt == "--punch-after") {
            o.punchAfterMs = num();
        } else if (opt == "--punch-gap") {
            o.punchGapMs = num();
        } else if (opt == "--end-gap") {
            o.endGapMs = num();
        } else if (opt == "--baud") {
            o.baud = num();
        } else {
            fail("unknown option \"" + opt + "\"");
        }
    }
    if (o.buffer < 1 || o.rate < 1)
        fail("--buffer and --rate must be at least 1");
    if (o.xoffAt < 0)
        o.xoffAt = o.buffer * 3 / 4;
    if (o.xonAt < 0)
        o.xonAt = o.buffer / 4;
    if (o.xoffAt > o.buffer || o.xonAt >= o.xoffAt)
        fail("want --xon-at < --xoff-at <= --buffer");
    return o;
}
