#include "serial_devices.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>

QString stablePathOf(const QString &systemLocation, const QString &byIdFolder) {
    const QString target = QFileInfo(systemLocation).canonicalFilePath();
    if (target.isEmpty())
        return systemLocation;
    const QDir dir(byIdFolder);
    // By name, so that the choice does not depend on the order of the folder.
    for (const QFileInfo &link : dir.entryInfoList(QDir::System | QDir::Files, QDir::Name))
        if (link.isSymLink() && link.canonicalFilePath() == target)
            return link.absoluteFilePath();
    return systemLocation;
}

QList<SerialDevice> presentSerialDevices(const QString &byIdFolder) {
    QList<SerialDevice> devices;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts()) {
        SerialDevice d;
        d.systemLocation = info.systemLocation();
        d.path = stablePathOf(d.systemLocation, byIdFolder);
        d.description = info.description();
        d.manufacturer = info.manufacturer();
        d.serialNumber = info.serialNumber();
        devices << d;
    }
    return devices;
}
