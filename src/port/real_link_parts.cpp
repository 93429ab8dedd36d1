#include "real_link_parts.h"

#include "port_devices.h"

#include <algorithm>

RealLinkParts::RealLinkParts(Globals &g, const OperationState &state, const QString &device,
                             int clockDivisor)
    : comm(device), timer(g, clockDivisor) {
    // Read at each opening: a device chosen in the setup dialog holds for the next operation.
    comm.setConfiguredDevices([&g](int port) { return configuredDevice(g, port); });
    comm.setOperationState(&state);
}

int RealLinkParts::clockDivisorFromEnvironment() {
    return std::max(1, qEnvironmentVariableIntValue("DNC_CLOCK_DIVISOR"));
}
