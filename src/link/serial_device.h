#pragma once
// Which device a port number stands for, and the serial devices this PC has.

#include <QList>
#include <QString>
#include <functional>

// COMn is the device named by DNC_COMn in the environment (tests, experts), else the one the
// settings name for it (`configured`, empty when they name none), else /dev/ttyS<n-1>.
QString comDevicePath(int port, const QString &configured);
// Where comDevicePath takes its answer from.
enum class ComDeviceSource { Environment, Settings, Default };
ComDeviceSource comDeviceSource(int port, const QString &configured);
// "DNC_COM1"
QString comEnvironmentVariable(int port);

// A serial device present on this PC, as the operator knows it from its label.
struct SerialDevice {
    QString path;           // what to open: its /dev/serial/by-id link when it has one
    QString systemLocation; // the kernel's name: /dev/ttyUSB0
    QString description;    // "FT232R USB UART"
    QString manufacturer;   // "FTDI"
    QString serialNumber;   // "A50285BI"

    // "FT232R USB UART, FTDI, A50285BI": what is known of it, or its kernel name alone.
    QString label() const;
};

// Lists the devices present now; each front end plugs in the real one.
using SerialDeviceScan = std::function<QList<SerialDevice>()>;
