// dnc-station: serves one machine, the section named by -s, with nobody at the PC.
#include "app_info.h"
#include "command_line.h"
#include "journal_database.h"
#include "journal_writer.h"
#include "languages.h"
#include "profile.h"
#include "real_link_parts.h"
#include "settings.h"
#include "signal_pipe.h"
#include "station.h"
#include "station_screen.h"
#include "text_table.h"
#include "tool_db.h"
#include "update_tool_list.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

namespace {

const char *const Usage = QT_TRANSLATE_NOOP(
    "Station",
    "Usage: dnc-station [-s SECTION] [-d DATABASE] [-c CODE] [-x STRING]...\n"
    "Serves the machine of one section of dnc.ini (control type \"XonXoff\") until stopped:\n"
    "a request punched at the control is answered with the program it names, from\n"
    "ProgramDir; any other program punched is filed in ReceiveDir.\n"
    "  -s SECTION    the section of dnc.ini (default: Default)\n"
    "  -d DATABASE   count the tools of each program sent (an SQLite file or postgresql://)\n"
    "  -c CODE       language: 044 English, 033 French, 049 German\n"
    "  -x STRING     a limit string that cuts tool names short; repeat for each\n"
    "SIGTERM stops it, SIGHUP reads dnc.ini again between transfers.\n");

struct StationOptions {
    QString section = QStringLiteral("Default");
    QString database;
    QStringList limits;
    qint16 language = 1;
    QString error;
    bool help = false, version = false;
};

StationOptions parse(const QStringList &args) {
    StationOptions o;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &a = args[i];
        if (a == u"-h" || a == u"--help") {
            o.help = true;
        } else if (a == u"--version") {
            o.version = true;
        } else if ((a == u"-s" || a == u"-d" || a == u"-c" || a == u"-x") && i + 1 < args.size()) {
            const QString value = args[++i];
            if (value.isEmpty())
                o.error =
                    QCoreApplication::translate("Station", "%1 takes a value that is not empty")
                        .arg(a);
            else if (a == u"-s")
                o.section = value;
            else if (a == u"-d")
                o.database = value;
            else if (a == u"-c")
                o.language = languageOf(value);
            else
                o.limits << value;
        } else {
            o.error = QCoreApplication::translate("Station", "unknown argument %1").arg(a);
        }
    }
    return o;
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    // The language first, so that even a mistake on the line is told in it.
    loadTranslations(parse(args).language);
    const StationOptions o = parse(args);
    if (o.help || o.version) {
        if (o.help)
            std::fputs(QCoreApplication::translate("Station", Usage).toLocal8Bit().constData(),
                       stdout);
        else
            std::printf("dnc-station (%s) %d.%d.%d\n", AppTitle, AppMajor, AppMinor, AppRevision);
        return 0;
    }
    const QByteArray tag = "dnc-station[" + o.section.toUtf8() + "]: ";
    // One line an event, on standard error: journald takes them with the time.
    const auto log = [&tag](const QString &text) {
        const QByteArray line = tag + text.toUtf8() + '\n';
        std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
        std::fflush(stderr);
    };
    if (!o.error.isEmpty()) {
        log(o.error);
        return 2;
    }

    OperationState state;
    SignalPipe interrupts(state);
    Globals g;
    g.iniPath = defaultIniPath();
    g.Language = o.language;
    g.ConfigSection = o.section;
    g.ToolDbEnabled = !o.database.isEmpty();
    g.DatabasePath = o.database;
    g.LimitCount = qint16(std::min<qsizetype>(o.limits.size(), 10));
    for (int i = 0; i < g.LimitCount; ++i)
        g.LimitStrings[size_t(i) + 1] = o.limits[i];
    InitTexts(g);
    InitChoices(g);
    // Settings that cannot be served leave the ones in use as they were.
    const auto readAll = [&g](StationSettings &s) {
        const Globals before = g;
        ReadSettings(g);
        const QString why = readStationSettings(g, s);
        if (!why.isEmpty())
            g = before;
        return why;
    };
    StationSettings settings;
    if (const QString why = readAll(settings); !why.isEmpty()) {
        log(QCoreApplication::translate("Station", "cannot serve section [%1] of %2: %3")
                .arg(g.ConfigSection, g.iniPath, why));
        return 8;
    }
    if (g.ToolDbEnabled) {
        if (const QString why = checkToolDatabase(g.DatabasePath); !why.isEmpty()) {
            log(why);
            return 7;
        }
    }

    RealLinkParts parts(g, state, QString(), RealLinkParts::clockDivisorFromEnvironment());
    StationScreen screen(log);
    CmDialog dialog;
    Link link{g, parts.comm, parts.timer, parts.yield, screen, dialog, state};
    ToolListUpdater counter(g, screen, DefaultBusyTimeoutMs, &parts.yield);
    if (g.ToolDbEnabled)
        link.toolList = &counter;
    Station station(link, parts.comm, settings, log, readAll);
    interrupts.setHangupHandler([&station] { station.requestReload(); });
    // Rows a failing journal keeps are tried again now and then, not only with the next one.
    JournalWriter journal(journalTarget(g.DatabasePath), log);
    QTimer retry;
    QObject::connect(&retry, &QTimer::timeout, [&journal] {
        if (journal.kept() > 0)
            journal.flush();
    });
    retry.start(JournalRetryMs);
    station.setJournal([&journal, &g](const JournalRow &row) {
        if (journalEnabled(g))
            journal.add(row);
    });

    // The station's state for dnc-web, beside the journal; a station serves without it.
    QString stateError;
    const std::unique_ptr<ToolDbConnection> stateDb =
        openJournalDatabase(QStringLiteral("state"), journalTarget(g.DatabasePath), &stateError,
                            StationStateWriter::BusyTimeoutMs);
    if (stateDb)
        stateError = createJournalTables(*stateDb);
    std::unique_ptr<StationStateWriter> stateWriter;
    if (stateError.isEmpty())
        stateWriter = std::make_unique<StationStateWriter>(
            *stateDb, g.ConfigSection, QSysInfo::machineHostName(), [&station, &screen] {
                StationActivity a = station.activity();
                if (a.state == QLatin1String("sending"))
                    a.percent = percentOfCaption(screen.caption());
                return a;
            });
    if (stateWriter) {
        station.setActivityChanged([&stateWriter] { stateWriter->look(); });
        stateWriter->start();
    } else
        log(QCoreApplication::translate("Station", "the station's state is not written: %1")
                .arg(stateError));
    const int status = station.run();
    if (stateWriter)
        stateWriter->write({QStringLiteral("stopped"), {}, {}, parts.comm.deviceName()});
    return status;
}
