#include "comm.h"

#include <QCoreApplication>

QString CommError::message() const {
    if (stage == Stage::Transfer)
        return QCoreApplication::translate("Port", "The port %1 failed: %2").arg(device, reason);
    if (device.isEmpty())
        return QCoreApplication::translate("Port", "No port can be opened: %1").arg(reason);
    return QCoreApplication::translate("Port", "The port %1 cannot be opened: %2")
        .arg(device, reason);
}
