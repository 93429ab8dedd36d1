#include "ctl_options.h"

#include "command_line.h"
#include "journal_reader.h"
#include "languages.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {

constexpr int MaxLimits = 10; // the table behind -x holds ten

struct Command {
    const char *word;
    CtlCommand command;
    int least, most; // arguments
    const char *synopsis;
};

const QStringList &optionsWithValue() {
    static const QStringList withValue{
        "-c",     "-s",     "-d",    "-x",     "--port",      "--baud",       "--parity",
        "--data", "--stop", "--cnc", "--wait", "--from-line", "--from-block", "--from-tool"};
    return withValue;
}

constexpr Command Commands[] = {
    {"send", CtlCommand::Send, 1, 1, "send FILE"},
    {"receive", CtlCommand::Receive, 1, 2, "receive [NAME] OUT"},
    {"list", CtlCommand::List, 0, 0, "list"},
    {"change", CtlCommand::Change, 0, 0, "change"},
    {"execute", CtlCommand::Execute, 0, 0, "execute"},
    {"delete", CtlCommand::Delete, 1, 1, "delete NAME"},
};

const QStringList &journalOutcomes() {
    static const QStringList outcomes{"done",      "timeout",        "port_failure", "interrupted",
                                      "refused",   "not_on_control", "file_failure", "not_counted",
                                      "cancelled", "rows_lost"};
    return outcomes;
}

// The arguments of "journal", which are options of its own.
QString parseJournalArguments(const QStringList &args, CtlOptions &o) {
    bool others = false;
    for (qsizetype i = 0; i < args.size(); ++i) {
        QString a = args[i];
        QString value;
        const bool attached = a.startsWith(u"--") && a.contains(u'=');
        if (attached) {
            value = a.mid(a.indexOf(u'=') + 1);
            a = a.left(a.indexOf(u'='));
        }
        static const QStringList known{"--since",   "--until",  "--machine",
                                       "--outcome", "--format", "--prune-before"};
        if (!known.contains(a))
            return QCoreApplication::translate("dncctl", "usage: dncctl [options] %1")
                .arg(QStringLiteral("journal [--since DATE] [--until DATE] [--machine NAME] "
                                    "[--outcome WHAT] [--format table|csv|json] | journal "
                                    "--prune-before DATE"));
        if (!attached) {
            if (i + 1 >= args.size())
                return QCoreApplication::translate("dncctl", "%1 needs a value").arg(a);
            value = args[++i];
        }
        const bool date = a == u"--since" || a == u"--until" || a == u"--prune-before";
        if (date && !journalDate(value).isValid())
            return QCoreApplication::translate(
                       "dncctl", "%1 takes a date such as 2026-11-24 or 2026-11-24T08:30, not "
                                 "\"%2\"")
                .arg(a, value);
        if (a == u"--format" && !QStringList{"table", "csv", "json"}.contains(value))
            return QCoreApplication::translate("dncctl",
                                               "--format takes table, csv or json, not \"%1\"")
                .arg(value);
        if (a == u"--outcome" && !journalOutcomes().contains(value))
            return QCoreApplication::translate("dncctl", "--outcome takes one of %1, not \"%2\"")
                .arg(journalOutcomes().join(QStringLiteral(", ")), value);
        others = others || a != u"--prune-before";
        if (a == u"--since")
            o.since = value;
        else if (a == u"--until")
            o.until = value;
        else if (a == u"--machine")
            o.machine = value;
        else if (a == u"--outcome")
            o.outcome = value;
        else if (a == u"--format")
            o.format = value;
        else
            o.pruneBefore = value;
    }
    if (!o.pruneBefore.isEmpty() && others)
        return QCoreApplication::translate("dncctl", "--prune-before takes no other option");
    o.command = CtlCommand::Journal;
    return {};
}

QString checkValue(const QString &option, const QString &value) {
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    if (option == u"--baud" && (!digits.match(value).hasMatch() || value.toInt() <= 0))
        return QCoreApplication::translate("dncctl",
                                           "--baud takes a whole number above 0, not \"%1\"")
            .arg(value);
    if (option == u"--parity" && !QStringList{"E", "O", "N"}.contains(value.toUpper()))
        return QCoreApplication::translate("dncctl", "--parity takes E, O or N, not \"%1\"")
            .arg(value);
    if (option == u"--data" && !QStringList{"5", "6", "7", "8"}.contains(value))
        return QCoreApplication::translate("dncctl", "--data takes 7 or 8, not \"%1\"").arg(value);
    if (option == u"--stop" && !QStringList{"1", "2"}.contains(value))
        return QCoreApplication::translate("dncctl", "--stop takes 1 or 2, not \"%1\"").arg(value);
    if (option == u"--cnc" &&
        !QStringList{"303", "504", "xonxoff"}.contains(value, Qt::CaseInsensitive))
        return QCoreApplication::translate("dncctl", "--cnc takes 303, 504 or XonXoff, not \"%1\"")
            .arg(value);
    if (option == u"--wait" &&
        (!digits.match(value).hasMatch() || value.toInt() <= 0 || value.toInt() > 86400))
        return QCoreApplication::translate("dncctl",
                                           "--wait takes seconds from 1 to 86400, not \"%1\"")
            .arg(value);
    static const QRegularExpression block(QStringLiteral("^[Nn]?[0-9]{1,12}$"));
    if ((option == u"--from-line" || option == u"--from-tool") &&
        (!digits.match(value).hasMatch() || value.toLongLong() <= 0 || value.size() > 12))
        return QCoreApplication::translate("dncctl", "%1 takes a whole number above 0, not \"%2\"")
            .arg(option, value);
    if (option == u"--from-block" && !block.match(value).hasMatch())
        return QCoreApplication::translate(
                   "dncctl", "--from-block takes a block number such as N48210, not \"%1\"")
            .arg(value);
    if (option == u"--port" && value.isEmpty())
        return QCoreApplication::translate("dncctl", "--port takes a device path");
    // An unset variable in a script: counting every tool under an empty name is never meant.
    if (option == u"-x" && value.isEmpty())
        return QCoreApplication::translate("dncctl", "-x takes a string that is not empty");
    return {};
}

} // namespace

