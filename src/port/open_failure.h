#pragma once
// Why a device could not be opened, told so that the operator knows what to do about it.

#include "serial_device.h"

#include <QSerialPort>
#include <QString>

struct OpenFailure {
    QSerialPort::SerialPortError error; // as QSerialPort reports it
    QString errorString;                // QSerialPort's own words
    QString path;                       // the device that was opened
    QString portName;                   // "COM1:"
    bool chosenInSetup = true;          // false: the device was named for this run alone
};

// The reason given to the operator, after the device's name. `present` is what the PC has
// instead when the device is absent.
QString openFailureReason(const OpenFailure &f, const QList<SerialDevice> &present);
