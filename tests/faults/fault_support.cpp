#include "fault_support.h"

#include <QCryptographicHash>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <numeric>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

// Hanging up a terminal (TIOCVHANGUP) takes CAP_SYS_ADMIN, bit 21 of the effective set: root in
// a container may lack it.
bool canHangUp() {
    QFile status(QStringLiteral("/proc/self/status"));
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    const qsizetype at = text.indexOf("\nCapEff:");
    return at >= 0 && (text.mid(at + 8, 18).trimmed().toULongLong(nullptr, 16) >> 21 & 1);
}

// The device behind `path` hung up as a USB serial adapter is when it is pulled out: every
// open descriptor of it fails from now on.
bool hangUp(const QString &path) {
    const QByteArray device = QFile::encodeName(QFileInfo(path).canonicalFilePath());
    const int fd = ::open(device.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    const bool done = fd >= 0 && ::ioctl(fd, TIOCVHANGUP) == 0;
    if (fd >= 0)
        ::close(fd);
    return done;
}

// Characters that have reached the device and that the program has not taken yet; -1 when it
// cannot be asked.
int waitingAt(const QString &device) {
    const int fd = ::open(QFile::encodeName(device).constData(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
    int n = 0;
    const bool asked = fd >= 0 && ::ioctl(fd, FIONREAD, &n) == 0;
    if (fd >= 0)
        ::close(fd);
    return asked ? n : -1;
}

} // namespace

SmallDisk::SmallDisk(const QByteArray &options) {
    if (::mount("tmpfs", QFile::encodeName(m_dir.path()).constData(), "tmpfs", 0,
                options.constData()) != 0) {
        m_why = QStringLiteral("cannot mount a tmpfs on %1 (%2): this test needs root")
                    .arg(m_dir.path(), QString::fromLocal8Bit(std::strerror(errno)));
        return;
    }
    m_mounted = true;
}

SmallDisk::~SmallDisk() {
    if (m_mounted)
        ::umount2(QFile::encodeName(m_dir.path()).constData(), MNT_DETACH);
}

bool SmallDisk::fill() {
    QFile f(filePath(QStringLiteral(".filler")));
    if (!f.open(QIODevice::WriteOnly))
        return false;
    while (f.write("F", 1) == 1 && f.flush()) { // to the last byte that fits
    }
    return true;
}

bool SmallDisk::remountReadOnly() {
    return ::mount("tmpfs", QFile::encodeName(m_dir.path()).constData(), "tmpfs",
                   MS_REMOUNT | MS_RDONLY, nullptr) == 0;
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

void Trigger::onceWhen(std::function<bool()> when, std::function<void()> act) {
    QObject::connect(&m_poll, &QTimer::timeout, [this, when, act] {
        if (!when())
            return;
        m_poll.stop();
        act();
    });
    m_poll.start(2);
}

QString armFault(Trigger &trigger, const QString &fault, VControlProcess &vc, const QString &link,
                 std::function<void()> close, std::function<bool()> listShown) {
    const QString what = fault.section(u' ', 0, 0), moment = fault.section(u' ', 2, 2);
    if (fault.section(u' ', 1, 1) != u"at")
        return QString();
    if (what == u"pull" && !canHangUp())
        return QStringLiteral("hanging up a terminal (TIOCVHANGUP) needs CAP_SYS_ADMIN");
    const auto when = [=, &vc] {
        if (moment == u"list")
            return listShown();
        vc.refresh();
        bool isCount = false;
        const int lines = moment.toInt(&isCount);
        if (isCount) // the opening "R" CR is no line of the program
            return vc.rx().count('\r') - (vc.rx().startsWith("R\r") ? 1 : 0) >= lines;
        return !vc.eventTexts(moment).isEmpty() && (moment != u"STALLED" || waitingAt(link) == 0);
    };
    trigger.onceWhen(when, [=, &vc] {
        if (what == u"stop") {
            vc.stop();
        } else if (what == u"pull") {
            QVERIFY2(hangUp(link), std::strerror(errno));
            QFile::remove(link);
        } else {
            close();
        }
    });
    return QString();
}

QByteArray everyByte() {
    QByteArray all(256, 0);
    std::iota(all.begin(), all.end(), 0);
    return all;
}

QString takeBox(RecordingScreen &screen, const QString &told, BoxIcon icon) {
    if (told.isEmpty())
        return QString();
    const RecordingScreen::Box box = screen.takeBox();
    return box.text.contains(told) && box.icon == icon ? QString() : box.text;
}

qint64 msTaken(const std::function<void()> &act) {
    QElapsedTimer clock;
    clock.start();
    act();
    return clock.elapsed();
}

qsizetype bytesLost(const QByteArray &expected, const QByteArray &arrived) {
    qsizetype same = 0;
    while (same < expected.size() && same < arrived.size() && expected[same] == arrived[same])
        ++same;
    return expected.size() - same;
}

void recordFault(const QString &faultClass, const QString &outcome, qsizetype lost,
                 qint64 elapsedMs, qint64 hungAfterMs) {
    const QString log = qEnvironmentVariable("DNC_FAULT_LOG");
    QFile f(log);
    if (!log.isEmpty() && f.open(QIODevice::Append))
        f.write(QStringLiteral("%1\t%2\t%3\t%4\t%5\n")
                    .arg(faultClass, outcome)
                    .arg(lost)
                    .arg(elapsedMs)
                    .arg(hungAfterMs)
                    .toUtf8());
}

QByteArray sha256Hex(const QByteArray &bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}
