#include "command_line.h"
#include "fake_link.h"

#include <QTest>

class TestCommandLine : public QObject {
    Q_OBJECT
private slots:
    void getParameter_data();
    void getParameter();
    void fromArgs_data();
    void fromArgs();
    void argsReadAsTheOperatorMeant_data();
    void argsReadAsTheOperatorMeant();
    void helpText_data();
    void helpText();
    void displayHelp();
};

namespace {

QStringList limitStrings(const Globals &g) {
    QStringList list;
    for (int i = 1; i <= g.LimitCount; ++i)
        list << g.LimitStrings[i];
    return list;
}

QString quotedList(int from, int to) {
    QString s;
    for (int i = from; i <= to; ++i)
        s += QStringLiteral(" \"%1\"").arg(i);
    return s;
}

QStringList numbers(int from, int to) {
    QStringList list;
    for (int i = from; i <= to; ++i)
        list << QString::number(i);
    return list;
}

} // namespace

void TestCommandLine::getParameter_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("section");
    QTest::addColumn<bool>("db");
    QTest::addColumn<QString>("dbPath");
    QTest::addColumn<QStringList>("limits");
    QTest::addColumn<bool>("simple");
    const QString D = QStringLiteral("Default");
    const QStringList none;

    QTest::newRow("empty") << "" << 1 << D << false << "" << none << false;
    QTest::newRow("-c 039") << "-c 039" << 4 << D << false << "" << none << false;
    QTest::newRow("-c 999") << "-c 999" << 1 << D << false << "" << none << false;
    QTest::newRow("-C is no option") << "-C 033" << 1 << D << false << "" << none << false;
    QTest::newRow("-c last") << "-c" << 1 << D << false << "" << none << false;
    QTest::newRow("no blank needed") << "-c033" << 2 << D << false << "" << none << false;
    QTest::newRow("tab is no blank") << "-c\t033" << 1 << D << false << "" << none << false;
    QTest::newRow("code with more behind") << "-c 0331" << 1 << D << false << "" << none << false;
    QTest::newRow("first -c counts") << "-c 033 -c 049" << 2 << D << false << "" << none << false;
    QTest::newRow("values end at a blank")
        << "-c 033 -s Shop -b" << 2 << "Shop" << false << "" << none << true;
    QTest::newRow("-s last") << "-s" << 1 << "" << false << "" << none << false;
    QTest::newRow("-s quoted") << "-s \"My Shop\"" << 1 << "\"My" << false << "" << none << false;
    QTest::newRow("-c found inside a value")
        << "-s a-c -c 033" << 1 << "a-c" << false << "" << none << false;
    QTest::newRow("-d quoted") << "-d \"/data/my tools.db\" -c 033" << 2 << D << true
                               << "/data/my tools.db" << none << false;
    QTest::newRow("-d quoted, text glued behind")
        << "-d \"a b\"c" << 1 << D << true << "a b" << none << false;
    QTest::newRow("-d last") << "-d" << 1 << D << true << "" << none << false;
    QTest::newRow("-b inside a path")
        << "-d /data/x-b.db" << 1 << D << true << "/data/x-b.db" << none << true;
    QTest::newRow("-x last") << "-x" << 1 << D << false << "" << none << false;
    QTest::newRow("-x unquoted, more behind")
        << "-x ( -c 033" << 2 << D << false << "" << QStringList{"("} << false;
    QTest::newRow("-x unquoted at the end")
        << "-c 033 -x (" << 2 << D << false << "" << none << false;
    QTest::newRow("-x quoted, one blank at the end")
        << "-x \"(\" " << 1 << D << false << "" << none << false;
    QTest::newRow("-x empty pair")
        << "-x \"\"" << 1 << D << false << "" << QStringList{""} << false;
    QTest::newRow("-x two quoted")
        << "-x \"(\" \"-\"" << 1 << D << false << "" << QStringList{"(", "-"} << false;
    QTest::newRow("-x quoted, blanks kept, glued")
        << "-x \"a b\"\"c\"" << 1 << D << false << "" << QStringList{"a b", "c"} << false;
    QTest::newRow("-x quoted then -b") << "-x \"(\" -b" << 1 << D << false << "" << none << true;
    QTest::newRow("-x quoted then unquoted then more")
        << "-x \"(\" ; -c 033" << 2 << D << false << "" << QStringList{"(", ";"} << false;
    QTest::newRow("-x ten") << "-x" + quotedList(1, 10) << 1 << D << false << "" << numbers(1, 10)
                            << false;
    // Open cases, decided: see readLimitStrings.
    QTest::newRow("-d unclosed mark")
        << "-d \"my tools.db -c 033" << 2 << D << true << "my tools.db -c 033" << none << false;
    QTest::newRow("-x unclosed mark")
        << "-x \"( -c" << 1 << D << false << "" << QStringList{"( -c"} << false;
    QTest::newRow("-x unclosed second mark")
        << "-x \"(\" \"a b" << 1 << D << false << "" << QStringList{"(", "a b"} << false;
    QTest::newRow("-x eleven") << "-x" + quotedList(1, 11) << 1 << D << false << ""
                               << numbers(1, 10) << false;
    QTest::newRow("-x ten, then unquoted")
        << "-x" + quotedList(1, 10) + " -b" << 1 << D << false << "" << numbers(1, 10) << true;
}

