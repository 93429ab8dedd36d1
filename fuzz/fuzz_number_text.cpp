// The number reading of settings values and tool lines, against the C library: blanks skipped,
// the longest prefix that is a decimal number read as strtod reads it, 0 for anything else; and
// the rounding to 16 bits against nearbyint (a half to the even neighbour).

#include "fuzz_check.h"
#include "number_text.h"

#include <cfenv>
#include <cmath>
#include <cstdlib>

namespace {

bool digit(char c) {
    return c >= '0' && c <= '9';
}

// The prefix that is a number: [+-] digits [. digits] [e [+-] digits], at least one digit in
// the mantissa and in the exponent (an exponent without digits is not part of it).
double reference(const QByteArray &text) {
    qsizetype i = 0;
    while (i < text.size() && text[i] == ' ')
        ++i;
    const qsizetype start = i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    qsizetype digits = 0;
    while (i < text.size() && digit(text[i]))
        ++i, ++digits;
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && digit(text[i]))
            ++i, ++digits;
    }
    if (digits == 0)
        return 0.0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        qsizetype j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-'))
            ++j;
        const qsizetype first = j;
        while (j < text.size() && digit(text[j]))
            ++j;
        if (j > first)
            i = j;
    }
    const QByteArray number = text.mid(start, i - start);
    return std::strtod(number.constData(), nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString text = QString::fromLatin1(bytes);
    const double value = numberOf(text);
    FUZZ_CHECK(value == reference(bytes));

    const std::optional<qint16> rounded = roundToInt16(value);
    if (!std::isfinite(value)) {
        FUZZ_CHECK(!rounded);
        return 0;
    }
    std::fesetround(FE_TONEAREST);
    const double nearest = std::nearbyint(value);
    FUZZ_CHECK(rounded.has_value() == (nearest >= -32768.0 && nearest <= 32767.0));
    if (rounded)
        FUZZ_CHECK(double(*rounded) == nearest);
    return 0;
}
