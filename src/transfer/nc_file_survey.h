#pragma once
// One pass over an NC program before the port opens: what would stop the send half-way (a line
// too long to read, a read error), and for a send that starts part-way, where its head ends and
// where it starts, all found while nothing has gone out yet.

#include "start_point.h"

#include <QByteArray>
#include <QString>

struct NcFileSurvey {
    QString error; // why the file cannot be sent; empty when it can
    qint64 carriageReturns = 0;
    qint64 lineFeeds = 0;
    qint64 size = 0;

    // A part-way send: the head, its first lines up to the one with the program number (else
    // the first "%"), then the lines from startLine on, which begin at startOffset.
    qint64 headLines = 0;
    qint64 headBytes = 0; // line ends included
    qint64 startLine = 1;
    qint64 startOffset = 0;
    qint64 sendBytes() const { return headBytes + size - startOffset; }
    // What the send does not find, in capitals for a control's screen: "NO BLOCK N48210".
    QByteArray missing;
};

// Lines are taken as NcLineReader takes them: ended by CR or CR LF, a lone LF inside the line.
NcFileSurvey surveyNcFile(const QString &path, qint64 maxLine, const StartPoint &start = {});

// Lower-case hex SHA-256 of the file's bytes as on disk; empty when it cannot be read. It takes
// longer than the survey, so a send has it made beside the transfer.
QByteArray sha256OfFile(const QString &path);

// The tool a line calls, -1 for none: "T5" and "T05" call 5, and so does "T0505", whose last
// two digits are the offset. A "T" in a comment calls nothing.
int toolCalled(QByteArrayView line);
// The block number a line begins with ("N48210", also behind "/"), -1 for none.
qint64 blockNumberOf(QByteArrayView line);
// Whether the line holds a program number: "O" or ":" and a digit, outside a comment.
bool holdsProgramNumber(QByteArrayView line);
