// The companion's own pieces, each on its own: its command line, the settings with the line
// overrides, the exit status of an outcome, the progress line, and the choice by name.
#include "console_screen.h"
#include "ctl_options.h"
#include "ctl_outcome.h"
#include "files.h"
#include "line_overrides.h"
#include "progress_line.h"
#include "settings.h"

#include <QTest>

Q_DECLARE_METATYPE(Outcome)
Q_DECLARE_METATYPE(CtlCommand)

class TestCtlParts : public QObject {
    Q_OBJECT
private slots:
    void arguments_data();
    void arguments();
    void overrides_data();
    void overrides();
    void exitCode_data();
    void exitCode();
    void progressLine_data();
    void progressLine();
    void pickByName_data();
    void pickByName();
};

void TestCtlParts::arguments_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("error"); // a part of the reason; empty: accepted
    QTest::addColumn<CtlCommand>("command");
    QTest::addColumn<QStringList>("rest");
    QTest::addColumn<QString>("options"); // language|section|db|limits|port|line|quiet

    const auto ok = [](const char *name, const QStringList &args, CtlCommand c,
                       const QStringList &rest, const char *options) {
        QTest::newRow(name) << args << QString() << c << rest << QString::fromUtf8(options);
    };
    const auto bad = [](const char *name, const QStringList &args, const char *why) {
        QTest::newRow(name) << args << QString::fromUtf8(why) << CtlCommand::None << QStringList()
                            << QString();
    };
    ok("plain send", {"send", "a.tap"}, CtlCommand::Send, {"a.tap"}, "1|Default|||||0");
    ok("every option", {"-c",     "033",    "-s",       "Shop",    "-d",     "my tools.db",
                        "-x",     "(",      "-x",       "-b",      "--port", "/dev/ttyUSB0",
                        "--baud", "115200", "--parity", "e",       "--data", "7",
                        "--stop", "2",      "--cnc",    "xonxoff", "-q",     "list"},
       CtlCommand::List, {}, "2|Shop|my tools.db|(,-b|/dev/ttyUSB0|115200,E,7,2,xonxoff|1");
    ok("long options with =", {"--port=/dev/x", "--baud=9600", "receive", "-", "-"},
       CtlCommand::Receive, {"-", "-"}, "1|Default|||/dev/x|9600,,,,|0");
    ok("after the command everything is an argument", {"delete", "-x"}, CtlCommand::Delete, {"-x"},
       "1|Default|||||0");
    ok("-- ends the options", {"--", "send", "--quiet"}, CtlCommand::Send, {"--quiet"},
       "1|Default|||||0");
    ok("an unknown language code is English", {"-c", "999", "change"}, CtlCommand::Change, {},
       "1|Default|||||0");
    ok("-s empty", {"-s", "", "list"}, CtlCommand::List, {}, "1||||||0");
    bad("no command", {"-q"}, "no command");
    bad("unknown command", {"map"}, "unknown command \"map\"");
    bad("unknown option", {"-b", "send", "a"}, "unknown option -b");
    bad("value glued to a short option", {"-s Shop", "list"}, "unknown option -s Shop");
    bad("an option after the command is an argument", {"list", "-s"},
        "usage: dncctl [options] list");
    bad("value missing at the end", {"-s"}, "-s needs a value");
    bad("send without a file", {"send"}, "send FILE");
    bad("receive with three", {"receive", "a", "b", "c"}, "receive [NAME] OUT");
    bad("delete without a name", {"delete"}, "delete NAME");
    bad("baud not a number", {"--baud", "96OO", "list"}, "--baud takes");
    bad("baud 0", {"--baud", "0", "list"}, "--baud takes");
    bad("stop 1.5", {"--stop", "1.5", "list"}, "--stop takes");
    bad("cnc 505", {"--cnc", "505", "list"}, "--cnc takes");
    bad("an eleventh limit string",
        {"-x", "1", "-x", "2", "-x", "3", "-x", "4",  "-x", "5",  "-x",  "6",
         "-x", "7", "-x", "8", "-x", "9", "-x", "10", "-x", "11", "list"},
        "at most 10");
}

