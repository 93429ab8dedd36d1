#include "transfer.h"

QByteArray StripSpaces(const QByteArray &line) {
    // Only the space itself goes; tabs and every other byte stay.
    QByteArray out;
    out.reserve(line.size());
    for (const char c : line)
        if (c != ' ')
            out += c;
    return out;
}
