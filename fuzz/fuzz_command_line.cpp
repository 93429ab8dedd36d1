// The command line: GetParameter takes any line and leaves values that the rest of the program
// can use; and the arguments that the shell split, joined again by commandLineFromArgs, give back
// the options and values that were typed.

#include "command_line.h"
#include "fuzz_check.h"
#include "profile.h"

#include <QStringList>

namespace {

bool isSubstring(const QString &part, const QString &line) {
    return part.isEmpty() || line.contains(part);
}

void anyLine(const QString &line) {
    Globals g;
    GetParameter(g, line);
    FUZZ_CHECK(g.Language >= 1 && g.Language <= 4);
    FUZZ_CHECK(g.LimitCount >= 0 && g.LimitCount <= 10);
    FUZZ_CHECK(g.ToolDbEnabled == line.contains(u"-d"));
    FUZZ_CHECK(g.SimpleFileDialog == line.contains(u"-b"));
    FUZZ_CHECK(line.contains(u"-x") || g.LimitCount == 0);
    FUZZ_CHECK(line.contains(u"-s") ? !g.ConfigSection.contains(u' ')
                                    : g.ConfigSection == u"Default");
    // Every value is a piece of the line: nothing is made up.
    FUZZ_CHECK(!line.contains(u"-s") || isSubstring(g.ConfigSection, line));
    FUZZ_CHECK(isSubstring(g.DatabasePath, line));
    for (int i = 1; i <= g.LimitCount; ++i)
        FUZZ_CHECK(isSubstring(g.LimitStrings[size_t(i)], line));
    // Start-up refuses exactly the section names that would break dnc.ini.
    const bool twoLines = g.ConfigSection.contains(u'\n') || g.ConfigSection.contains(u'\r');
    FUZZ_CHECK(sectionNameProblem(g.ConfigSection).isEmpty() == !twoLines);
}

// A value as the fuzzer gives it, without what the option search would take for an option
// ('-') and without quotation marks, which have their own meaning on the line.
QString value(FuzzedDataProvider &in, bool blanks) {
    QString v = QString::fromUtf8(takeBytes(in, 24));
    v.replace(u'-', u'_').remove(u'"');
    if (!blanks)
        v.remove(u' ');
    return v;
}

void splitArguments(FuzzedDataProvider &in) {
    static const QStringList codes{"044", "033", "049", "039"};
    QList<QStringList> groups; // each option with its values, in the order typed
    bool languageGiven = false;
    qint16 language = 1;
    QString section = QStringLiteral("Default");
    QString database;
    bool db = false;
    QStringList limits;
    bool limitsGiven = false;
    bool simple = false;
    for (int i = 0; i < 5 && in.remaining_bytes() > 0; ++i) {
        switch (in.ConsumeIntegralInRange(0, 4)) {
        case 0: {
            if (languageGiven)
                break;
            languageGiven = true;
            const QString code =
                in.ConsumeBool() ? codes[in.ConsumeIntegralInRange(0, 3)] : value(in, true);
            const qsizetype at = codes.indexOf(code);
            language = at < 0 ? 1 : qint16(at + 1);
            groups << QStringList{"-c", code};
            break;
        }
        case 1:
            if (section != u"Default")
                break;
            section = value(in, false);
            if (section.isEmpty())
                section = QStringLiteral("S");
            groups << QStringList{"-s", section};
            break;
        case 2:
            if (db)
                break;
            db = true;
            database = value(in, true);
            groups << QStringList{"-d", database};
            break;
        case 3:
            if (limitsGiven)
                break;
            limitsGiven = true;
            for (int n = in.ConsumeIntegralInRange(0, 10); n > 0; --n)
                limits << value(in, true);
            groups << (QStringList{"-x"} + limits);
            break;
        default:
            if (!simple)
                groups << QStringList{"-b"};
            simple = true;
            break;
        }
    }
    QStringList args;
    for (const QStringList &group : groups)
        args << group;

    Globals g;
    GetParameter(g, commandLineFromArgs(args));
    FUZZ_CHECK(g.Language == language);
    FUZZ_CHECK(g.ConfigSection == section);
    FUZZ_CHECK(g.ToolDbEnabled == db && g.DatabasePath == database);
    FUZZ_CHECK(g.SimpleFileDialog == simple);
    FUZZ_CHECK(g.LimitCount == limits.size());
    for (int i = 0; i < limits.size(); ++i)
        FUZZ_CHECK(g.LimitStrings[size_t(i + 1)] == limits[i]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    if (in.ConsumeBool())
        splitArguments(in);
    else
        anyLine(QString::fromUtf8(restBytes(in)));
    return 0;
}
