#include "tool_scan.h"

#include "number_text.h"
#include "regular_file.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileDevice>
#include <algorithm>

namespace {

enum class LineRead { Line, End, TooLong };

// One line of an NC file, without its end. A file without line ends (a binary picked by
// mistake) must not fill memory: a line longer than maxLine is not read.
LineRead readNcLine(QIODevice &file, QByteArray &line, qint64 maxLine) {
    line.clear();
    char c;
    if (!file.getChar(&c))
        return LineRead::End;
    do {
        if (c == '\r') {
            char next;
            if (file.peek(&next, 1) == 1 && next == '\n')
                file.getChar(&next);
            return LineRead::Line;
        }
        if (line.size() == maxLine)
            return LineRead::TooLong;
        line.append(c);
    } while (file.getChar(&c));
    return LineRead::Line;
}

// Only the blank counts; a tab is part of the text.
QByteArray stripBlanks(const QByteArray &s) {
    qsizetype from = 0;
    qsizetype to = s.size();
    while (from < to && s[from] == ' ')
        ++from;
    while (to > from && s[to - 1] == ' ')
        --to;
    return s.mid(from, to - from);
}

QString cutAtLimit(QString name, const std::array<QString, 11> &LimitStrings, qint16 LimitCount) {
    const int count = std::clamp<int>(LimitCount, 0, int(LimitStrings.size()) - 1);
    for (int i = 1; i <= count; ++i) {
        const qsizetype at = name.indexOf(LimitStrings[i], 0, Qt::CaseSensitive);
        if (at >= 0)
            return name.left(at);
    }
    return name;
}

} // namespace

ToolScan scanToolLines(QIODevice &file, const std::array<QString, 11> &LimitStrings,
                       qint16 LimitCount, qint64 maxLine) {
    ToolScan scan;
    QByteArray raw;
    qint64 lineNumber = 0;
    for (LineRead read; (read = readNcLine(file, raw, maxLine)) != LineRead::End;) {
        ++lineNumber;
        if (read == LineRead::TooLong) {
            scan.failure = QCoreApplication::translate(
                               "ToolList", "The head of the program was not read to its end: %1.")
                               .arg(lineTooLong(lineNumber, maxLine));
            return scan;
        }
        // Bytes stand for themselves: one byte, one character.
        const QString line = QString::fromLatin1(stripBlanks(raw)).toLower();
        if (line.contains(QLatin1Char('%')))
            return scan;
        if (!line.startsWith(QLatin1Char('/')))
            continue;
        qsizetype at = 1;
        while (at < line.size() && line[at] == QLatin1Char(' '))
            ++at;
        if (at >= line.size() || line[at] != QLatin1Char('t'))
            continue;
        const QString fromT = line.mid(at);

        const std::optional<qint16> number = roundToInt16(numberOf(fromT.mid(1)));
        if (!number) {
            scan.failure = QCoreApplication::translate(
                               "ToolList", "The tool number in the line \"%1\" is out of range.")
                               .arg(line);
            return scan;
        }
        if (*number <= 0)
            continue;

        const qsizetype blank = fromT.indexOf(QLatin1Char(' '));
        if (blank < 0) {
            scan.failure =
                QCoreApplication::translate(
                    "ToolList", "The tool line \"%1\" has no tool name after its number.")
                    .arg(line);
            return scan;
        }
        qsizetype start = blank;
        while (start < fromT.size() && fromT[start] == QLatin1Char(' '))
            ++start;
        scan.names << cutAtLimit(fromT.mid(start), LimitStrings, LimitCount);
    }
    if (auto *device = qobject_cast<QFileDevice *>(&file);
        device && device->error() != QFileDevice::NoError)
        scan.failure = device->errorString();
    return scan;
}

ToolScan scanToolLines(const QByteArray &content, const std::array<QString, 11> &LimitStrings,
                       qint16 LimitCount, qint64 maxLine) {
    QByteArray copy = content;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    return scanToolLines(buffer, LimitStrings, LimitCount, maxLine);
}
