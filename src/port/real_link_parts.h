#pragma once
// The link's real parts, wired as every front end uses them: the port, which opens the device
// the section [Ports] of dnc.ini names for a port (unless DNC_COMn says otherwise), a local one
// or a device server's (tcp://HOST:PORT, rfc2217://HOST:PORT), and writes the wire trace when
// DNC_TRACE names a file; the clock; the event loop's yield.

#include "device_comm.h"
#include "event_loop_yield.h"
#include "globals.h"
#include "operation_state.h"
#include "qt_link_timer.h"
#include "serial_comm.h"

struct RealLinkParts {
    // `device`, when given, is opened whatever port the settings name (dncctl's --port, tests).
    // `clockDivisor` above 1 runs the clock that many times faster (tests: a time-out without
    // real seconds). Output and the drain before closing stop waiting once `state` is ending,
    // so that a control that stopped reading cannot keep the program from ending.
    RealLinkParts(Globals &g, const OperationState &state, const QString &device = QString(),
                  int clockDivisor = 1);
    RealLinkParts(const RealLinkParts &) = delete;
    RealLinkParts &operator=(const RealLinkParts &) = delete;

    // DNC_CLOCK_DIVISOR, 1 when it is unset or not a number above 1.
    static int clockDivisorFromEnvironment();

    SerialComm serial; // a local device
    NetComm net;       // a device server's port
    DeviceComm comm{serial, net};
    QtLinkTimer timer;
    EventLoopYield yield{comm, timer};
};
