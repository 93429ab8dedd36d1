#include "ctl_outcome.h"

int exitCodeOf(const OutcomeRecord &r, int signal) {
    switch (r.kind) {
    case OutcomeKind::Interrupted:
        return ExitSignalBase + signal;
    case OutcomeKind::PortFailure:
        return ExitPort;
    case OutcomeKind::FileFailure:
        return ExitFile;
    case OutcomeKind::NotOnControl:
        return ExitNoProgram;
    case OutcomeKind::TimedOut:
        return ExitTimeout;
    case OutcomeKind::Cancelled: // nothing dncctl asks for is left to a dialog
        return ExitNotOffered;
    case OutcomeKind::NotCounted:
        return ExitNotCounted;
    case OutcomeKind::Done:
        break;
    }
    return r.shortfall == Shortfall::None ? ExitOk : ExitIncomplete;
}
