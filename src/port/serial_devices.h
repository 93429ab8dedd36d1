#pragma once
// The serial devices present on this PC, found by Qt, each with the stable name udev gives it.

#include "serial_device.h"

// Every device QSerialPortInfo lists. `byIdFolder` holds udev's links named after the
// adapter's maker, model and serial number; a device with such a link is given it as its
// path, so that it keeps its name after a reboot or in another USB socket.
QList<SerialDevice>
presentSerialDevices(const QString &byIdFolder = QStringLiteral("/dev/serial/by-id"));

// The link in `byIdFolder` that leads to `systemLocation`, or `systemLocation` itself.
QString stablePathOf(const QString &systemLocation, const QString &byIdFolder);
