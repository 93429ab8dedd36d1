#include "ctl_outcome.h"

int exitCodeOf(const Outcome &o) {
    if (o.signal != 0)
        return ExitSignalBase + o.signal;
    if (o.portFailed)
        return ExitPort;
    if (o.fileFailed)
        return ExitFile;
    if (o.pick == Pick::NotListed)
        return ExitNoProgram;
    if (o.timedOut)
        return ExitTimeout;
    if (o.pick == Pick::NotAsked || !o.received)
        return ExitNoProgram;
    if (o.toolDbFailed)
        return ExitToolDb;
    return ExitOk;
}
