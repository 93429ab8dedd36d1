#include "profile.h"

#include "regular_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringView>

#include <optional>
#include <vector>

// How a line is read:
// - Blanks and tabs around a line, around the section name inside the brackets, around the
//   key and around the value are not part of them: "[ Default ]" and "  Baud = 9600 " hold
//   section "Default", key "Baud", value "9600".
// - A section line begins with '[' and holds a ']'; the name runs to the last ']'.
// - An entry is a line with an '=': the key is what stands before the first '=', the value
//   everything after it, other '=' included. A value is taken as it stands: no quotes are
//   removed, so what is written comes back unchanged.
// - Any other line (comments, blank lines, text without '=', lines before the first section)
//   is ignored on reading and kept as it stands on writing.
// - With duplicate sections or keys, the first matching entry wins, for reading and writing.
// The file is handled as bytes and only names and values are decoded (UTF-8), so a write
// keeps every other line byte for byte, even one that is not valid UTF-8.

namespace {

constexpr int MaxValueLength = 254;

QByteArrayView trimBlanks(QByteArrayView s) {
    auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    qsizetype b = 0;
    qsizetype e = s.size();
    while (b < e && blank(s[b]))
        ++b;
    while (e > b && blank(s[e - 1]))
        --e;
    return s.sliced(b, e - b);
}

// The section named by a line, if the line is a section line.
std::optional<QByteArrayView> sectionOf(QByteArrayView line) {
    QByteArrayView t = trimBlanks(line);
    if (!t.startsWith('['))
        return std::nullopt;
    qsizetype close = t.lastIndexOf(']');
    if (close < 1)
        return std::nullopt;
    return trimBlanks(t.sliced(1, close - 1));
}

bool sameName(QByteArrayView fileName, const QString &name) {
    return QString::fromUtf8(fileName).compare(name, Qt::CaseInsensitive) == 0;
}

struct Entry {
    QByteArrayView key;
    QByteArrayView value;
};

std::optional<Entry> entryOf(QByteArrayView line) {
    QByteArrayView t = trimBlanks(line);
    if (t.startsWith(';') || t.startsWith('['))
        return std::nullopt;
    qsizetype eq = t.indexOf('=');
    if (eq < 0)
        return std::nullopt;
    return Entry{trimBlanks(t.first(eq)), trimBlanks(t.sliced(eq + 1))};
}

// The whole file; empty when there is none. Nothing when something is there that cannot be read
// as a settings file (a FIFO would hold start-up, /dev/zero would fill memory; an unreadable
// file must not be replaced by one holding a single key).
std::optional<QByteArray> readAll(const QString &path, QString *why = nullptr) {
    QFile f(path);
    QString reason;
    if (!openRegularFile(f, reason)) {
        if (!QFileInfo::exists(path))
            return QByteArray();
        if (why)
            *why = reason;
        return std::nullopt;
    }
    return f.readAll();
}

bool holdsLineBreak(const QString &name) {
    return name.contains(QLatin1Char('\n')) || name.contains(QLatin1Char('\r'));
}

// Each line with its own end ("\n", "\r\n", or none for a last line without one), so
// that a write puts back every line it does not change byte for byte.
std::vector<QByteArrayView> splitLines(const QByteArray &data) {
    std::vector<QByteArrayView> lines;
    QByteArrayView rest(data);
    while (!rest.isEmpty()) {
        qsizetype nl = rest.indexOf('\n');
        qsizetype len = nl < 0 ? rest.size() : nl + 1;
        lines.push_back(rest.first(len));
        rest = rest.sliced(len);
    }
    return lines;
}

// Where the key stands (line index), and where a new key of the section would go: behind the
// last non-blank line of the first matching section.
struct Place {
    std::optional<size_t> keyLine;
    std::optional<size_t> sectionEnd;
};

Place find(const std::vector<QByteArrayView> &lines, const QString &section, const QString &key) {
    Place p;
    bool inSection = false;
    bool inFirst = false;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (auto name = sectionOf(lines[i])) {
            inSection = sameName(*name, section);
            inFirst = inSection && !p.sectionEnd;
            if (inFirst)
                p.sectionEnd = i + 1;
            continue;
        }
        if (!inSection)
            continue;
        if (inFirst && !trimBlanks(lines[i]).isEmpty())
            p.sectionEnd = i + 1;
        auto e = entryOf(lines[i]);
        if (e && sameName(e->key, key)) {
            p.keyLine = i;
            return p;
        }
    }
    return p;
}

QString cutValue(QString v) {
    if (v.size() <= MaxValueLength)
        return v;
    v.truncate(MaxValueLength);
    if (v.back().isHighSurrogate())
        v.chop(1);
    return v;
}

