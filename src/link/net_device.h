#pragma once
// A serial port on a device server, named where a device is named: "tcp://HOST:PORT" carries
// the line's bytes on a plain socket, "rfc2217://HOST:PORT" also its settings (Telnet COM Port
// Control). An IPv6 address stands in brackets: "tcp://[::1]:4001".

#include <QString>
#include <optional>

struct NetDevice {
    enum class Kind { Raw, Rfc2217 };
    Kind kind = Kind::Raw;
    QString host;
    quint16 port = 0;

    QString name() const; // as written: "rfc2217://box:4001"
};

// True for a name that asks for a device server, well formed or not.
bool isNetDeviceName(const QString &name);

// The device server a name stands for; empty, with `why` set, when it is malformed.
std::optional<NetDevice> parseNetDevice(const QString &name, QString *why = nullptr);
