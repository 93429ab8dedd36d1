#pragma once
// Real pieces against a device server: the port over the network, the clock run `divisor`
// times faster, the event loop's yield.

#include "net_comm.h"
#include "real_link.h"

struct NetLink {
    Globals g;
    NetComm comm;
    QtLinkTimer timer;
    EventLoopYield yield{comm, timer};
    OperatorScreen screen;
    CmDialog dialog;
    OperationState state;
    OperationState::Run run{state};
    Link link{g, comm, timer, yield, screen, dialog, state};

    NetLink(const QString &name, qint16 cncType, int divisor = 20) : timer(g, divisor) {
        comm.setTarget(*parseNetDevice(name), QStringLiteral("COM1: (%1)").arg(name));
        g.ComSettings = QStringLiteral("COM1:115200,N,8,1");
        g.CncType = cncType;
        comm.setOperationState(&state);
        timer.setInterval(5000);
    }
};
