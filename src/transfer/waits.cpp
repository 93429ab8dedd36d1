#include "comm.h"
#include "transfer.h"

namespace {

constexpr char DLE = 16;
constexpr char XON = 17;

bool IsGoAhead(const QByteArray &read) {
    const qsizetype dle = read.indexOf(DLE);
    return dle >= 0 && read.indexOf('7', dle) >= 0;
}

bool HasXon(const QByteArray &read) {
    return read.contains(XON);
}

// One bounded wait: yield, poll, then the flag, so that an answer already there when the
// time runs out still counts. What a read brings and does not satisfy is dropped.
bool WaitFor(Link &l, int least, bool (*answered)(const QByteArray &)) {
    Globals &g = l.g;
    g.TimedOut = false;
    l.timer.setEnabled(true);
    bool result = false;
    for (;;) {
        l.yield.DoEvents();
        if (g.Closing) {
            // The window is going away: end like a time-out, without the box.
            g.TimedOut = true;
            break;
        }
        if (l.comm.inBufferCount() >= least && answered(l.comm.input())) {
            result = true;
            break;
        }
        if (g.TimedOut) {
            l.screen.msgBox(g.Text(7), BoxIcon::None, QString());
            break;
        }
    }
    l.timer.setEnabled(false);
    return result;
}

} // namespace

bool WaitForAnswer(Link &l) {
    // A single waiting character is left alone: the DLE may be waiting for its "7".
    return WaitFor(l, 2, IsGoAhead);
}

bool WaitForXon(Link &l) {
    return WaitFor(l, 1, HasXon);
}
