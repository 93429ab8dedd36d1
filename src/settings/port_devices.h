#pragma once
// Which device each port COM1: to COM4: is, as the settings file says: the section [Ports],
// shared by every configuration, with one key a port ("COM1=/dev/serial/by-id/usb-FTDI_...").

#include "globals.h"

constexpr int PortCount = 4;
extern const QString PortsSection; // "Ports"

// The key of a port in [Ports]: "COM1".
QString portsKey(int port);
// The device [Ports] names for the port, or empty.
QString configuredDevice(const Globals &g, int port);
// The device the port opens: DNC_COMn, else [Ports], else /dev/ttyS<n-1>.
QString comDevice(const Globals &g, int port);
// The number of a PortChoices entry: "COM3:" gives 3; 0 for anything else.
int portNumberOf(const QString &portChoice);
