#include "port_owner.h"

#include "net_device.h"

#include <QCoreApplication>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace {

QString lockFolder() {
    const QString folder = qEnvironmentVariable("DNC_LOCK_DIR", QStringLiteral("/run/lock"));
    return QFileInfo(folder).isWritable() ? folder : QDir::tempPath();
}

// One file a device, whatever name it was reached by.
QString claimFile(const QString &device) {
    const std::optional<NetDevice> server = parseNetDevice(device); // however it was written
    QString real = server ? server->name() : QFileInfo(device).canonicalFilePath();
    if (real.isEmpty())
        real = device;
    return QDir(lockFolder())
        .filePath(QStringLiteral("dnc-station.") +
                  (real.startsWith(u'/') ? real.mid(1) : real).replace(u'/', u'_'));
}

bool alive(qint64 pid) {
    return pid > 0 && (::kill(pid_t(pid), 0) == 0 || errno == EPERM);
}

std::optional<PortOwner> ownerIn(const QString &file) {
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QList<QByteArray> fields = f.readAll().trimmed().split('\n');
    if (fields.size() != 2)
        return std::nullopt;
    PortOwner owner{QString::fromUtf8(fields[1]), fields[0].toLongLong()};
    return alive(owner.pid) ? std::optional(owner) : std::nullopt;
}

} // namespace

std::optional<PortOwner> stationHolding(const QString &device) {
    const std::optional<PortOwner> owner = ownerIn(claimFile(device));
    if (owner && owner->pid == ::getpid())
        return std::nullopt; // the station itself
    return owner;
}

bool PortClaim::claim(const QString &device, const QString &section, PortOwner *holder) {
    const QString file = claimFile(device);
    if (file == m_file)
        return true;
    release();
    if (const std::optional<PortOwner> other = stationHolding(device)) {
        if (holder)
            *holder = *other;
        return false;
    }
    QSaveFile out(file);
    if (out.open(QIODevice::WriteOnly) &&
        out.write(QByteArray::number(qint64(::getpid())) + '\n' + section.toUtf8() + '\n') > 0 &&
        out.commit())
        m_file = file;
    return true; // a lock folder that takes no file does not stop the station serving
}

void PortClaim::release() {
    if (m_file.isEmpty())
        return;
    const std::optional<PortOwner> owner = ownerIn(m_file);
    if (!owner || owner->pid == ::getpid())
        QFile::remove(m_file);
    m_file.clear();
}

QString stationText(const PortOwner &owner) {
    return QCoreApplication::translate("Port", "the station of section %1 (process %2)")
        .arg(owner.section)
        .arg(owner.pid);
}

QString heldByStation(const PortOwner &owner) {
    return QCoreApplication::translate("Port", "%1 holds it. Stop the station (systemctl stop "
                                               "dnc-station@%2) to use the port here.")
        .arg(stationText(owner), owner.section);
}
