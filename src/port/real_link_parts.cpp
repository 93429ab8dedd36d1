#include "real_link_parts.h"

#include "port_devices.h"

#include <algorithm>

RealLinkParts::RealLinkParts(Globals &g, const OperationState &state, const QString &device,
                             int clockDivisor)
    : serial(device), timer(g, clockDivisor) {
    // Read at each opening: a device chosen in the setup dialog holds for the next operation.
    serial.setConfiguredDevices([&g](int port) { return configuredDevice(g, port); });
    serial.setOperationState(&state);
    net.setOperationState(&state);
}

int RealLinkParts::clockDivisorFromEnvironment() {
    return std::max(1, qEnvironmentVariableIntValue("DNC_CLOCK_DIVISOR"));
}