qint16 ctlLanguage(const QStringList &args) {
    for (qsizetype i = 0; i + 1 < args.size(); ++i) {
        const QString &a = args[i];
        if (a == u"--" || !a.startsWith(u'-'))
            break;
        if (a == u"-c")
            return languageOf(args[i + 1]);
        if (optionsWithValue().contains(a))
            ++i;
    }
    return languageOfEnvironment();
}

CtlParse parseCtlArguments(const QStringList &args) {
    CtlParse p;
    CtlOptions &o = p.options;
    o.language = languageOfEnvironment();
    const auto fail = [&p](const QString &why) {
        p.error = why;
        return p;
    };
    qsizetype i = 0;
    for (; i < args.size(); ++i) {
        QString a = args[i];
        if (a == u"--") {
            ++i;
            break;
        }
        if (!a.startsWith(u'-') || a == u"-")
            break; // the command
        QString value;
        bool attached = false;
        if (a.startsWith(u"--") && a.contains(u'=')) {
            value = a.mid(a.indexOf(u'=') + 1);
            a = a.left(a.indexOf(u'='));
            attached = true;
        }
        if (a == u"-h" || a == u"--help") {
            o.help = true;
            continue;
        }
        if (a == u"--version") {
            o.version = true;
            continue;
        }
        if (a == u"-q" || a == u"--quiet") {
            o.quiet = true;
            continue;
        }
        if (!optionsWithValue().contains(a))
            return fail(QCoreApplication::translate("dncctl", "unknown option %1").arg(args[i]));
        if (!attached) {
            if (i + 1 >= args.size())
                return fail(QCoreApplication::translate("dncctl", "%1 needs a value").arg(a));
            value = args[++i];
        }
        if (const QString why = checkValue(a, value); !why.isEmpty())
            return fail(why);
        if (a == u"-c") {
            o.language = languageOf(value);
        } else if (a == u"-s") {
            o.section = value;
        } else if (a == u"-d") {
            o.toolDb = true;
            o.databasePath = value;
        } else if (a == u"-x") {
            if (o.limits.size() == MaxLimits)
                return fail(QCoreApplication::translate("dncctl", "at most %1 limit strings (-x)")
                                .arg(MaxLimits));
            o.limits << value;
        } else if (a == u"--port") {
            o.port = value;
        } else if (a == u"--baud") {
            o.baud = value;
        } else if (a == u"--parity") {
            o.parity = value.toUpper();
        } else if (a == u"--data") {
            o.data = value;
        } else if (a == u"--stop") {
            o.stop = value;
        } else if (a == u"--cnc") {
            o.cnc = value;
        } else if (a == u"--from-line" || a == u"--from-block" || a == u"--from-tool") {
            if (o.start.partWay())
                return fail(
                    QCoreApplication::translate("dncctl", "one place to start from, not two"));
            o.start.kind = a == u"--from-line"    ? StartKind::Line
                           : a == u"--from-block" ? StartKind::Block
                                                  : StartKind::Tool;
            o.start.number =
                (a == u"--from-block" ? value.mid(value.front().isDigit() ? 0 : 1) : value)
                    .toLongLong();
        } else if (a == u"--wait") {
            o.waitSeconds = value.toInt();
        }
    }
    if (o.help || o.version)
        return p;
    if (i >= args.size())
        return fail(QCoreApplication::translate("dncctl", "no command given"));
    o.commandWord = args[i];
    o.args = args.mid(i + 1);
    // "dncctl send -- -part.tap": the name that starts with a dash is a file, not an option.
    if (!o.args.isEmpty() && o.args.first() == u"--")
        o.args.removeFirst();
    if (o.commandWord == u"journal") {
        if (o.start.partWay())
            return fail(QCoreApplication::translate(
                "dncctl", "--from-line, --from-block and --from-tool are for send"));
        if (const QString why = parseJournalArguments(o.args, o); !why.isEmpty())
            return fail(why);
        o.args.clear();
        return p;
    }
    for (const Command &c : Commands) {
        if (o.commandWord != QLatin1String(c.word))
            continue;
        if (o.args.size() < c.least || o.args.size() > c.most)
            return fail(QCoreApplication::translate("dncctl", "usage: dncctl [options] %1")
                            .arg(c.synopsis));
        if (o.start.partWay() && c.command != CtlCommand::Send)
            return fail(QCoreApplication::translate(
                "dncctl", "--from-line, --from-block and --from-tool are for send"));
        o.command = c.command;
        return p;
    }
    return fail(QCoreApplication::translate("dncctl", "unknown command \"%1\"").arg(o.commandWord));
}