// A value is one line of the file: it ends at its first line break.
QByteArray oneLine(const QString &value) {
    QByteArray v = value.toUtf8();
    qsizetype cut = v.indexOf('\n');
    qsizetype cr = v.indexOf('\r');
    if (cr >= 0 && (cut < 0 || cr < cut))
        cut = cr;
    return cut < 0 ? v : v.first(cut);
}

} // namespace

QString defaultIniPath() {
    // A relative XDG_CONFIG_HOME is ignored, as the XDG rules say: the file must not move
    // with the current folder.
    const QString xdg = qEnvironmentVariable("XDG_CONFIG_HOME");
    const QString dir = !xdg.isEmpty() && QDir::isAbsolutePath(xdg)
                            ? xdg
                            : QDir::homePath() + QStringLiteral("/.config");
    return QDir::cleanPath(dir + QStringLiteral("/dnc.ini"));
}

static QString profilePath(const Globals &g) {
    return g.iniPath.isEmpty() ? defaultIniPath() : g.iniPath;
}

QString iniFileProblem(const Globals &g) {
    const QString path = profilePath(g);
    QString why;
    if (readAll(path, &why))
        return QString();
    return QCoreApplication::translate(
               "Settings", "The settings file %1 %2: the settings can be neither read nor saved.")
        .arg(path, !notRegularReason(path).isEmpty()
                       ? why
                       : QCoreApplication::translate("Settings", "cannot be read (%1)").arg(why));
}

QString sectionNameProblem(const QString &section) {
    if (!holdsLineBreak(section))
        return QString();
    return QCoreApplication::translate(
        "Settings", "The configuration name given with -s holds a line break, which a "
                    "section of the settings file cannot hold. Start the program again "
                    "with a name on one line.");
}

QString GetProfile(const Globals &g, const QString &section, const QString &key) {
    const auto data = readAll(profilePath(g));
    if (!data)
        return {};
    const auto lines = splitLines(*data);
    const Place p = find(lines, section, key);
    if (!p.keyLine)
        return {};
    return cutValue(QString::fromUtf8(entryOf(lines[*p.keyLine])->value));
}

void PutProfile(const Globals &g, const QString &section, const QString &key,
                const QString &value) {
    // A name on two lines would write a broken header and entries into other sections.
    if (holdsLineBreak(section) || holdsLineBreak(key))
        return;
    const QString path = profilePath(g);
    const auto read = readAll(path);
    if (!read)
        return;
    const QByteArray &old = *read;
    const auto lines = splitLines(old);
    const QByteArray eol = old.contains("\r\n") ? QByteArrayLiteral("\r\n") : "\n";
    const Place p = find(lines, section, key);

    std::vector<QByteArray> out;
    out.reserve(lines.size() + 3);
    for (QByteArrayView line : lines)
        out.push_back(line.toByteArray());
    auto terminateLast = [&] {
        if (!out.empty() && !out.back().endsWith('\n'))
            out.back().append(eol);
    };
    const QByteArray newEntry = key.toUtf8() + '=' + oneLine(value) + eol;
    if (p.keyLine) {
        // The key keeps its spelling in the file, the line keeps its end.
        QByteArray &line = out[*p.keyLine];
        const QByteArray end = line.endsWith("\r\n") ? QByteArray("\r\n")
                               : line.endsWith('\n') ? QByteArray("\n")
                                                     : QByteArray();
        line = entryOf(line)->key.toByteArray() + '=' + oneLine(value) + end;
    } else if (p.sectionEnd) {
        if (*p.sectionEnd == out.size())
            terminateLast();
        out.insert(out.begin() + qsizetype(*p.sectionEnd), newEntry);
    } else {
        terminateLast();
        if (!out.empty() && !trimBlanks(out.back()).isEmpty())
            out.push_back(eol);
        out.push_back('[' + section.toUtf8() + ']' + eol);
        out.push_back(newEntry);
    }

    QByteArray data;
    data.reserve(old.size() + newEntry.size() + section.size() + 8);
    for (const QByteArray &line : out)
        data.append(line);

    // A folder or file that cannot be written leaves the old file as it was. Nothing is
    // reported: the settings are read anew at their next use, and what they then hold counts.
    const QFileInfo info(path);
    if (!QDir().mkpath(info.absolutePath()))
        return;
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return;
    // commit() in Qt 6.4 ignores a failed flush and would rename a cut file over the old
    // one (a full disk, a file size limit): flush first and give up on any short write.
    if (f.write(data) != data.size() || !f.flush()) {
        f.cancelWriting();
        return;
    }
    f.commit();
}