void TestCtlParts::arguments() {
    QFETCH(QStringList, args);
    QFETCH(QString, error);
    const CtlParse p = parseCtlArguments(args);
    if (!error.isEmpty()) {
        QVERIFY2(p.error.contains(error), qPrintable(p.error));
        return;
    }
    QVERIFY2(p.error.isEmpty(), qPrintable(p.error));
    const CtlOptions &o = p.options;
    QTEST(o.command, "command");
    QTEST(o.args, "rest");
    const QString options =
        QStringList{QString::number(o.language),
                    o.section,
                    o.toolDb ? o.databasePath : QString(),
                    o.limits.join(u','),
                    o.port,
                    o.baud.isEmpty() && o.cnc.isEmpty()
                        ? QString()
                        : QStringList{o.baud, o.parity, o.data, o.stop, o.cnc}.join(u','),
                    QString::number(o.quiet)}
            .join(u'|');
    QTEST(options, "options");
}

void TestCtlParts::overrides_data() {
    QTest::addColumn<QString>("ini"); // the section [Default]
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("com"); // ComSettings afterwards, or a part of the refusal
    QTest::addColumn<int>("cnc");

    const QString full = "Port=COM2:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=504\n";
    QTest::newRow("as the settings say") << full << QStringList() << "COM2:9600,E,7,2" << 2;
    QTest::newRow("each value overridden")
        << full << QStringList{"--port", "/dev/x", "--baud", "300", "--parity", "N",
                               "--data", "8",      "--stop", "1",   "--cnc",    "303"}
        << "COM2:300,N,8,1" << 1;
    QTest::newRow("no settings: the command line alone")
        << QString() << QStringList{"--port", "/dev/x", "--baud", "300", "--parity", "o",
                                    "--data", "8",      "--stop", "1",   "--cnc",    "XONXOFF"}
        << "COM1:300,O,8,1" << 3;
    QTest::newRow("a section cut short: completed by the options")
        << "Port=COM1:\nBaud=4800\nCNC=303\n"
        << QStringList{"--parity", "N", "--data", "8", "--stop", "1", "--cnc", "303"}
        << "COM1:4800,N,8,1" << 1;
    QTest::newRow("no port") << QString() << QStringList{"--cnc", "303"}
                             << "no Port in section [Default]" << 0;
    QTest::newRow("no stop bits") << "Port=COM1:\nBaud=4800\nParity=N\nData=8\n"
                                  << QStringList{"--cnc", "303"} << "no Stop in section" << 0;
    QTest::newRow("the control type not read")
        << "Port=COM1:\nBaud=9600\nParity=N\nData=8\nStop=1\nCNC=606\n"
        << QStringList() << "no control type" << 0;
    QTest::newRow("a baud rate in the settings that no port takes")
        << "Port=COM1:\nBaud=fast\nParity=N\nData=8\nStop=1\nCNC=303\n"
        << QStringList() << "the baud rate must be a whole number" << 1;
}

void TestCtlParts::overrides() {
    QFETCH(QString, ini);
    QFETCH(QStringList, args);
    QFETCH(QString, com);
    QTemporaryDir dir;
    Globals g;
    g.iniPath = dir.filePath("dnc.ini");
    QVERIFY(ini.isEmpty() || writeFile(g.iniPath, "[Default]\n" + ini.toUtf8()));
    InitChoices(g);
    ReadSettings(g);
    const CtlParse p = parseCtlArguments(args + QStringList{"list"});
    QVERIFY(p.error.isEmpty());
    const QString why = applyLineOverrides(g, p.options);
    QTEST(int(g.CncType), "cnc");
    if (why.isEmpty())
        QCOMPARE(g.ComSettings, com);
    else
        QVERIFY2(why.contains(com), qPrintable(why));
}

void TestCtlParts::exitCode_data() {
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<int>("code");
    const auto row = [](const char *name, Outcome o, int code) {
        QTest::newRow(name) << o << code;
    };
    row("done", {}, 0);
    row("a signal before all", {.signal = 2, .portFailed = true, .timedOut = true}, 130);
    row("port before time-out", {.portFailed = true, .timedOut = true}, 4);
    row("file", {.fileFailed = true, .timedOut = true}, 5);
    row("not listed before a time-out of the listing", {.timedOut = true, .pick = Pick::NotListed},
        6);
    row("time-out before the tools", {.toolDbFailed = true, .timedOut = true}, 3);
    row("nothing to choose from", {.pick = Pick::NotAsked}, 6);
    row("nothing received", {.received = false}, 6);
    row("chosen and received", {.pick = Pick::Chosen}, 0);
    row("tools not counted", {.toolDbFailed = true}, 7);
}

