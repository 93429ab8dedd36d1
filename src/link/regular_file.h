#pragma once
// Files that the operator names may be anything: a FIFO holds an open until a writer comes, a
// device such as /dev/zero reads forever. Only a regular file is read, and one line of it is
// read only up to a bound, so that neither the window nor memory is held by a bad choice.

#include <QFile>
#include <QString>

// The longest line read from an NC program; a longer one is reported, not read.
inline constexpr qint64 MaxLineBytes = 16 * 1024 * 1024;

// "line 3 is longer than 16 MB": what the operator is told of a line that was not read.
QString lineTooLong(qint64 lineNumber, qint64 maxLine);

// Why an existing path is no regular file ("is a FIFO (named pipe)"); empty when it is one, or
// when nothing is there. Never blocks.
QString notRegularReason(const QString &path);

// Opens file.fileName() for reading without ever blocking. False with `why` set when it cannot
// be opened or is no regular file.
bool openRegularFile(QFile &file, QString &why);
