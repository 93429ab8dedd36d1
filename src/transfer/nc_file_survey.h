#pragma once
// One pass over an NC program before the port opens: what the record of the send needs (its
// fingerprint), and what would stop the send half-way (a line too long to read, a read error),
// found while nothing has gone out yet.

#include <QByteArray>
#include <QString>

struct NcFileSurvey {
    QString error;     // why the file cannot be sent; empty when it can
    QByteArray sha256; // lower-case hex of its bytes as on disk
    qint64 carriageReturns = 0;
    qint64 lineFeeds = 0;
};

// Lines are taken as NcLineReader takes them: ended by CR or CR LF, a lone LF inside the line.
NcFileSurvey surveyNcFile(const QString &path, qint64 maxLine);
