#include "comm.h"
#include "transfer.h"
#include "wire_chars.h"

namespace {

bool isGoAhead(const QByteArray &read) {
    const qsizetype dle = read.indexOf(WireChar::DLE);
    return dle >= 0 && read.indexOf('7', dle) >= 0;
}

bool hasXon(const QByteArray &read) {
    return read.contains(WireChar::XON);
}

// One bounded wait: yield, poll, then the flag, so that an answer already there when the
// time runs out still counts. What a read brings and does not satisfy is dropped.
bool waitFor(Link &l, int least, bool (*answered)(const QByteArray &)) {
    Globals &g = l.g;
    g.TimedOut = false;
    l.timer.setEnabled(true);
    bool result = false;
    for (;;) {
        l.yield.DoEvents();
        if (l.state.ending()) {
            // The operation is being ended: end like a time-out, without the box.
            g.TimedOut = true;
            break;
        }
        if (l.comm.inBufferCount() >= least && answered(l.comm.input())) {
            result = true;
            break;
        }
        if (g.TimedOut) {
            l.outcome.fail(OutcomeKind::TimedOut, g.Text(TimeoutMessage));
            l.screen.msgBox(g.Text(TimeoutMessage), BoxIcon::None, QString());
            break;
        }
    }
    l.timer.setEnabled(false);
    return result;
}

} // namespace

bool WaitForAnswer(Link &l) {
    // A single waiting character is left alone: the DLE may be waiting for its "7".
    return waitFor(l, 2, isGoAhead);
}

bool WaitForXon(Link &l) {
    return waitFor(l, 1, hasXon);
}
