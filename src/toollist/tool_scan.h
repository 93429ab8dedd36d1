#pragma once
// The scan of an NC program's head for its tool lines: "/", blanks, "t", a number above 0,
// a blank, the tool's name. Works on bytes and needs no database.

#include "regular_file.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <array>

class QIODevice;

struct ToolScan {
    QStringList names; // one per tool line, in file order; those before a failure included
    QString failure;   // why the scan stopped early; empty when the head was read through
    bool failed() const { return !failure.isEmpty(); }
};

// Reads lines (ending at CR or CR LF; a lone LF stays in the line) up to the first one that
// holds "%", and no further. LimitStrings 1..LimitCount cut the names, first listed first.
// A line longer than maxLine is not read: the scan fails there.
ToolScan scanToolLines(QIODevice &file, const std::array<QString, 11> &LimitStrings,
                       qint16 LimitCount, qint64 maxLine = MaxLineBytes);
ToolScan scanToolLines(const QByteArray &content, const std::array<QString, 11> &LimitStrings,
                       qint16 LimitCount, qint64 maxLine = MaxLineBytes);
