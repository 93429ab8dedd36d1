#pragma once
// Real pieces against the virtual control: the port on its pseudo-terminal, the clock run
// `divisor` times faster (a silence ends a wait without real seconds), the event loop's yield.

#include "event_loop_yield.h"
#include "fake_link.h"
#include "qt_link_timer.h"
#include "serial_comm.h"

// The operator picks entry `pick` of List1 as soon as it shows one.
class OperatorScreen : public RecordingScreen {
public:
    int pick = -1;
    int list1ListIndex() const override { return list1Visible && pick < list1Count() ? pick : -1; }
};

struct RealLink {
    Globals g;
    SerialComm comm;
    QtLinkTimer timer;
    EventLoopYield yield{comm, timer};
    OperatorScreen screen;
    CmDialog dialog;
    OperationState state;
    OperationState::Run run{state};
    Link link{g, comm, timer, yield, screen, dialog, state};

    RealLink(const QString &device, qint16 cncType, int divisor = 20)
        : comm(device), timer(g, divisor) {
        g.ComSettings = QStringLiteral("COM1:115200,N,8,1"); // 8 bits: every byte value passes
        g.CncType = cncType;
        comm.setOperationState(&state);
        // As after a first transmission: long enough for a loaded test machine.
        timer.setInterval(5000);
    }
};
