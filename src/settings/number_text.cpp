#include "number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// A magnitude too large or too small for a double: infinity or zero, told apart by the
// decimal exponent of the first significant digit.
double outOfRange(const QString &mantissa, int exponent, bool negative) {
    long long position = 0; // decimal exponent of the first significant digit
    const qsizetype dot = mantissa.indexOf(u'.');
    const qsizetype intEnd = dot < 0 ? mantissa.size() : dot;
    qsizetype first = 0;
    while (first < mantissa.size() && (mantissa[first] == u'0' || mantissa[first] == u'.'))
        ++first;
    if (first < intEnd)
        position = intEnd - first - 1;
    else
        position = -(first - intEnd); // first - intEnd counts the dot and the zeros behind it
    const double v = position + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return negative ? -v : v;
}

} // namespace

double numberOf(const QString &text) {
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text[i] == u' ')
        ++i;

    bool negative = false;
    if (i < n && (text[i] == u'+' || text[i] == u'-'))
        negative = text[i++] == u'-';

    const qsizetype mantissaStart = i;
    qsizetype digits = 0;
    while (i < n && isDigit(text[i]))
        ++i, ++digits;
    if (i < n && text[i] == u'.') {
        ++i;
        while (i < n && isDigit(text[i]))
            ++i, ++digits;
    }
    if (digits == 0)
        return 0.0;
    const QString mantissa = text.mid(mantissaStart, i - mantissaStart);

    // An exponent counts only with at least one digit: "1e" and "1e+" are the number 1.
    QString exponentText;
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        qsizetype j = i + 1;
        if (j < n && (text[j] == u'+' || text[j] == u'-'))
            ++j;
        const qsizetype expDigits = j;
        while (j < n && isDigit(text[j]))
            ++j;
        if (j > expDigits)
            exponentText = text.mid(i + 1, j - i - 1);
    }

    // from_chars reads the C form whatever the locale; it takes no '+' of its own.
    QByteArray number = mantissa.toLatin1();
    if (!exponentText.isEmpty())
        number += 'e' + exponentText.toLatin1();
    double value = 0.0;
    const auto [end, ec] =
        std::from_chars(number.constData(), number.constData() + number.size(), value);
    (void)end;
    if (ec == std::errc::result_out_of_range) {
        // Saturate a huge exponent; beyond a billion it changes nothing anyway.
        const QString e = exponentText.startsWith(u'+') ? exponentText.mid(1) : exponentText;
        bool ok = false;
        long long x = e.isEmpty() ? 0 : e.toLongLong(&ok);
        if (!e.isEmpty() && !ok)
            x = e.startsWith(u'-') ? -1'000'000'000LL : 1'000'000'000LL;
        x = std::clamp(x, -1'000'000'000LL, 1'000'000'000LL);
        return outOfRange(mantissa, int(x), negative);
    }
    return negative ? -value : value;
}

std::optional<qint16> roundToInt16(double value) {
    if (!std::isfinite(value))
        return std::nullopt;
    const double down = std::floor(value);
    const double rest = value - down;
    double r = down;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(down, 2.0) != 0.0))
        r = down + 1.0;
    if (r < -32768.0 || r > 32767.0)
        return std::nullopt;
    return qint16(r);
}
