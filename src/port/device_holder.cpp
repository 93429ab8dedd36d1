#include "device_holder.h"

#include <QCoreApplication>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace {

QString describe(qint64 pid) {
    QFile comm(QStringLiteral("/proc/%1/comm").arg(pid));
    if (pid <= 0 || !comm.open(QIODevice::ReadOnly))
        return {};
    const QString name = QString::fromLocal8Bit(comm.readAll()).trimmed();
    return QCoreApplication::translate("Port", "%1 (process %2)").arg(name).arg(pid);
}

// UUCP-style and Qt's lock files both begin with the holder's process id.
qint64 lockFileHolder(const QString &real) {
    const QString name = QStringLiteral("LCK..") + QFileInfo(real).fileName();
    for (const char *folder : {"/run/lock", "/var/lock"}) {
        QFile lock(QDir(QString::fromLatin1(folder)).filePath(name));
        if (lock.open(QIODevice::ReadOnly))
            return lock.readLine().simplified().split(' ').value(0).toLongLong();
    }
    return 0;
}

// A process of ours, or any when we may look, with the device among its open files.
qint64 openBy(const QString &real) {
    const QStringList pids = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &pid : pids) {
        if (!pid.front().isDigit() || pid.toLongLong() == qint64(::getpid()))
            continue;
        const QDir fds(QStringLiteral("/proc/%1/fd").arg(pid));
        for (const QFileInfo &fd : fds.entryInfoList(QDir::System | QDir::NoDotAndDotDot))
            if (fd.symLinkTarget() == real)
                return pid.toLongLong();
    }
    return 0;
}

} // namespace

QString deviceHolder(const QString &device) {
    QString real = QFileInfo(device).canonicalFilePath();
    if (real.isEmpty())
        return {};
    if (const QString who = describe(lockFileHolder(real)); !who.isEmpty())
        return who;
    return describe(openBy(real));
}
