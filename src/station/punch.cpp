#include "punch.h"

#include <QStringList>

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// The digits of a program number without the zeros in front: "O0012" and ":12" both "12".
QByteArray numberDigits(const QByteArray &number) {
    QByteArray digits = number.mid(1);
    while (digits.size() > 1 && digits.front() == '0')
        digits.remove(0, 1);
    return digits;
}

} // namespace

QByteArray programNumberOf(const QByteArray &punch) {
    bool inComment = false; // an "O" in a comment ("(TOOL 5)") is no program number
    for (qsizetype i = 0; i + 1 < punch.size(); ++i) {
        const char c = punch[i];
        if (c == '(')
            inComment = true;
        else if (c == ')')
            inComment = false;
        if (inComment || (c != 'O' && c != 'o' && c != ':') || !isDigit(punch[i + 1]))
            continue;
        qsizetype end = i + 1;
        while (end < punch.size() && isDigit(punch[end]))
            ++end;
        return punch.mid(i, end - i);
    }
    return {};
}

QByteArray firstCommentOf(const QByteArray &punch) {
    const qsizetype open = punch.indexOf('(');
    if (open < 0)
        return {};
    const qsizetype close = punch.indexOf(')', open + 1);
    // A comment runs to its ")" or, cut short, to the end of its line.
    qsizetype end = close < 0 ? punch.size() : close;
    for (const char stop : {'\r', '\n'}) {
        const qsizetype at = punch.indexOf(stop, open + 1);
        if (at >= 0 && at < end)
            end = at;
    }
    return punch.mid(open + 1, end - open - 1);
}

bool sameProgramNumber(const QByteArray &a, const QByteArray &b) {
    return !a.isEmpty() && !b.isEmpty() && numberDigits(a) == numberDigits(b);
}

std::optional<ProgramRequest> requestOf(const QByteArray &punch, const QByteArray &requestNumber) {
    if (!sameProgramNumber(programNumberOf(punch), requestNumber))
        return std::nullopt;
    QString comment = QString::fromLatin1(firstCommentOf(punch)).trimmed();
    if (comment.startsWith(QLatin1String("PRG="), Qt::CaseInsensitive))
        comment = comment.mid(4).trimmed();
    ProgramRequest request;
    const qsizetype slash = comment.indexOf(QLatin1String(" /"));
    request.name = (slash < 0 ? comment : comment.left(slash)).trimmed();
    if (slash >= 0)
        request.place = comment.mid(slash + 1).trimmed();
    return request; // a request that names nothing is answered as one
}

std::optional<StartPoint> startPointOf(const QString &place) {
    const QStringList words = place.simplified().split(u' ');
    if (words.size() != 2)
        return std::nullopt;
    const QString what = words[0].toUpper();
    QString number = words[1];
    StartPoint p;
    if (what == u"/LI") {
        p.kind = StartKind::Line;
    } else if (what == u"/BL") {
        p.kind = StartKind::Block;
        if (number.startsWith(u'N', Qt::CaseInsensitive))
            number.remove(0, 1);
    } else if (what == u"/TO") {
        p.kind = StartKind::Tool;
        if (number.startsWith(u'T', Qt::CaseInsensitive))
            number.remove(0, 1);
    } else {
        return std::nullopt;
    }
    bool ok = false;
    p.number = number.toLongLong(&ok);
    if (!ok || p.number <= 0 || number.size() > 12 || !number.front().isDigit())
        return std::nullopt;
    return p;
}
