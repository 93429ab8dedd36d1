#pragma once
// Real pieces against the virtual control: the port on its pseudo-terminal, the clock run
// `divisor` times faster (a silence ends a wait without real seconds), the event loop's yield.

#include "fake_link.h"
#include "link_times.h"
#include "real_link_parts.h"

// The operator picks entry `pick` of List1 as soon as it shows one.
class OperatorScreen : public RecordingScreen {
public:
    int pick = -1;
    int list1ListIndex() const override { return list1Visible && pick < list1Count() ? pick : -1; }
};

struct RealLink {
    Globals g;
    OperationState state;
    RealLinkParts parts;
    DeviceComm &comm = parts.comm;
    QtLinkTimer &timer = parts.timer;
    EventLoopYield &yield = parts.yield;
    OperatorScreen screen;
    CmDialog dialog;
    OperationState::Run run{state};
    Link link{g, comm, timer, yield, screen, dialog, state};

    RealLink(const QString &device, qint16 cncType, int divisor = 20)
        : parts(g, state, device, divisor) {
        g.ComSettings = QStringLiteral("COM1:115200,N,8,1"); // 8 bits: every byte value passes
        g.CncType = cncType;
        // As after a first transmission: long enough for a loaded test machine.
        timer.setInterval(AnswerTimeoutMs);
    }
};
