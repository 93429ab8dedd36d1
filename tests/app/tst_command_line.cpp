// The command line: what the program reads first.

#include "command_line.h"
#include "globals.h"
#include "rows.h"

namespace {

// What GetParameter leaves, defaults left out.
QString leaves(const Globals &g) {
    const QStringList limits(&g.LimitStrings[1], &g.LimitStrings[1] + g.LimitCount);
    QStringList parts;
    parts << (g.Language != 1 ? QStringLiteral("c%1").arg(g.Language) : QString())
          << (g.ConfigSection != u"Default" ? "s[" + g.ConfigSection + "]" : QString())
          << (g.ToolDbEnabled ? "d[" + g.DatabasePath + "]" : QString())
          << (g.LimitCount > 0 ? "x[" + limits.join(u'|') + "]" : QString())
          << (g.SimpleFileDialog ? QStringLiteral("b") : QString());
    parts.removeAll(QString());
    return parts.join(u' ');
}

} // namespace

class TstCommandLine : public QObject {
    Q_OBJECT
private slots:
    // A row with arguments first rebuilds the line from them as main does, and checks it.
    void getParameter_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("leaves");
        const QStringList typed; // the line as it stands

        row("no blank needed", "-c033", typed, "c2");
        row("a tab is no blank", "-c\t033", typed, "");
        row("first -c counts", "-c 033 -c 049", typed, "c2");
        row("-s quoted", "-s \"My Shop\"", typed, "s[\"My]");
        row("-d quoted, text glued behind", "-d \"a b\"c", typed, "d[a b]");
        row("-x unquoted, more behind", "-x ( -c 033", typed, "c2 x[(]");
        row("-x quoted, one blank at the end", "-x \"(\" ", typed, "");
        row("-x quoted, blanks kept, glued", "-x \"a b\"\"c\"", typed, "x[a b|c]");
        // Decided: an unclosed mark takes the rest of the line.
        row("-d unclosed", "-d \"my db -c 033", typed, "c2 d[my db -c 033]");
        row("-x unclosed", "-x \"( -c", typed, "x[( -c]");

        row("args: empty", "-s \"\"", QStringList{"-s", ""}, "s[\"\"]");
        row("args: a repeated -x is ignored", "-c 033 -x \"a\"",
            QStringList{"-x", "a", "-c", "033", "-x", "b"}, "c2 x[a]");
        row("args: -b as a limit string, in the line form", "-x \"(\" \"-b\"",
            QStringList{"-x \"(\" \"-b\""}, "x[(|-b] b");
        row("args: -x glued is no -x", "-x( a", QStringList{"-x(", "a"}, "x[(]");
        row("args: a path with a blank", "-d \"my tools.db\" -c 033",
            QStringList{"-d", "my tools.db", "-c", "033"}, "c2 d[my tools.db]");
        row("args: limit strings moved behind the options", "-c 033 -b -x \"(\" \"-\"",
            QStringList{"-x", "(", "-", "-c", "033", "-b"}, "c2 x[(|-] b");
        // A piece of the line in one argument stands as it is, and ends the limit strings.
        row("args: the whole line as one argument", "-c 033 -s Shop", QStringList{"-c 033 -s Shop"},
            "c2 s[Shop]");
        row("args: one option and its value", "-s Shop", QStringList{"-s Shop"}, "s[Shop]");
        row("args: options glued to their values", "-c033 -sShop", QStringList{"-c033 -sShop"},
            "c2 s[Shop]");
        row("args: a piece of the line after limit strings", "-c 033 -s Shop -x \"(\"",
            QStringList{"-x", "(", "-c 033 -s Shop"}, "c2 s[Shop] x[(]");
    }

    void getParameter() {
        QFETCH(QString, line);
        QFETCH(QStringList, args);
        if (!args.isEmpty())
            QCOMPARE(commandLineFromArgs(args), line);
        Globals g;
        GetParameter(g, line);
        QTEST(leaves(g), "leaves");
    }
};

QTEST_GUILESS_MAIN(TstCommandLine)
#include "tst_command_line.moc"
