#include "fault_support.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

QString systemText() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

SmallDisk::SmallDisk(const QByteArray &options) {
    if (!m_dir.isValid()) {
        m_why = QStringLiteral("no temporary folder");
        return;
    }
    if (::mount("tmpfs", QFile::encodeName(m_dir.path()).constData(), "tmpfs", 0,
                options.constData()) != 0) {
        m_why = QStringLiteral("cannot mount a tmpfs on %1 (%2): this test needs root")
                    .arg(m_dir.path(), systemText());
        return;
    }
    m_mounted = true;
}

SmallDisk::~SmallDisk() {
    if (m_mounted)
        ::umount2(QFile::encodeName(m_dir.path()).constData(), MNT_DETACH);
}

bool SmallDisk::put(const QString &name, const QByteArray &bytes) {
    QFile f(filePath(name));
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() && f.flush();
}

bool SmallDisk::fill() {
    QFile f(filePath(QStringLiteral(".filler")));
    if (!f.open(QIODevice::WriteOnly))
        return false;
    const QByteArray block(4096, 'F');
    while (f.write(block) == block.size() && f.flush()) {
    }
    // Whatever part of a block still fits.
    while (f.write("F", 1) == 1 && f.flush()) {
    }
    return true;
}

bool SmallDisk::remountReadOnly() {
    return ::mount("tmpfs", QFile::encodeName(m_dir.path()).constData(), "tmpfs",
                   MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

QString hangUpUnavailable() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (!line.startsWith("CapEff:"))
                continue;
            const quint64 caps = line.mid(7).trimmed().toULongLong(nullptr, 16);
            if (caps & (quint64(1) << 21)) // CAP_SYS_ADMIN
                return QString();
        }
    }
    return QStringLiteral("hanging up a terminal (TIOCVHANGUP) needs CAP_SYS_ADMIN: run as root");
}

QString hangUp(const QString &path) {
    const QString device = QFileInfo(path).canonicalFilePath();
    const int fd = ::open(QFile::encodeName(device.isEmpty() ? path : device).constData(),
                          O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return QStringLiteral("cannot open %1: %2").arg(path, systemText());
    const bool done = ::ioctl(fd, TIOCVHANGUP) == 0;
    const QString why = done ? QString() : QStringLiteral("TIOCVHANGUP: %1").arg(systemText());
    ::close(fd);
    return why;
}

int waitingAt(const QString &device) {
    const int fd = ::open(QFile::encodeName(device).constData(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return -1;
    int n = -1;
    if (::ioctl(fd, FIONREAD, &n) != 0)
        n = -1;
    ::close(fd);
    return n;
}

int openDescriptors(const QString &path) {
    const QString target = QFileInfo(path).canonicalFilePath();
    int n = 0;
    const QDir fds(QStringLiteral("/proc/self/fd"));
    for (const QString &fd : fds.entryList(QDir::System | QDir::Files | QDir::NoDotAndDotDot))
        if (!target.isEmpty() && QFileInfo(fds.filePath(fd)).symLinkTarget() == target)
            ++n;
    return n;
}

qsizetype bytesLost(const QByteArray &expected, const QByteArray &arrived) {
    qsizetype same = 0;
    while (same < expected.size() && same < arrived.size() && expected[same] == arrived[same])
        ++same;
    return expected.size() - same;
}

void recordFault(const QString &faultClass, const QString &outcome, qsizetype lost,
                 qint64 elapsedMs) {
    const QString log = qEnvironmentVariable("DNC_FAULT_LOG");
    if (log.isEmpty())
        return;
    QFile f(log);
    if (f.open(QIODevice::Append))
        f.write(QStringLiteral("%1\t%2\t%3\t%4\n")
                    .arg(faultClass, outcome)
                    .arg(lost)
                    .arg(elapsedMs)
                    .toUtf8());
}

void Trigger::onceWhen(std::function<bool()> when, std::function<void()> act) {
    QObject::connect(&m_poll, &QTimer::timeout, [this, when, act] {
        if (!when())
            return;
        m_poll.stop();
        act();
    });
    m_poll.start(2);
}
