#include "commands_by_type.h"

#include "globals.h"
#include "link_times.h"

bool commandOffered(qint16 cncType, int index) {
    switch (index) {
    case SetupCommand:
    case SendCommand:
    case ReceiveCommand:
    case HelpCommand:
        return true;
    case MapCommand:
        return cncType == Cnc303 || cncType == Cnc504;
    case ChangeContextCommand:
    case ChangeExecuteCommand:
        return cncType == Cnc303;
    case DeleteCommand:
        return cncType == Cnc504;
    default:
        return false;
    }
}

int startupTimerInterval(qint16 cncType) {
    switch (cncType) {
    case Cnc303:
        return StartupInterval303Ms;
    case Cnc504:
        return StartupInterval504Ms;
    case CncXonXoff:
        return StartupIntervalXonXoffMs;
    default:
        return 0;
    }
}