QString ctlUsage() {
    return QCoreApplication::translate(
        "dncctl",
        "Usage: dncctl [options] COMMAND [arguments]\n"
        "\n"
        "Moves NC programs between this PC and a CNC over the serial line, with the settings\n"
        "of the window program ($XDG_CONFIG_HOME/dnc.ini) and the same dialogue on the wire.\n"
        "\n"
        "Commands:\n"
        "  send FILE          send an NC program (its tools counted with -d)\n"
        "  receive OUT        receive the program a control \"303\" sends, save it to OUT\n"
        "  receive NAME OUT   receive the program NAME from a control \"504\"\n"
        "                     (\"XonXoff\": waits for the program punched at the control)\n"
        "                     (OUT - writes the program to standard output)\n"
        "  list               the control's programs, one a line, on standard output\n"
        "  change             CC, change program (\"303\")\n"
        "  execute            CE, change execute (\"303\")\n"
        "  delete NAME        DC, delete the program NAME on a control \"504\"\n"
        "  journal            the journal of transfers: one row per operation of the window,\n"
        "                     dncctl and the stations, in the -d database or else in\n"
        "                     $XDG_STATE_HOME/dnc/journal.db; oldest first\n"
        "    --since DATE     rows from DATE on (2026-11-24 or 2026-11-24T08:30, UTC)\n"
        "    --until DATE     rows before DATE (a day given alone is taken in whole)\n"
        "    --machine NAME   the rows of one machine (the section)\n"
        "    --outcome WHAT   done, timeout, port_failure, interrupted, refused,\n"
        "                     not_on_control, file_failure, not_counted, cancelled\n"
        "    --format F       table (default), csv (RFC 4180, a header row) or json\n"
        "  journal --prune-before DATE\n"
        "                     removes the rows and the tool usage from before DATE\n"
        "\n"
        "Options, before the command, each value as its own argument:\n"
        "  -c CODE            language of the messages: 044 English, 033 French, 049 German;\n"
        "                     without it, the language of LC_ALL, LC_MESSAGES or LANG\n"
        "  -s SECTION         the section of dnc.ini (default: Default)\n"
        "  -d DATABASE        count the tools of each program sent in this tool database\n"
        "  -x STRING          a limit string that cuts tool names short; repeat -x for each\n"
        "                     one (at most 10)\n"
        "  --port DEVICE      the serial device for this run, e.g. /dev/ttyUSB0, or a\n"
        "                     device server's port: tcp://HOST:PORT, rfc2217://HOST:PORT\n"
        "  --baud N           baud rate for this run\n"
        "  --parity E|O|N     parity for this run\n"
        "  --data 7|8         data bits for this run\n"
        "  --stop 1|2         stop bits for this run\n"
        "  --cnc TYPE         control type for this run: 303, 504 or XonXoff\n"
        "  --from-line N      send: the program's head, then its lines from line N on\n"
        "  --from-block N48210  send: the head, then from the block N48210 on\n"
        "  --from-tool T      send: the head, then from the first line that calls tool T\n"
        "                     (T5, T05 or T0505); a part-way send counts no tools\n"
        "  --wait SECONDS     receive on \"XonXoff\": how long to wait for the punch to\n"
        "                     begin (default 300)\n"
        "                     (the overrides leave dnc.ini untouched)\n"
        "  -q, --quiet        no progress line\n"
        "  -h, --help         this text\n"
        "  --version          the version\n"
        "\n"
        "Exit status:\n"
        "  0    done: the control took everything\n"
        "  2    bad usage\n"
        "  3    time-out: the control did not answer, or stopped answering\n"
        "  4    port failure: absent, busy, refused its settings, or gone\n"
        "  5    file failure: the file to send or to write cannot be used\n"
        "  6    no such program on the control, or the control sent none\n"
        "  7    the tool database cannot be used; nothing was sent (journal: the\n"
        "       journal's database cannot be read or changed)\n"
        "  8    not offered by the control type, or the settings are incomplete\n"
        "  9    sent, but the tools were not counted (the tool database failed)\n"
        "  10   ended, but lines are missing: the send stopped at a blank line, the file\n"
        "       has no CR (sent as one line), or the control sent lines that were not kept\n"
        "  130  interrupted by Ctrl-C (SIGINT); 143 by SIGTERM\n");
}
