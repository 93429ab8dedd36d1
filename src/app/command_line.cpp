#include "command_line.h"

#include "screen.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace {

// What follows an option's two characters, leading blanks (code 32 only) removed; empty when
// the option is not on the line. Only the first place of the option counts.
std::optional<QString> valueOf(const QString &line, QStringView option) {
    const qsizetype at = line.indexOf(option, 0, Qt::CaseSensitive);
    if (at < 0)
        return std::nullopt;
    qsizetype i = at + option.size();
    while (i < line.size() && line[i] == u' ')
        ++i;
    return line.mid(i);
}

QString upToBlank(const QString &value) {
    const qsizetype blank = value.indexOf(u' ');
    return blank < 0 ? value : value.left(blank);
}

// The limit strings behind -x. Two cases are decided here so that the program always starts
// and never writes outside the table:
// - an opening quotation mark with no closing one keeps the rest of the line after the mark
//   as the string, and ends the loop keeping it;
// - text behind the closing mark of the tenth string is dropped: LimitCount stays 10.
void readLimitStrings(Globals &g, const QString &value) {
    constexpr qint16 Last = qint16(std::tuple_size_v<decltype(g.LimitStrings)> - 1);
    qint16 n = 1;
    g.LimitStrings[n] = value;
    g.LimitCount = n;
    for (;;) {
        QString &s = g.LimitStrings[n];
        if (s.startsWith(u'"')) {
            const qsizetype q = s.indexOf(u'"', 1); // 0-based place of the closing mark
            if (q < 0) {
                s = s.mid(1);
                return;
            }
            QString rest = s.mid(q + 1);
            s = s.mid(1, q - 1);
            if (rest.isEmpty() || n == Last)
                return;
            qsizetype i = 0;
            while (i < rest.size() && rest[i] == u' ')
                ++i;
            g.LimitStrings[++n] = rest.mid(i);
            g.LimitCount = n;
        } else if (const qsizetype blank = s.indexOf(u' '); blank >= 0) {
            s.truncate(blank);
            return;
        } else {
            // An unquoted string that reaches the end of the line drops them all.
            g.LimitCount = 0;
            return;
        }
    }
}

} // namespace

qint16 languageOf(const QString &code) {
    if (code == u"033")
        return 2;
    if (code == u"049")
        return 3;
    if (code == u"039")
        return 4;
    return 1; // "044", and any other code
}

void GetParameter(Globals &g, const QString &line) {
    g.Language = 1;
    g.ConfigSection = QStringLiteral("Default");

    if (const auto v = valueOf(line, u"-c"))
        g.Language = languageOf(upToBlank(*v));

    if (const auto v = valueOf(line, u"-s"))
        g.ConfigSection = upToBlank(*v);

    if (const auto v = valueOf(line, u"-d")) {
        if (v->startsWith(u'"')) {
            // A path between quotation marks may hold blanks; an unclosed mark takes the rest
            // of the line.
            const qsizetype q = v->indexOf(u'"', 1);
            g.DatabasePath = q < 0 ? v->mid(1) : v->mid(1, q - 1);
        } else {
            g.DatabasePath = upToBlank(*v);
        }
        g.ToolDbEnabled = true;
    }

    if (const auto v = valueOf(line, u"-x"))
        readLimitStrings(g, *v);
    else
        g.LimitCount = 0;

    g.SimpleFileDialog = line.contains(u"-b", Qt::CaseSensitive);
}

QString commandLineFromArgs(const QStringList &args) {
    // The shell has split the line and taken the quotation marks away; put back what the
    // option reading needs: blanks inside a value, and the marks around limit strings. An
    // argument that is exactly an option stays one wherever it stands. Everything behind -x
    // is read as limit strings, so its group goes last: only the arguments between -x and the
    // next option are limit strings, and the options after them keep their meaning.
    static const QStringList options{QStringLiteral("-c"), QStringLiteral("-s"),
                                     QStringLiteral("-d"), QStringLiteral("-x"),
                                     QStringLiteral("-b")};
    // A piece of a command line handed over as one argument ("-c 033 -s Shop"): a blank, and an
    // option at its start or behind a blank. Marks around it would end up in its last value.
    const auto isLinePiece = [](const QString &a) {
        return a.contains(u' ') && std::any_of(options.begin(), options.end(), [&](const auto &o) {
                   return a.startsWith(o) || a.contains(u' ' + o);
               });
    };
    enum class Group { Plain, Limits, RepeatedX } group = Group::Plain;
    QStringList parts;
    QStringList limits;
    for (const QString &a : args) {
        if (options.contains(a)) {
            if (a != u"-x") {
                group = Group::Plain;
                parts << a;
            } else if (limits.isEmpty()) {
                group = Group::Limits;
                limits << a;
            } else {
                group = Group::RepeatedX; // ignored, as any repeated option is
            }
            continue;
        }
        if (isLinePiece(a)) {
            group = Group::Plain;
            parts << a;
        } else if (group == Group::Limits) {
            limits << u'"' + a + u'"';
        } else if (group == Group::Plain) {
            // The whole line handed over as one argument keeps its own marks.
            parts << (!a.contains(u'"') && (a.isEmpty() || a.contains(u' ')) ? u'"' + a + u'"' : a);
        }
    }
    return (parts + limits).join(u' ');
}

QString helpText(qint16 language) {
    QStringList lines;
    QString word;
    switch (language) {
    case 2:
        lines = {QStringLiteral("Options de ligne de commande :"),
                 QStringLiteral("-c 033 ou -c 044 ou -c 049"),
                 QStringLiteral("-s Nom_de_configuration"), QStringLiteral("-d Base_de_données")};
        word = QStringLiteral("chaine_de_limitation");
        break;
    case 3:
        lines = {QStringLiteral("Optionen der Befehlszeile :"),
                 QStringLiteral("-c 033 oder -c 044 oder -c 049"),
                 QStringLiteral("-s Name_der_Konfiguration"), QStringLiteral("-d Datenbank_Datei")};
        word = QStringLiteral("Beschränkungs_Zeichen");
        break;
    default:
        lines = {QStringLiteral("Command line option :"),
                 QStringLiteral("-c 033 or -c 044 or -c 049"),
                 QStringLiteral("-s Configuration_Name"), QStringLiteral("-d Database")};
        word = QStringLiteral("Limit_string");
        break;
    }
    lines << QStringLiteral("-x \"") + word + u'"';
    lines << (language == 2   ? QStringLiteral("-b dialog d'ouverture simplifié")
              : language == 3 ? QStringLiteral("-b vereinfachter Datei Dialog")
                              : QStringLiteral("-b simple file open dialog"));
    // LF then CR, in this order, behind each line but the last.
    return lines.join(QStringLiteral("\n\r"));
}

void DisplayHelp(const Globals &g, Screen &screen) {
    screen.msgBox(helpText(g.Language), BoxIcon::None, QString());
}
