#include "port_devices.h"

#include "profile.h"
#include "serial_device.h"

#include <QRegularExpression>

const QString PortsSection = QStringLiteral("Ports");

QString portsKey(int port) {
    return QStringLiteral("COM%1").arg(port);
}

QString configuredDevice(const Globals &g, int port) {
    return GetProfile(g, PortsSection, portsKey(port));
}

QString comDevice(const Globals &g, int port) {
    return comDevicePath(port, configuredDevice(g, port));
}

int portNumberOf(const QString &portChoice) {
    static const QRegularExpression com(QStringLiteral("^COM([1-9]):$"));
    const auto m = com.match(portChoice);
    return m.hasMatch() ? m.captured(1).toInt() : 0;
}
