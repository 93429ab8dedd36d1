#pragma once
// The serial port as the operations see it. One character is one byte.
// A member that cannot do its work throws CommError; the operation that called it
// ends with a message that names the device and the reason.

#include <QByteArray>
#include <QString>

struct CommError {
    // When the port failed, which decides the sentence the reason is told in.
    enum class Stage { Opening, Transfer };
    QString device; // what the operator knows the port by, e.g. "COM1: (/dev/ttyS0)"
    QString reason; // why, in plain words, without the device's name
    Stage stage = Stage::Transfer;

    // The whole sentence for the operator, the device and the reason filled in.
    QString message() const;
};

class Comm {
public:
    virtual ~Comm() = default;

    // Set only while the port is closed.
    virtual void setCommPort(int port) = 0;
    virtual void setSettings(const QString &settings) = 0; // "9600,E,7,2"
    virtual void setDTREnable(bool on) = 0;

    virtual bool portOpen() const = 0;
    // Closing lets what is queued leave first.
    virtual void setPortOpen(bool open) = 0;

    // Queues the bytes in order; never loses any, however many.
    virtual void output(const QByteArray &bytes) = 0;
    // 0 only when every byte written has left (our buffer and the driver's queue).
    virtual int outBufferCount() = 0;
    virtual int inBufferCount() = 0;
    // Everything waiting, at once, removed; no waiting.
    virtual QByteArray input() = 0;
};
