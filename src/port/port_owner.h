#pragma once
// Which station holds a device. A station that serves a machine holds its port all day; the
// window and dncctl, asked to use that port, are to name the station rather than say "busy".
// The claim is a small file in the lock folder that names the station's section and process.

#include <QString>
#include <optional>

struct PortOwner {
    QString section;
    qint64 pid = 0;
};

// The station that holds `device` now; none when no live station does.
std::optional<PortOwner> stationHolding(const QString &device);

// Held by a station for as long as it serves the device. A claim left by a station that has
// ended is taken over.
class PortClaim {
public:
    PortClaim() = default;
    ~PortClaim() { release(); }
    PortClaim(const PortClaim &) = delete;
    PortClaim &operator=(const PortClaim &) = delete;

    // False, with `holder` set, when another live station holds it.
    bool claim(const QString &device, const QString &section, PortOwner *holder = nullptr);
    void release();

private:
    QString m_file;
};

// "the station of section Lathe1 (process 4711)"
QString stationText(const PortOwner &owner);
// Why a port cannot be opened while `owner` serves it, and how to free it.
QString heldByStation(const PortOwner &owner);
