#pragma once
// The characters of the wire dialogue. One character is one byte; the program never sends LF.

#include <QByteArray>

namespace WireChar {
inline constexpr char EOT = 0x04; // ends a program or a listing
inline constexpr char CR = 0x0d;  // ends a line
inline constexpr char DLE = 0x10; // first half of the go-ahead
inline constexpr char XON = 0x11;
inline constexpr char XOFF = 0x13;
} // namespace WireChar

// The line end on the wire.
inline const QByteArray CR = QByteArrayLiteral("\r");
// The go-ahead, DLE then "7": the side that has taken a line gives it.
inline const QByteArray PromptSeq = QByteArrayLiteral("\x10\x37");
