#include "program_lookup.h"

#include "regular_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace {

// Every file name a request for `name` may mean, in lower case.
QSet<QString> wantedNames(const QString &name) {
    QStringList bases{name};
    const bool digitsOnly = !name.isEmpty() && std::all_of(name.begin(), name.end(),
                                                           [](QChar c) { return c.isDigit(); });
    if (digitsOnly)
        bases << u'O' + name;
    else if (name.size() > 1 && name.front().toUpper() == u'O' &&
             std::all_of(name.begin() + 1, name.end(), [](QChar c) { return c.isDigit(); }))
        bases << name.mid(1);
    QSet<QString> wanted;
    for (const QString &b : bases) {
        wanted << b.toLower();
        for (const char *ext : ProgramExtensions)
            wanted << (b + QLatin1String(ext)).toLower();
    }
    return wanted;
}

} // namespace

ProgramLookup findProgram(const QString &folder, const QString &name) {
    ProgramLookup result;
    // A name is a name in the folder: no way up, down or back to the root.
    if (name.contains(u'/') || name.contains(u'\\') || name == u".." || name == u"." ||
        name.contains(QChar(0))) {
        result.refusal = LookupRefusal::NotAllowed;
        return result;
    }
    const QSet<QString> wanted = wantedNames(name);
    QStringList matches;
    const QDir dir(folder);
    for (const QString &entry : dir.entryList(QDir::Files | QDir::System | QDir::Hidden)) {
        if (wanted.contains(entry.toLower()))
            matches << entry;
    }
    if (matches.isEmpty()) {
        result.refusal = LookupRefusal::NotFound;
        return result;
    }
    if (matches.size() > 1) {
        result.refusal = LookupRefusal::Ambiguous;
        return result;
    }
    const QString path = dir.filePath(matches.first());
    // A link may stay inside the folder; one that leads out of it, or nowhere, is refused.
    const QString real = QFileInfo(path).canonicalFilePath();
    const QString home = QFileInfo(folder).canonicalFilePath();
    if (real.isEmpty() || home.isEmpty() || !real.startsWith(home + u'/')) {
        result.refusal = real.isEmpty() ? LookupRefusal::NotFound : LookupRefusal::NotAllowed;
        return result;
    }
    QFile file(real);
    QString why;
    if (!openRegularFile(file, why)) {
        result.refusal = LookupRefusal::ReadError;
        return result;
    }
    result.path = real;
    return result;
}

QByteArray refusalWords(LookupRefusal refusal) {
    switch (refusal) {
    case LookupRefusal::NotFound:
        return "NOT FOUND";
    case LookupRefusal::NotAllowed:
        return "NOT ALLOWED";
    case LookupRefusal::Ambiguous:
        return "AMBIGUOUS";
    case LookupRefusal::ReadError:
        return "READ ERROR";
    case LookupRefusal::None:
        break;
    }
    return {};
}