void TestCommandLine::getParameter() {
    QFETCH(QString, line);
    QFETCH(int, language);
    QFETCH(QString, section);
    QFETCH(bool, db);
    QFETCH(QString, dbPath);
    QFETCH(QStringList, limits);
    QFETCH(bool, simple);
    Globals g;
    GetParameter(g, line);
    QCOMPARE(int(g.Language), language);
    QCOMPARE(g.ConfigSection, section);
    QCOMPARE(g.ToolDbEnabled, db);
    QCOMPARE(g.DatabasePath, dbPath);
    QCOMPARE(limitStrings(g), limits);
    QCOMPARE(g.SimpleFileDialog, simple);
}

void TestCommandLine::fromArgs_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("line");
    QTest::newRow("nothing") << QStringList{} << "";
    QTest::newRow("plain") << QStringList{"-c", "033", "-s", "Shop"} << "-c 033 -s Shop";
    QTest::newRow("blank in a path")
        << QStringList{"-d", "my tools.db", "-c", "033"} << "-d \"my tools.db\" -c 033";
    QTest::newRow("empty argument") << QStringList{"-s", ""} << "-s \"\"";
    QTest::newRow("behind -x") << QStringList{"-x", "(", "-"} << "-x \"(\" \"-\"";
    QTest::newRow("options behind -x quoted too")
        << QStringList{"-c", "033", "-x", "(", "-b"} << "-c 033 -x \"(\" \"-b\"";
    QTest::newRow("a second -x is quoted") << QStringList{"-x", "-x"} << "-x \"-x\"";
    QTest::newRow("-x glued is no -x") << QStringList{"-x(", "a"} << "-x( a";
    QTest::newRow("the whole line in one") << QStringList{"-x \"(\" -b"} << "-x \"(\" -b";
    QTest::newRow("a mark behind -x as it stands")
        << QStringList{"-x", "\"(\"", "a b"} << "-x \"(\" \"a b\"";
}

void TestCommandLine::fromArgs() {
    QFETCH(QStringList, args);
    QFETCH(QString, line);
    QCOMPARE(CommandLineFromArgs(args), line);
}

// From the shell's arguments to the settings: what an operator typed means what it says.
void TestCommandLine::argsReadAsTheOperatorMeant_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("dbPath");
    QTest::addColumn<QStringList>("limits");
    QTest::addColumn<bool>("simple");
    QTest::newRow("path with a blank")
        << QStringList{"-d", "my tools.db", "-c", "033"} << "my tools.db" << QStringList{} << false;
    QTest::newRow("limit strings")
        << QStringList{"-x", "(", "-"} << "" << QStringList{"(", "-"} << false;
    QTest::newRow("limit string with a blank")
        << QStringList{"-b", "-x", "( ", "T"} << "" << QStringList{"( ", "T"} << true;
    QTest::newRow("the line handed as one")
        << QStringList{"-x \"(\" -b"} << "" << QStringList{} << true;
}

void TestCommandLine::argsReadAsTheOperatorMeant() {
    QFETCH(QStringList, args);
    QFETCH(QString, dbPath);
    QFETCH(QStringList, limits);
    QFETCH(bool, simple);
    Globals g;
    GetParameter(g, CommandLineFromArgs(args));
    QCOMPARE(g.DatabasePath, dbPath);
    QCOMPARE(limitStrings(g), limits);
    QCOMPARE(g.SimpleFileDialog, simple);
}

void TestCommandLine::helpText_data() {
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("text");
    const QString sep = QStringLiteral("\n\r");
    const QString english = "Command line option :" + sep + "-c 033 or -c 044 or -c 049" + sep +
                            "-s Configuration_Name" + sep + "-d Database" + sep +
                            "-x \"Limit_string\"" + sep + "-b simple file open dialog";
    QTest::newRow("1 English") << 1 << english;
    QTest::newRow("4 English") << 4 << english;
    QTest::newRow("0 English") << 0 << english;
    QTest::newRow("French") << 2
                            << "Options de ligne de commande :" + sep +
                                   "-c 033 ou -c 044 ou -c 049" + sep + "-s Nom_de_configuration" +
                                   sep + "-d Base_de_donn\u00e9es" + sep +
                                   "-x \"chaine_de_limitation\"" + sep +
                                   "-b dialog d'ouverture simplifi\u00e9";
    QTest::newRow("German") << 3
                            << "Optionen der Befehlszeile :" + sep +
                                   "-c 033 oder -c 044 oder -c 049" + sep +
                                   "-s Name_der_Konfiguration" + sep + "-d Datenbank_Datei" + sep +
                                   "-x \"Beschr\u00e4nkungs_Zeichen\"" + sep +
                                   "-b vereinfachter Datei Dialog";
}

void TestCommandLine::helpText() {
    QFETCH(int, language);
    QFETCH(QString, text);
    const QString help = HelpText(qint16(language));
    QCOMPARE(help, text);
    QCOMPARE(help.count(QChar(10)), 5);
    QCOMPARE(help.count(QChar(13)), 5);
    QVERIFY(!help.endsWith(QChar(13)));
}

void TestCommandLine::displayHelp() {
    FakeLink f;
    f.g.Language = 3;
    DisplayHelp(f.g, f.screen);
    QCOMPARE(f.screen.boxes.size(), 1);
    QCOMPARE(f.screen.boxes[0].text, HelpText(3));
    QCOMPARE(f.screen.boxes[0].icon, BoxIcon::None);
    QCOMPARE(f.screen.boxes[0].title, QString()); // the program's title
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_command_line.moc"
