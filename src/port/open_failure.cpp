#include "open_failure.h"
#include "device_holder.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Debian gives serial devices to this group; a user in it may open them.
const QString SerialGroup = QStringLiteral("dialout");

QString systemText(int code) {
    return QString::fromLocal8Bit(std::strerror(code));
}

QString userName() {
    const passwd *pw = ::getpwuid(::geteuid());
    return pw ? QString::fromLocal8Bit(pw->pw_name) : QString::number(::geteuid());
}

QString groupName(gid_t gid) {
    const group *gr = ::getgrgid(gid);
    return gr ? QString::fromLocal8Bit(gr->gr_name) : QString::number(gid);
}

// "crw-rw---- root dialout"
QString permissionsOf(const struct stat &st) {
    QString mode = S_ISCHR(st.st_mode) ? QStringLiteral("c") : QStringLiteral("-");
    const char *rwx = "rwxrwxrwx";
    for (int bit = 0; bit < 9; ++bit)
        mode += (st.st_mode & (0400 >> bit)) ? QLatin1Char(rwx[bit]) : QLatin1Char('-');
    const passwd *pw = ::getpwuid(st.st_uid);
    const QString owner = pw ? QString::fromLocal8Bit(pw->pw_name) : QString::number(st.st_uid);
    return mode + u' ' + owner + u' ' + groupName(st.st_gid);
}

// With the effective user's rights, as the open had them.
bool mayOpen(const QString &path) {
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), R_OK | W_OK, AT_EACCESS) == 0;
}

QString absent(const OpenFailure &f, const QList<SerialDevice> &present) {
    if (present.isEmpty())
        return QCoreApplication::translate("Port",
                                           "there is no such device, and this PC has no "
                                           "serial device at all. Is the adapter plugged in?");
    QStringList names;
    for (const SerialDevice &d : present) {
        const QString label = d.label();
        names << (label == QFileInfo(d.systemLocation).fileName()
                      ? d.systemLocation
                      : QStringLiteral("%1 (%2)").arg(d.systemLocation, label));
    }
    const QString has = names.join(QStringLiteral("; "));
    if (!f.chosenInSetup)
        return QCoreApplication::translate("Port", "there is no such device. This PC has: %1.")
            .arg(has);
    return QCoreApplication::translate("Port", "there is no such device. This PC has: %1. Choose "
                                               "the device of %2 with Setup.")
        .arg(has, f.portName);
}

QString busy(const OpenFailure &f) {
    if (const QString holder = deviceHolder(f.path); !holder.isEmpty())
        return QCoreApplication::translate("Port",
                                           "%1 holds it (%2). Close that program and try again.")
            .arg(holder, f.errorString);
    return QCoreApplication::translate("Port", "another program holds it (%1). Close that program "
                                               "(a terminal, another DNC program) and try again.")
        .arg(f.errorString);
}

QString noPermission(const OpenFailure &f) {
    const QString user = userName();
    const QString join = QStringLiteral("sudo adduser %1 %2").arg(user);
    QString text = QCoreApplication::translate("Port", "the user %1 may not open it (%2). ")
                       .arg(user, f.errorString);
    struct stat st {};
    const bool known = ::stat(QFile::encodeName(f.path).constData(), &st) == 0;
    if (known && st.st_gid != 0 && (st.st_mode & 060) == 060) {
        const QString g = groupName(st.st_gid);
        return text + QCoreApplication::translate(
                          "Port", "The group %1 may open it: add the user to it with  %2  "
                                  "then log out and in again.")
                          .arg(g, join.arg(g));
    }
    text += QCoreApplication::translate(
                "Port", "Serial devices on Debian belong to the group %1, which a user joins "
                        "with  %2  (then log out and in again)")
                .arg(SerialGroup, join.arg(SerialGroup));
    if (known)
        text += QCoreApplication::translate(
                    "Port", "; this device (%1) lets no group open it: ask the administrator.")
                    .arg(permissionsOf(st));
    else
        text += QLatin1Char('.');
    return text;
}

} // namespace

QString openFailureReason(const OpenFailure &f, const QList<SerialDevice> &present) {
    switch (f.error) {
    case QSerialPort::DeviceNotFoundError:
        return absent(f, present);
    case QSerialPort::PermissionError:
        // Qt says "permission" both for a device held by another program (its lock file, or
        // the other's exclusive open) and for one this user may not open.
        if (f.errorString == systemText(EACCES) || !mayOpen(f.path))
            return noPermission(f);
        return busy(f);
    case QSerialPort::OpenError:
        return QCoreApplication::translate("Port", "it is open already");
    default:
        return f.errorString;
    }
}
