#pragma once
// Where a send starts, when not at the top: a long program sent again after a broken tool or a
// power cut. The program's head (up to its number) always goes first.

#include <QString>

enum class StartKind { Top, Line, Block, Tool };

struct StartPoint {
    StartKind kind = StartKind::Top;
    qint64 number = 0; // the line (from 1), the block's number (N48210: 48210), the tool's

    bool partWay() const { return kind != StartKind::Top; }
    // "line 1020", "block N48210", "tool 5"; empty at the top.
    QString text() const {
        switch (kind) {
        case StartKind::Line:
            return QStringLiteral("line %1").arg(number);
        case StartKind::Block:
            return QStringLiteral("block N%1").arg(number);
        case StartKind::Tool:
            return QStringLiteral("tool %1").arg(number);
        case StartKind::Top:
            break;
        }
        return {};
    }
};
