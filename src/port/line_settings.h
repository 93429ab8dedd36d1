#pragma once
// The line format of a settings string such as "9600,E,7,2": baud, parity letter, data
// bits, stop bits.

#include <QSerialPort>
#include <QString>

struct LineSettings {
    int baud = 9600;
    QSerialPort::Parity parity = QSerialPort::NoParity;
    QSerialPort::DataBits dataBits = QSerialPort::Data8;
    QSerialPort::StopBits stopBits = QSerialPort::OneStop;

    // Bits on the wire per character: start, data, parity, stop.
    int bitsPerCharacter() const;
};

// Throws LineSettingsError when the string cannot be used.
LineSettings parseLineSettings(const QString &text);

struct LineSettingsError {
    QString why; // in plain words, e.g. "the parity must be E, O or N, not X"
};
