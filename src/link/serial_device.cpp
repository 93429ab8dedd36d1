#include "serial_device.h"

#include <QFileInfo>
#include <QStringList>

QString comEnvironmentVariable(int port) {
    return QStringLiteral("DNC_COM%1").arg(port);
}

ComDeviceSource comDeviceSource(int port, const QString &configured) {
    if (!qEnvironmentVariable(qPrintable(comEnvironmentVariable(port))).isEmpty())
        return ComDeviceSource::Environment;
    if (!configured.isEmpty())
        return ComDeviceSource::Settings;
    return ComDeviceSource::Default;
}

QString comDevicePath(int port, const QString &configured) {
    switch (comDeviceSource(port, configured)) {
    case ComDeviceSource::Environment:
        return qEnvironmentVariable(qPrintable(comEnvironmentVariable(port)));
    case ComDeviceSource::Settings:
        return configured;
    case ComDeviceSource::Default:
        break;
    }
    return QStringLiteral("/dev/ttyS%1").arg(port - 1);
}

QString SerialDevice::label() const {
    QStringList known;
    for (const QString &s : {description, manufacturer, serialNumber})
        if (!s.trimmed().isEmpty())
            known << s.trimmed();
    return known.isEmpty() ? QFileInfo(systemLocation).fileName()
                           : known.join(QStringLiteral(", "));
}
