#include "regular_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString kindOf(mode_t mode) {
    if (S_ISFIFO(mode))
        return QStringLiteral("is a FIFO (named pipe)");
    if (S_ISCHR(mode))
        return QStringLiteral("is a character device");
    if (S_ISBLK(mode))
        return QStringLiteral("is a block device");
    if (S_ISDIR(mode))
        return QStringLiteral("is a folder");
    if (S_ISSOCK(mode))
        return QStringLiteral("is a socket");
    return QStringLiteral("is no regular file");
}

QString notRegular(mode_t mode) {
    return kindOf(mode) + QStringLiteral(", not a regular file");
}

} // namespace

QString lineTooLong(qint64 lineNumber, qint64 maxLine) {
    constexpr qint64 MB = 1024 * 1024;
    const QString bound = maxLine % MB == 0 ? QStringLiteral("%1 MB").arg(maxLine / MB)
                                            : QStringLiteral("%1 bytes").arg(maxLine);
    return QStringLiteral("line %1 is longer than %2").arg(lineNumber).arg(bound);
}

QString notRegularReason(const QString &path) {
    struct stat st {};
    // stat() follows a link, so a link to /dev/zero is the device it names.
    if (::stat(QFile::encodeName(path).constData(), &st) != 0 || S_ISREG(st.st_mode))
        return QString();
    return notRegular(st.st_mode);
}

bool openRegularFile(QFile &file, QString &why) {
    // O_NONBLOCK: opening a FIFO returns at once instead of waiting for a writer.
    const int fd = ::open(QFile::encodeName(file.fileName()).constData(),
                          O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        why = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    struct stat st {};
    const bool known = ::fstat(fd, &st) == 0;
    if (!known || !S_ISREG(st.st_mode)) {
        why = known ? notRegular(st.st_mode) : QString::fromLocal8Bit(std::strerror(errno));
        ::close(fd);
        return false;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        why = file.errorString();
        ::close(fd);
        return false;
    }
    return true;
}
