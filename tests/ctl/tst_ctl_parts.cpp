// The companion's own pieces, each on its own: its command line and the language it chooses,
// the settings with the line overrides, the exit status of an outcome, the progress line, and the
// choice by name.
#include "console_screen.h"
#include "ctl_options.h"
#include "ctl_outcome.h"
#include "files.h"
#include "line_overrides.h"
#include "progress_line.h"
#include "rows.h"
#include "settings.h"

#include <QTest>

Q_DECLARE_METATYPE(CtlCommand)

class TestCtlParts : public QObject {
    Q_OBJECT
private slots:
    void arguments_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("error"); // a part of the reason; empty: accepted
        QTest::addColumn<CtlCommand>("command");
        QTest::addColumn<QStringList>("rest");
        const auto bad = [](const char *name, const QStringList &args, const char *why) {
            QTest::newRow(name) << args << QString::fromUtf8(why) << CtlCommand::None
                                << QStringList();
        };
        // A value cut wrongly from "--baud=" would not be a number and be refused.
        QTest::newRow("long options with =")
            << QStringList{"--port=/dev/x", "--baud=9600", "receive", "-", "-"} << QString()
            << CtlCommand::Receive << QStringList{"-", "-"};
        QTest::newRow("after the command everything is an argument")
            << QStringList{"delete", "-x"} << QString() << CtlCommand::Delete << QStringList{"-x"};
        QTest::newRow("-- ends the options") << QStringList{"--", "send", "--quiet"} << QString()
                                             << CtlCommand::Send << QStringList{"--quiet"};
        bad("value missing at the end", {"-s"}, "-s needs a value");
        bad("send without a file", {"send"}, "send FILE");
        bad("cnc 505", {"--cnc", "505", "list"}, "--cnc takes");
        bad("an eleventh limit string",
            {"-x", "1", "-x", "2", "-x", "3", "-x", "4",  "-x", "5",  "-x",  "6",
             "-x", "7", "-x", "8", "-x", "9", "-x", "10", "-x", "11", "list"},
            "at most 10");
    }
    void arguments() {
        QFETCH(QStringList, args);
        QFETCH(QString, error);
        const CtlParse p = parseCtlArguments(args);
        if (!error.isEmpty()) {
            QVERIFY2(p.error.contains(error), qPrintable(p.error));
            return;
        }
        QVERIFY2(p.error.isEmpty(), qPrintable(p.error));
        QTEST(p.options.command, "command");
        QTEST(p.options.args, "rest");
    }

    // -c among the options, else the first of LC_ALL, LC_MESSAGES and LANG that is set.
    void language_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QStringList>("env"); // LC_ALL, LC_MESSAGES, LANG; empty: unset
        QTest::addColumn<int>("language");
        const QStringList none{"", "", ""};
        QTest::newRow("-c before the environment")
            << QStringList{"-q", "-c", "049", "list"} << QStringList{"", "", "fr_FR.UTF-8"} << 3;
        QTest::newRow("LANG") << QStringList{"list"} << QStringList{"", "", "de_DE.UTF-8"} << 3;
        QTest::newRow("LC_MESSAGES before LANG")
            << QStringList{"list"} << QStringList{"", "fr_CH", "de_DE.UTF-8"} << 2;
        QTest::newRow("LC_ALL before all")
            << QStringList{"list"} << QStringList{"C", "fr_FR", "de_DE"} << 1;
        QTest::newRow("nothing set") << QStringList{"list"} << none << 1;
        QTest::newRow("-c as the value of -s")
            << QStringList{"-s", "-c", "033", "list"} << QStringList{"", "", "de_DE"} << 3;
        QTest::newRow("-c behind the command") << QStringList{"list", "-c", "033"} << none << 1;
    }
    void language() {
        QFETCH(QStringList, args);
        QFETCH(QStringList, env);
        QFETCH(int, language);
        const char *const names[] = {"LC_ALL", "LC_MESSAGES", "LANG"};
        QList<QByteArray> before;
        for (int i = 0; i < 3; ++i) {
            before << qgetenv(names[i]);
            env[i].isEmpty() ? qunsetenv(names[i]) : qputenv(names[i], env[i].toUtf8());
        }
        const int early = ctlLanguage(args), parsed = parseCtlArguments(args).options.language;
        for (int i = 0; i < 3; ++i)
            before[i].isNull() ? qunsetenv(names[i]) : qputenv(names[i], before[i]);
        QCOMPARE(early, language);
        QCOMPARE(parsed, language);
    }

    void overrides_data() {
        QTest::addColumn<QString>("ini"); // the section [Default]
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("com"); // ComSettings afterwards, or a part of the refusal
        QTest::addColumn<int>("cnc");
        const QString full = "Port=COM2:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=504\n";
        const QStringList line{"--port", "/dev/x", "--baud", "300",    "--parity",
                               "o",      "--data", "8",      "--stop", "1"};
        row("each value overridden", full, line + QStringList{"--cnc", "303"}, "COM2:300,O,8,1", 1);
        row("no settings: the command line alone", QString(),
            line + QStringList{"--cnc", "XONXOFF"}, "COM1:300,O,8,1", 3);
        row("a section cut short: completed by the options", "Port=COM1:\nBaud=4800\nCNC=303\n",
            QStringList{"--parity", "N", "--data", "8", "--stop", "1", "--cnc", "303"},
            "COM1:4800,N,8,1", 1);
        row("no stop bits", "Port=COM1:\nBaud=4800\nParity=N\nData=8\n",
            QStringList{"--cnc", "303"}, "no Stop in section", 0);
        row("the control type not read",
            "Port=COM1:\nBaud=9600\nParity=N\nData=8\nStop=1\nCNC=606\n", QStringList(),
            "no control type", 0);
    }
    void overrides() {
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
        const QString why = applyLineOverrides(g, p.options);
        QTEST(int(g.CncType), "cnc");
        if (why.isEmpty())
            QCOMPARE(g.ComSettings, com);
        else
            QVERIFY2(why.contains(com), qPrintable(why));
    }

    // Of the ends an operation met, the gravest is kept whatever their order; the status
    // follows it, and lines left out count only where nothing worse happened.
    void exitCode_data() {
        QTest::addColumn<QList<int>>("kinds"); // OutcomeKind, in the order they were met
        QTest::addColumn<int>("shortfall");
        QTest::addColumn<int>("code");
        using K = OutcomeKind;
        const auto ks = [](std::initializer_list<K> l) {
            QList<int> out;
            for (K k : l)
                out << int(k);
            return out;
        };
        const int blank = int(Shortfall::BlankLine);
        row("interrupted after a port failure", ks({K::PortFailure, K::Interrupted}), 0, 130);
        row("a time-out after the port failed", ks({K::PortFailure, K::TimedOut}), 0, 4);
        row("file failure over not on the control", ks({K::NotOnControl, K::FileFailure}), 0, 5);
        row("not counted, then a time-out", ks({K::NotCounted, K::TimedOut}), 0, 3);
        row("sent but not counted", ks({K::NotCounted}), blank, 9);
        row("done with lines left out", ks({}), blank, 10);
        row("done", ks({}), 0, 0);
    }
    void exitCode() {
        QFETCH(QList<int>, kinds);
        QFETCH(int, shortfall);
        OutcomeRecord r;
        for (int k : kinds)
            r.fail(OutcomeKind(k));
        r.shortfall = Shortfall(shortfall);
        QTEST(exitCodeOf(r, 2), "code");
    }

    // A file's name may look like a caption: the figures are taken from its end.
    void progressLine() {
        const ProgressFigures f = figuresOfCaption("Send file : /nc/x - 5% - 50%");
        QCOMPARE(f.label + '|' + QString::number(f.percent), "Send file : /nc/x - 5%|50");
    }

    // Names are the control's bytes, compared whole: no blank trimmed, no prefix, no case.
    void pickByName() {
        OperationState state;
        const OperationState::Run run(state);
        ConsoleScreen screen(state);
        screen.setPick("\xc9T\xc9");
        for (const char *entry : {"\xc9T\xc9 ", "\xc9T", "\xe9t\xe9", "\xc9T\xc9"})
            screen.list1AddItem(QString::fromLatin1(entry));
        QCOMPARE(screen.list1ListIndex(), 3);
        screen.setPick("\xc9T\xc9X");
        QCOMPARE(screen.list1ListIndex(), Screen::NoChoiceComing);
    }
};

QTEST_GUILESS_MAIN(TestCtlParts)
#include "tst_ctl_parts.moc"
