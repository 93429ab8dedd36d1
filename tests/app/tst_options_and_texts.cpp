// The command line, the help box and the text table: what the program reads and shows first.

#include "command_line.h"
#include "globals.h"
#include "text_table.h"

#include <QTest>

class TestOptionsAndTexts : public QObject {
    Q_OBJECT
private slots:
    void getParameter_data();
    void getParameter();
    void helpText_data();
    void helpText();
    void textTable_data();
    void textTable();
};

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

// A row with arguments first rebuilds the line from them as main does, and checks it.
void TestOptionsAndTexts::getParameter_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("leaves");
    const QStringList typed; // the line as it stands

    QTest::newRow("empty") << "" << typed << "";
    QTest::newRow("-c 039") << "-c 039" << typed << "c4";
    QTest::newRow("-C is no option") << "-C 033" << typed << "";
    QTest::newRow("no blank needed") << "-c033" << typed << "c2";
    QTest::newRow("a tab is no blank") << "-c\t033" << typed << "";
    QTest::newRow("code with more behind") << "-c 0331" << typed << "";
    QTest::newRow("first -c counts") << "-c 033 -c 049" << typed << "c2";
    QTest::newRow("values end at a blank") << "-c 033 -s Shop -b" << typed << "c2 s[Shop] b";
    QTest::newRow("-s last") << "-s" << typed << "s[]";
    QTest::newRow("-s quoted") << "-s \"My Shop\"" << typed << "s[\"My]";
    QTest::newRow("-c found inside a value") << "-s a-c -c 033" << typed << "s[a-c]";
    QTest::newRow("-d quoted, text glued behind") << "-d \"a b\"c" << typed << "d[a b]";
    QTest::newRow("-d last") << "-d" << typed << "d[]";
    QTest::newRow("-b inside a path") << "-d /data/x-b.db" << typed << "d[/data/x-b.db] b";
    QTest::newRow("-x unquoted, more behind") << "-x ( -c 033" << typed << "c2 x[(]";
    QTest::newRow("-x quoted, one blank at the end") << "-x \"(\" " << typed << "";
    QTest::newRow("-x empty pair") << "-x \"\"" << typed << "x[]";
    QTest::newRow("-x quoted, blanks kept, glued") << "-x \"a b\"\"c\"" << typed << "x[a b|c]";
    QTest::newRow("-x quoted then -b") << "-x \"(\" -b" << typed << "b";
    QTest::newRow("-x quoted, unquoted, more") << "-x \"(\" ; -c 033" << typed << "c2 x[(|;]";
    // Decided: an unclosed mark takes the rest of the line; an eleventh string is dropped.
    QTest::newRow("-d unclosed") << "-d \"my db -c 033" << typed << "c2 d[my db -c 033]";
    QTest::newRow("-x unclosed") << "-x \"( -c" << typed << "x[( -c]";
    QTest::newRow("-x eleven") << "-x" + QString(" \"1\"").repeated(11) << typed
                               << "x[1|1|1|1|1|1|1|1|1|1]";

    QTest::newRow("args: blank") << "-d \"my db\"" << QStringList{"-d", "my db"} << "d[my db]";
    QTest::newRow("args: empty") << "-s \"\"" << QStringList{"-s", ""} << "s[\"\"]";
    // An option keeps its meaning behind -x: the limit strings go last.
    QTest::newRow("args: -c behind -x")
        << "-c 033 -x \"(\"" << QStringList{"-x", "(", "-c", "033"} << "c2 x[(]";
    QTest::newRow("args: -d behind -x")
        << "-d tools.db -x \"(\"" << QStringList{"-x", "(", "-d", "tools.db"} << "d[tools.db] x[(]";
    QTest::newRow("args: -b behind -x, two strings")
        << "-d tools.db -b -x \"(\" \"-\"" << QStringList{"-d", "tools.db", "-x", "(", "-", "-b"}
        << "d[tools.db] x[(|-] b";
    QTest::newRow("args: a repeated -x is ignored")
        << "-c 033 -x \"a\"" << QStringList{"-x", "a", "-c", "033", "-x", "b"} << "c2 x[a]";
    QTest::newRow("args: -b as a limit string, in the line form")
        << "-x \"(\" \"-b\"" << QStringList{"-x \"(\" \"-b\""} << "x[(|-b] b";
    QTest::newRow("args: -x glued is no -x") << "-x( a" << QStringList{"-x(", "a"} << "x[(]";
    QTest::newRow("args: the line in one") << "-x \"(\" -b" << QStringList{"-x \"(\" -b"} << "b";
}

void TestOptionsAndTexts::getParameter() {
    QFETCH(QString, line);
    QFETCH(QStringList, args);
    if (!args.isEmpty())
        QCOMPARE(commandLineFromArgs(args), line);
    Globals g;
    GetParameter(g, line);
    QTEST(leaves(g), "leaves");
}

// The six lines with LF CR between them, English for every language but 2 and 3.
void TestOptionsAndTexts::helpText_data() {
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("text");
    const QString english = "Command line option :\n\r-c 033 or -c 044 or -c 049\n\r"
                            "-s Configuration_Name\n\r-d Database\n\r-x \"Limit_string\"\n\r"
                            "-b simple file open dialog";
    QTest::newRow("English") << 1 << english;
    QTest::newRow("4 is English") << 4 << english;
    QTest::newRow("French")
        << 2
        << "Options de ligne de commande :\n\r-c 033 ou -c 044 ou -c 049\n\r"
           "-s Nom_de_configuration\n\r-d Base_de_donn\u00e9es\n\r"
           "-x \"chaine_de_limitation\"\n\r-b dialog d'ouverture simplifi\u00e9";
    QTest::newRow("German") << 3
                            << "Optionen der Befehlszeile :\n\r-c 033 oder -c 044 oder -c 049\n\r"
                               "-s Name_der_Konfiguration\n\r-d Datenbank_Datei\n\r"
                               "-x \"Beschr\u00e4nkungs_Zeichen\"\n\r-b vereinfachter Datei Dialog";
}

void TestOptionsAndTexts::helpText() {
    QFETCH(int, language);
    QTEST(::helpText(qint16(language)), "text");
}

// Accents spelled by code point, so that a wrong source encoding cannot hide on both sides.
void TestOptionsAndTexts::textTable_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::newRow("Reveive, English") << 33 << 1 << "&Reveive";
    QTest::newRow("Receive, second English") << 33 << 4 << "&Receive";
    QTest::newRow("send ends in a blank") << 6 << 1 << "Send file : ";
    QTest::newRow("time-out, French") << 7 << 2 << "D\u00e9passement du temps de r\u00e9ponse CNC";
    QTest::newRow("CC, French") << 35 << 2 << "Change prg.";
    QTest::newRow("time-out, German")
        << 7 << 3 << "Wartezeit \u00fcberschritten - Keine Antwort von CNC erhalten";
    QTest::newRow("DC, German") << 37 << 3 << "L\u00f6schen";
    for (int column = 1; column <= 4; ++column)
        QTest::addRow("title, column %d", column) << 20 << column << "DNC VELDA - V2.6.0 - ";
}

void TestOptionsAndTexts::textTable() {
    QFETCH(int, row);
    QFETCH(int, column);
    Globals g;
    g.Language = qint16(column);
    InitTexts(g);
    QTEST(g.TextTable[row * 5 + column], "text");
    QTEST(g.Text(row), "text");
}

QTEST_GUILESS_MAIN(TestOptionsAndTexts)
#include "tst_options_and_texts.moc"
