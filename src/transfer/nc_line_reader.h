#pragma once
// Reads an NC program as bytes, one line at a time, a block at a time, so that memory does
// not grow with the file. A line ends at CR or CR LF (one line end, even when the two fall
// in different blocks); a lone LF stays in the line. The last line needs no line end, and a
// line end at the very end makes no further line.

#include <QByteArray>
#include <QFile>
#include <QString>

class NcLineReader {
public:
    explicit NcLineReader(const QString &path, qint64 blockSize = 64 * 1024);

    bool open();
    QString errorString() const { return m_file.errorString(); }
    qint64 size() const { return m_file.size(); }
    bool atEnd() const;
    QByteArray readLine(); // without its line end
    void close() { m_file.close(); }

private:
    bool fill();

    QFile m_file;
    qint64 m_blockSize;
    QByteArray m_block;
    qsizetype m_pos = 0;
    bool m_eof = false;
};
