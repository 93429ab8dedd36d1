#include "regular_file.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Why a file the operator named cannot be read as a program, in a few words.
QString notRegular(mode_t mode) {
    if (S_ISFIFO(mode))
        return QCoreApplication::translate("File", "is a FIFO (named pipe), not a regular file");
    if (S_ISCHR(mode))
        return QCoreApplication::translate("File", "is a character device, not a regular file");
    if (S_ISBLK(mode))
        return QCoreApplication::translate("File", "is a block device, not a regular file");
    if (S_ISDIR(mode))
        return QCoreApplication::translate("File", "is a folder, not a regular file");
    if (S_ISSOCK(mode))
        return QCoreApplication::translate("File", "is a socket, not a regular file");
    return QCoreApplication::translate("File", "is no regular file");
}

} // namespace

QString lineTooLong(qint64 lineNumber, qint64 maxLine) {
    constexpr qint64 MB = 1024 * 1024;
    const QString bound = maxLine % MB == 0
                              ? QCoreApplication::translate("File", "%1 MB").arg(maxLine / MB)
                              : QCoreApplication::translate("File", "%1 bytes").arg(maxLine);
    return QCoreApplication::translate("File", "line %1 is longer than %2")
        .arg(lineNumber)
        .arg(bound);
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
