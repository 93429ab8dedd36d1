// The dnc.ini reader and writer on any file: a value written is read back as written (one line,
// blanks around it trimmed, at most 254 characters), every other value stays what it was, every
// other line of the file stays byte for byte, and a name on two lines writes nothing.

#include "fuzz_check.h"
#include "profile.h"

#include <QFile>
#include <QTemporaryDir>
#include <vector>

namespace {

const QTemporaryDir &folder() {
    static const QTemporaryDir dir;
    return dir;
}

QByteArray fileBytes(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

std::vector<QByteArray> linesOf(const QByteArray &data) {
    std::vector<QByteArray> lines;
    qsizetype from = 0;
    while (from < data.size()) {
        const qsizetype nl = data.indexOf('\n', from);
        const qsizetype end = nl < 0 ? data.size() : nl + 1;
        lines.push_back(data.mid(from, end - from));
        from = end;
    }
    return lines;
}

// A name of the kind the program writes: a few letters, possibly a blank inside.
QString nameFrom(FuzzedDataProvider &in) {
    static const char letters[] = "abAB_1. ";
    QString name;
    for (int n = in.ConsumeIntegralInRange(1, 4); n > 0; --n)
        name += QLatin1Char(letters[in.ConsumeIntegralInRange<size_t>(0, sizeof letters - 2)]);
    name = name.trimmed();
    return name.isEmpty() ? QStringLiteral("a") : name;
}

// What a value written comes back as.
QString readBack(QString v) {
    const qsizetype lf = v.indexOf(u'\n'), cr = v.indexOf(u'\r');
    const qsizetype cut = lf < 0 ? cr : cr < 0 ? lf : qMin(lf, cr);
    if (cut >= 0)
        v.truncate(cut);
    auto blank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (!v.isEmpty() && blank(v.front()))
        v.remove(0, 1);
    while (!v.isEmpty() && blank(v.back()))
        v.chop(1);
    if (v.size() > 254) {
        v.truncate(254);
        if (v.back().isHighSurrogate())
            v.chop(1);
    }
    return v;
}

// A last line without its end, given the one the file uses.
QByteArray ended(QByteArray data) {
    if (!data.isEmpty() && !data.endsWith('\n'))
        data += data.contains("\r\n") ? "\r\n" : "\n";
    return data;
}

// The new file is the old one with one line changed, or one line put in, or a section added
// at its end; nothing else moved. A last line without its end may have gained one.
void onlyTheEntryChanged(const QByteArray &before, const QByteArray &after) {
    const auto a = linesOf(ended(before)), b = linesOf(ended(after));
    size_t head = 0;
    while (head < a.size() && head < b.size() && a[head] == b[head])
        ++head;
    size_t tail = 0;
    while (tail < a.size() - head && tail < b.size() - head &&
           a[a.size() - 1 - tail] == b[b.size() - 1 - tail])
        ++tail;
    FUZZ_CHECK(a.size() - head - tail <= 1);
    FUZZ_CHECK(b.size() - head - tail <= 3);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    Globals g;
    g.iniPath = folder().filePath(QStringLiteral("dnc.ini"));
    {
        QFile f(g.iniPath);
        FUZZ_CHECK(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(takeBytes(in, 4096));
    }
    // The names looked at: some of the file's own and some made up.
    std::vector<std::pair<QString, QString>> pairs;
    for (int i = 0; i < 6; ++i)
        pairs.emplace_back(nameFrom(in), nameFrom(in));

    while (in.remaining_bytes() > 0) {
        const QString section = nameFrom(in), key = nameFrom(in);
        const QString value = QString::fromUtf8(takeBytes(in, 300));
        const bool broken = in.ConsumeIntegralInRange(0, 7) == 0;
        const QString written = broken ? section + QStringLiteral("\nTapeDir=/etc") : section;

        std::vector<QString> values;
        for (const auto &[s, k] : pairs)
            values.push_back(GetProfile(g, s, k));
        const QByteArray before = fileBytes(g.iniPath);
        PutProfile(g, written, key, value);
        const QByteArray after = fileBytes(g.iniPath);

        if (broken) {
            FUZZ_CHECK(after == before);
            continue;
        }
        const QString got = GetProfile(g, section, key);
        FUZZ_CHECK(got == readBack(value));
        FUZZ_CHECK(got.size() <= 254 && !got.contains(u'\n'));
        onlyTheEntryChanged(before, after);
        for (size_t i = 0; i < pairs.size(); ++i) {
            const bool same = pairs[i].first.compare(section, Qt::CaseInsensitive) == 0 &&
                              pairs[i].second.compare(key, Qt::CaseInsensitive) == 0;
            if (!same)
                FUZZ_CHECK(GetProfile(g, pairs[i].first, pairs[i].second) == values[i]);
        }
    }
    return 0;
}
