#include "nc_line_reader.h"

NcLineReader::NcLineReader(const QString &path, qint64 blockSize)
    : m_file(path), m_blockSize(blockSize) {}

bool NcLineReader::open() {
    return m_file.open(QIODevice::ReadOnly);
}

bool NcLineReader::atEnd() const {
    return m_pos >= m_block.size() && (m_eof || m_file.atEnd());
}

bool NcLineReader::fill() {
    m_block = m_eof ? QByteArray() : m_file.read(m_blockSize);
    m_pos = 0;
    // A failed read ends the file too, or a reader would loop on it forever.
    if (m_block.isEmpty())
        m_eof = true;
    return !m_block.isEmpty();
}

QByteArray NcLineReader::readLine() {
    QByteArray line;
    while (m_pos < m_block.size() || fill()) {
        const qsizetype cr = m_block.indexOf('\r', m_pos);
        if (cr < 0) {
            line += QByteArrayView(m_block).sliced(m_pos);
            m_pos = m_block.size();
            continue;
        }
        line += QByteArrayView(m_block).sliced(m_pos, cr - m_pos);
        m_pos = cr + 1;
        // Look ahead for the LF of a CR LF, also across the end of the block.
        if (m_pos >= m_block.size())
            fill();
        if (m_pos < m_block.size() && m_block.at(m_pos) == '\n')
            ++m_pos;
        break;
    }
    return line;
}
