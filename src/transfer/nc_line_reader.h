#pragma once
// Reads an NC program as bytes, one line at a time, a block at a time, so that memory does
// not grow with the file. A line ends at CR or CR LF (one line end, even when the two fall
// in different blocks); a lone LF stays in the line. The last line needs no line end, and a
// line end at the very end makes no further line. Only a regular file is opened, and a line
// longer than `maxLine` is not read: the reader fails there and says why.

#include "regular_file.h"

#include <QByteArray>
#include <QFile>
#include <QString>

class NcLineReader {
public:
    explicit NcLineReader(const QString &path, qint64 blockSize = 64 * 1024,
                          qint64 maxLine = MaxLineBytes);

    bool open();
    // Why the open or the last read failed.
    QString errorString() const { return m_error; }
    // A read failed or a line was too long: nothing more is read.
    bool failed() const { return !m_error.isEmpty(); }
    // The bytes this reader will give, line ends included: the file's, or the plan's.
    qint64 size() const { return m_planned >= 0 ? m_planned : m_file.size(); }
    // A part-way read: the first `headLines` lines, then the lines from `startLine` on, which
    // begin at byte `startOffset`; `bytes` in all.
    void skipAfterHead(qint64 headLines, qint64 startLine, qint64 startOffset, qint64 bytes);
    bool atEnd() const;
    QByteArray readLine(); // without its line end; empty once failed
    void close() { m_file.close(); }

private:
    bool fill();

    QFile m_file;
    qint64 m_blockSize;
    qint64 m_maxLine;
    qint64 m_lineNumber = 0;
    QByteArray m_block;
    qsizetype m_pos = 0;
    bool m_eof = false;
    QString m_error;
    qint64 m_skipAfter = -1; // the line after which the reader jumps; -1: none
    qint64 m_skipToLine = 0;
    qint64 m_skipToOffset = 0;
    qint64 m_planned = -1;
};
