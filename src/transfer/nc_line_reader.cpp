#include "nc_line_reader.h"

NcLineReader::NcLineReader(const QString &path, qint64 blockSize, qint64 maxLine)
    : m_file(path), m_blockSize(blockSize), m_maxLine(maxLine) {}

bool NcLineReader::open() {
    return openRegularFile(m_file, m_error);
}

bool NcLineReader::atEnd() const {
    return failed() || (m_pos >= m_block.size() && (m_eof || m_file.atEnd()));
}

bool NcLineReader::fill() {
    m_block = m_eof ? QByteArray() : m_file.read(m_blockSize);
    m_pos = 0;
    // A failed read ends the file too, or a reader would loop on it forever.
    if (m_block.isEmpty()) {
        m_eof = true;
        if (m_file.error() != QFileDevice::NoError)
            m_error = m_file.errorString();
    }
    return !m_block.isEmpty();
}

void NcLineReader::skipAfterHead(qint64 headLines, qint64 startLine, qint64 startOffset,
                                 qint64 bytes) {
    m_skipAfter = headLines;
    m_skipToLine = startLine;
    m_skipToOffset = startOffset;
    m_planned = bytes;
}

QByteArray NcLineReader::readLine() {
    QByteArray line;
    if (failed())
        return line;
    if (m_lineNumber == m_skipAfter) {
        // The lines between the head and the start are not read at all: a restart near the
        // end of a long program goes out at once.
        m_skipAfter = -1;
        if (!m_file.seek(m_skipToOffset)) {
            m_error = m_file.errorString();
            return line;
        }
        m_block.clear();
        m_pos = 0;
        m_eof = false;
        m_lineNumber = m_skipToLine - 1;
    }
    ++m_lineNumber;
    while (m_pos < m_block.size() || fill()) {
        const qsizetype cr = m_block.indexOf('\r', m_pos);
        const qsizetype end = cr < 0 ? m_block.size() : cr;
        if (line.size() + (end - m_pos) > m_maxLine) {
            // A file without line ends (a binary, a link to a device) would fill memory.
            m_error = lineTooLong(m_lineNumber, m_maxLine);
            return QByteArray();
        }
        line += QByteArrayView(m_block).sliced(m_pos, end - m_pos);
        if (cr < 0) {
            m_pos = m_block.size();
            continue;
        }
        m_pos = cr + 1;
        // Look ahead for the LF of a CR LF, also across the end of the block.
        if (m_pos >= m_block.size())
            fill();
        if (m_pos < m_block.size() && m_block.at(m_pos) == '\n')
            ++m_pos;
        break;
    }
    return failed() ? QByteArray() : line;
}
