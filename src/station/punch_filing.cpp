#include "punch_filing.h"

#include "punch.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

// A comment as a file name: letters, digits, '-' and '_' kept, runs of anything else one '_'.
QString safeName(const QByteArray &comment) {
    QString out;
    for (const char c : comment) {
        const bool keep = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                          (c >= '0' && c <= '9') || c == '-' || c == '_';
        if (keep)
            out += QLatin1Char(c);
        else if (!out.isEmpty() && !out.endsWith(u'_'))
            out += u'_';
    }
    while (out.endsWith(u'_'))
        out.chop(1);
    return out.left(64);
}

} // namespace

QString punchFileName(const QByteArray &punch, const QDateTime &arrival) {
    QByteArray number = programNumberOf(punch);
    if (!number.isEmpty()) {
        number[0] = number[0] == ':' ? 'O' : char(std::toupper(number[0]));
        return QString::fromLatin1(number) + QStringLiteral(".tap");
    }
    const QString comment = safeName(firstCommentOf(punch));
    if (!comment.isEmpty())
        return comment + QStringLiteral(".tap");
    return arrival.toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss")) + QStringLiteral(".tap");
}

FiledPunch filePunch(const QString &folder, const QByteArray &punch, const QDateTime &arrival) {
    FiledPunch result;
    QTemporaryFile beside(QDir(folder).filePath(QStringLiteral(".punch-XXXXXX")));
    if (!beside.open() || beside.write(punch) != punch.size() || !beside.flush() ||
        ::fsync(beside.handle()) != 0) {
        result.error = beside.errorString();
        return result;
    }
    const QString name = punchFileName(punch, arrival);
    const QString stem = name.chopped(4);
    for (int n = 0; n < 10000; ++n) {
        const QString path =
            QDir(folder).filePath(n == 0 ? name : QStringLiteral("%1.%2.tap").arg(stem).arg(n));
        // A link is made only where no name is: the one atomic way not to replace a file.
        if (::link(QFile::encodeName(beside.fileName()).constData(),
                   QFile::encodeName(path).constData()) == 0) {
            result.path = path;
            return result;
        }
        if (errno != EEXIST) {
            result.error = QString::fromLocal8Bit(std::strerror(errno));
            return result;
        }
    }
    result.error = QCoreApplication::translate("Station", "no free name beside %1").arg(name);
    return result;
}
