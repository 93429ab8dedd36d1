#include "nc_file_survey.h"

#include "regular_file.h"

#include <QCryptographicHash>
#include <QFile>

NcFileSurvey surveyNcFile(const QString &path, qint64 maxLine) {
    NcFileSurvey s;
    QFile file(path);
    if (!openRegularFile(file, s.error))
        return s;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray block(256 * 1024, Qt::Uninitialized);
    qint64 lineNumber = 1;
    qint64 lineLength = 0;
    bool afterCr = false; // an LF right behind a CR belongs to its line end
    for (;;) {
        const qint64 n = file.read(block.data(), block.size());
        if (n < 0) {
            s.error = file.errorString();
            return s;
        }
        if (n == 0)
            break;
        const QByteArrayView got(block.constData(), n);
        hash.addData(got);
        qsizetype from = 0;
        while (from < n) {
            if (afterCr && got[from] == '\n') {
                ++s.lineFeeds;
                ++from;
            }
            afterCr = false;
            const qsizetype cr = got.indexOf('\r', from);
            const qsizetype end = cr < 0 ? n : cr;
            const QByteArrayView part = got.sliced(from, end - from);
            s.lineFeeds += part.count('\n');
            lineLength += part.size();
            if (lineLength > maxLine) {
                s.error = lineTooLong(lineNumber, maxLine);
                return s;
            }
            if (cr < 0)
                break;
            ++s.carriageReturns;
            ++lineNumber;
            lineLength = 0;
            afterCr = true;
            from = cr + 1;
        }
    }
    s.sha256 = hash.result().toHex();
    return s;
}
