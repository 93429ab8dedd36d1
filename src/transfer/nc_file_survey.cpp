#include "nc_file_survey.h"

#include "regular_file.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Looks at each whole line of a part-way send until the head's end and the start are found.
class StartFinder {
public:
    StartFinder(const StartPoint &start, NcFileSurvey &s) : m_start(start), m_s(s) {}

    bool done() const { return !m_start.partWay() || (m_headFound && m_startFound); }

    // `line` without its line end, `offset` where it begins, `end` where the next one does.
    void visit(QByteArrayView line, qint64 number, qint64 offset, qint64 end) {
        if (!m_headFound) {
            if (holdsProgramNumber(line)) {
                m_headFound = true;
                m_head = {number, end};
            } else if (m_percent.first == 0 && line.contains('%')) {
                m_percent = {number, end};
            }
        }
        if (m_startFound || !matches(line, number))
            return;
        m_startFound = true;
        m_s.startLine = number;
        m_s.startOffset = offset;
    }

    // Once the whole file has been seen.
    void finish(qint64 lines) {
        if (!m_start.partWay())
            return;
        if (!m_headFound)
            m_head = m_percent;
        m_s.headLines = m_head.first;
        m_s.headBytes = m_head.second;
        if (!m_startFound) {
            switch (m_start.kind) {
            case StartKind::Line:
                m_s.error = QCoreApplication::translate("File", "it has only %1 lines, no line %2")
                                .arg(lines)
                                .arg(m_start.number);
                m_s.missing = "NO LINE " + QByteArray::number(m_start.number);
                break;
            case StartKind::Block:
                m_s.error = QCoreApplication::translate("File", "no line of it is block N%1")
                                .arg(m_start.number);
                m_s.missing = "NO BLOCK N" + QByteArray::number(m_start.number);
                break;
            default:
                m_s.error = QCoreApplication::translate("File", "no line of it calls tool %1")
                                .arg(m_start.number);
                m_s.missing = "NO TOOL " + QByteArray::number(m_start.number);
                break;
            }
        } else if (m_s.startLine <= m_s.headLines) {
            m_s.error = QCoreApplication::translate(
                            "File", "%1 is line %2, inside the program's head (its first %3 "
                                    "lines, which go first anyway)")
                            .arg(m_start.text())
                            .arg(m_s.startLine)
                            .arg(m_s.headLines);
            m_s.missing = "IN THE HEAD";
        }
    }

private:
    bool matches(QByteArrayView line, qint64 number) const {
        switch (m_start.kind) {
        case StartKind::Line:
            return number == m_start.number;
        case StartKind::Block:
            return blockNumberOf(line) == m_start.number;
        case StartKind::Tool:
            return toolCalled(line) == m_start.number;
        case StartKind::Top:
            break;
        }
        return false;
    }

    const StartPoint &m_start;
    NcFileSurvey &m_s;
    bool m_headFound = false;
    bool m_startFound = false;
    std::pair<qint64, qint64> m_head{0, 0};    // lines, bytes
    std::pair<qint64, qint64> m_percent{0, 0}; // the same up to the first "%"
};

} // namespace

int toolCalled(QByteArrayView line) {
    int depth = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char c = line[i];
        depth += c == '(' ? 1 : c == ')' && depth > 0 ? -1 : 0;
        if (depth > 0 || (c != 'T' && c != 't') || i + 1 >= line.size() || !isDigit(line[i + 1]))
            continue;
        qsizetype end = i + 1;
        while (end < line.size() && isDigit(line[end]))
            ++end;
        const QByteArrayView digits = line.sliced(i + 1, end - i - 1);
        const QByteArrayView tool = digits.size() == 4 ? digits.first(2) : digits;
        return tool.size() > 6 ? -1 : QByteArray(tool.data(), tool.size()).toInt();
    }
    return -1;
}

qint64 blockNumberOf(QByteArrayView line) {
    qsizetype i = 0;
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t' || line[i] == '/'))
        ++i;
    if (i + 1 >= line.size() || (line[i] != 'N' && line[i] != 'n') || !isDigit(line[i + 1]))
        return -1;
    qsizetype end = i + 1;
    while (end < line.size() && isDigit(line[end]))
        ++end;
    return end - i - 1 > 12 ? -1 : QByteArray(line.data() + i + 1, end - i - 1).toLongLong();
}

bool holdsProgramNumber(QByteArrayView line) {
    int depth = 0;
    for (qsizetype i = 0; i + 1 < line.size(); ++i) {
        const char c = line[i];
        depth += c == '(' ? 1 : c == ')' && depth > 0 ? -1 : 0;
        if (depth == 0 && (c == 'O' || c == 'o' || c == ':') && isDigit(line[i + 1]))
            return true;
    }
    return false;
}

NcFileSurvey surveyNcFile(const QString &path, qint64 maxLine, const StartPoint &start) {
    NcFileSurvey s;
    QFile file(path);
    if (!openRegularFile(file, s.error))
        return s;
    StartFinder finder(start, s);
    QByteArray block(256 * 1024, Qt::Uninitialized);
    QByteArray line; // kept only while the finder still looks
    qint64 lineNumber = 1, lineLength = 0, lineStart = 0, offset = 0;
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
        qsizetype from = 0;
        while (from < n) {
            if (afterCr) {
                afterCr = false;
                const bool lf = got[from] == '\n';
                if (lf) {
                    ++s.lineFeeds;
                    ++from;
                }
                if (!finder.done())
                    finder.visit(line, lineNumber - 1, lineStart, offset + from);
                lineStart = offset + from;
                line.clear();
                if (from >= n)
                    break;
            }
            const qsizetype cr = got.indexOf('\r', from);
            const qsizetype end = cr < 0 ? n : cr;
            const QByteArrayView part = got.sliced(from, end - from);
            s.lineFeeds += part.count('\n');
            lineLength += part.size();
            if (lineLength > maxLine) {
                s.error = lineTooLong(lineNumber, maxLine);
                return s;
            }
            if (!finder.done())
                line += part;
            if (cr < 0)
                break;
            ++s.carriageReturns;
            ++lineNumber;
            lineLength = 0;
            afterCr = true;
            from = cr + 1;
        }
        offset += n;
    }
    s.size = offset;
    qint64 lines = lineNumber - 1;
    if (afterCr && !finder.done()) // the last line ended by CR at the very end
        finder.visit(line, lines, lineStart, offset);
    else if (!afterCr && lineStart < offset) { // a last line without a line end
        ++lines;
        if (!finder.done())
            finder.visit(line, lines, lineStart, offset);
    }
    finder.finish(lines);
    return s;
}

QByteArray sha256OfFile(const QString &path) {
    QFile file(path);
    QString why;
    if (!openRegularFile(file, why))
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return hash.addData(&file) ? hash.result().toHex() : QByteArray();
}
