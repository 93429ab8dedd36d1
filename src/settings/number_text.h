#pragma once
// Numbers read from text the way settings values and tool lines are read: leading blanks
// skipped, the number ends at the first character that cannot belong to it, text that does
// not begin with a number gives 0.

#include <QString>
#include <optional>

double numberOf(const QString &text);
// Rounded to the nearest integer, a half to the even neighbour; nothing when it does not fit
// a 16-bit signed integer.
std::optional<qint16> roundToInt16(double value);
