// The command line and the text table: what the program reads and shows first.

#include "command_line.h"
#include "globals.h"
#include "rows.h"
#include "text_table.h"

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

class TstOptionsAndTexts : public QObject {
    Q_OBJECT
private slots:
    // A row with arguments first rebuilds the line from them as main does, and checks it.
    void getParameter_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("leaves");
        const QStringList typed; // the line as it stands

        row("empty", "", typed, "");
        row("-c 039", "-c 039", typed, "c4");
        row("-C is no option", "-C 033", typed, "");
        row("no blank needed", "-c033", typed, "c2");
        row("a tab is no blank", "-c\t033", typed, "");
        row("code with more behind", "-c 0331", typed, "");
        row("first -c counts", "-c 033 -c 049", typed, "c2");
        row("values end at a blank", "-c 033 -s Shop -b", typed, "c2 s[Shop] b");
        row("-s quoted", "-s \"My Shop\"", typed, "s[\"My]");
        row("-d quoted, text glued behind", "-d \"a b\"c", typed, "d[a b]");
        row("-d last", "-d", typed, "d[]");
        row("-b inside a path", "-d /data/x-b.db", typed, "d[/data/x-b.db] b");
        row("-x unquoted, more behind", "-x ( -c 033", typed, "c2 x[(]");
        row("-x quoted, one blank at the end", "-x \"(\" ", typed, "");
        row("-x empty pair", "-x \"\"", typed, "x[]");
        row("-x quoted, blanks kept, glued", "-x \"a b\"\"c\"", typed, "x[a b|c]");
        // Decided: an unclosed mark takes the rest of the line; an eleventh string is dropped.
        row("-d unclosed", "-d \"my db -c 033", typed, "c2 d[my db -c 033]");
        row("-x unclosed", "-x \"( -c", typed, "x[( -c]");
        row("-x eleven", "-x" + QString(" \"1\"").repeated(11), typed, "x[1|1|1|1|1|1|1|1|1|1]");

        row("args: empty", "-s \"\"", QStringList{"-s", ""}, "s[\"\"]");
        // An option keeps its meaning behind -x: the limit strings go last.
        row("args: -b behind -x, two strings", "-d tools.db -b -x \"(\" \"-\"",
            QStringList{"-d", "tools.db", "-x", "(", "-", "-b"}, "d[tools.db] x[(|-] b");
        row("args: a repeated -x is ignored", "-c 033 -x \"a\"",
            QStringList{"-x", "a", "-c", "033", "-x", "b"}, "c2 x[a]");
        row("args: -b as a limit string, in the line form", "-x \"(\" \"-b\"",
            QStringList{"-x \"(\" \"-b\""}, "x[(|-b] b");
        row("args: -x glued is no -x", "-x( a", QStringList{"-x(", "a"}, "x[(]");
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

    // Every row the code reads by name has a text in every language.
    void textTable() {
        Globals g;
        InitTexts(g);
        QList<int> rows{QuitCaption,    SendFilePrefix, TimeoutMessage, SetupTitle,
                        WaitXonCaption, NoSpaceCaption, WindowTitle};
        for (int i = 0; i < 7; ++i)
            rows << SetupFirstLabel + i;
        for (int i = 0; i < 8; ++i)
            rows << FirstCommandCaption + i;
        for (const int row : rows)
            for (int column = 1; column <= 4; ++column)
                QVERIFY2(!g.TextTable[row * 5 + column].isEmpty(),
                         qPrintable(QString::number(row)));
    }
};

QTEST_GUILESS_MAIN(TstOptionsAndTexts)
#include "tst_options_and_texts.moc"