void TestCtlParts::exitCode() {
    QFETCH(Outcome, outcome);
    QTEST(exitCodeOf(outcome), "code");
}

void TestCtlParts::progressLine_data() {
    QTest::addColumn<QString>("caption");
    QTest::addColumn<qint64>("characters"); // -1: the caption's number counts
    QTest::addColumn<double>("seconds");
    QTest::addColumn<int>("language");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("line");
    QTest::newRow("a send under way")
        << "Send file : /nc/A.tap - 25%" << qint64(2500) << 2.0 << 1 << 80
        << "Send file : /nc/A.tap - 25%  2500 characters  1250 characters/s  0:06 left";
    QTest::newRow("before the first line: no digits yet, no rate yet")
        << "Send file : /nc/A.tap - " << qint64(2) << 0.1 << 1 << 80
        << "Send file : /nc/A.tap - 0%  2 characters  -- characters/s  --:-- left";
    QTest::newRow("rounds to 0: the caption has no digits")
        << "Send file : /nc/A.tap - %" << qint64(40) << 1.0 << 1 << 80
        << "Send file : /nc/A.tap - 0%  40 characters  40 characters/s  --:-- left";
    QTest::newRow("an hour and more")
        << "Envoi du fichier : /a - 1%" << qint64(100) << 100.0 << 2 << 100
        << "Envoi du fichier : /a - 1%  100 caractères  1 caractères/s  2:45:00 restant";
    QTest::newRow("a file name that looks like a caption")
        << "Send file : /nc/x - 5% - 50%" << qint64(10) << 1.0 << 1 << 80
        << "Send file : /nc/x - 5% - 50%  10 characters  10 characters/s  0:01 left";
    QTest::newRow("a long path is shortened in its middle")
        << "Send file : /very/long/folder/name/PART.tap - 50%" << qint64(10) << 1.0 << 1 << 80
        << "Send file : /.../name/PART.tap - 50%  10 characters  10 characters/s  0:01 left";
    QTest::newRow("a reception: no percentage, no time left")
        << "1234" << qint64(-1) << 2.0 << 3 << 80 << "Empfang : 1234 Zeichen  617 Zeichen/s";
}

void TestCtlParts::progressLine() {
    QFETCH(QString, caption);
    QFETCH(qint64, characters);
    QFETCH(double, seconds);
    QFETCH(int, language);
    QFETCH(int, width);
    ProgressFigures f = figuresOfCaption(caption);
    if (characters < 0) {
        f.characters = caption.toLongLong();
        f.label = QStringLiteral("Empfang : ");
    } else {
        f.characters = characters;
    }
    f.seconds = seconds;
    const QString line = progressText(f, qint16(language), width);
    QTEST(line, "line");
    QVERIFY(line.size() <= width - 1);
}

void TestCtlParts::pickByName_data() {
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("index");
    QTest::newRow("trailing blank counts") << QStringList{"A ", "A"} << QByteArray("A") << 1;
    QTest::newRow("case counts") << QStringList{"a1.nc"} << QByteArray("A1.NC") << -1;
    QTest::newRow("a prefix is no match") << QStringList{"A1.NC"} << QByteArray("A1") << -1;
    QTest::newRow("a Latin-1 byte")
        << QStringList{QString::fromLatin1("\xc9T\xc9")} << QByteArray("\xc9T\xc9") << 0;
    QTest::newRow("an empty entry is a name like any")
        << QStringList{"A", ""} << QByteArray("") << 1;
}

void TestCtlParts::pickByName() {
    QFETCH(QStringList, list);
    QFETCH(QByteArray, name);
    QFETCH(int, index);
    Globals g;
    OperationState state;
    const OperationState::Run run(state);
    ConsoleScreen screen(g, state);
    screen.setPick(name);
    QCOMPARE(screen.pick(), Pick::NotAsked);
    for (const QString &entry : list)
        screen.list1AddItem(entry);
    QCOMPARE(screen.list1ListIndex(), index);
    // Not listed: the wait for a choice is ended, as closing the window would end it.
    QCOMPARE(screen.pick(), index < 0 ? Pick::NotListed : Pick::Chosen);
    QCOMPARE(state.ending(), index < 0);
}

QTEST_GUILESS_MAIN(TestCtlParts)
#include "tst_ctl_parts.moc"
