#include "ctl_run.h"

#include "commands_by_type.h"
#include "console_screen.h"
#include "ctl_outcome.h"
#include "ctl_texts.h"
#include "directory.h"
#include "line_overrides.h"
#include "profile.h"
#include "real_link_parts.h"
#include "settings.h"
#include "signal_pipe.h"
#include "text_table.h"
#include "tool_db.h"
#include "transfer.h"
#include "update_tool_list.h"
#include "watched_comm.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

// How often the progress line is redrawn: often enough to look alive, rarely enough to cost
// nothing beside the transfer.
constexpr int ProgressRefreshMs = 200;

// Boxes shown while the tools are counted are the tool list's, not the transfer's.
class ToolListWatch : public ToolListHook {
public:
    ToolListWatch(ToolListHook &counter, ConsoleScreen &screen)
        : m_counter(counter), m_screen(screen) {}
    void UpdateToolList(const QString &file) override {
        m_screen.setToolListRunning(true);
        m_counter.UpdateToolList(file);
        m_screen.setToolListRunning(false);
    }

private:
    ToolListHook &m_counter;
    ConsoleScreen &m_screen;
};

int indexOf(CtlCommand c) {
    switch (c) {
    case CtlCommand::Send:
        return SendCommand;
    case CtlCommand::Receive:
        return ReceiveCommand;
    case CtlCommand::List:
        return MapCommand;
    case CtlCommand::Change:
        return ChangeContextCommand;
    case CtlCommand::Execute:
        return ChangeExecuteCommand;
    case CtlCommand::Delete:
        return DeleteCommand;
    case CtlCommand::None:
        break;
    }
    return -1;
}

// Why the file to send cannot be sent, or empty. A FIFO or a device would block or never end.
QString unusableToSend(const QString &path, qint16 language) {
    const QFileInfo info(path);
    if (!info.exists())
        return ctlText(CtlText::NoSuchFile, language).arg(path);
    if (!info.isFile())
        return ctlText(CtlText::NotAFile, language).arg(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return ctlText(CtlText::CannotRead, language).arg(path, file.errorString());
    return {};
}

// Why the received program could not be written to `path`, or empty: asked before the
// reception, so that a program is not received only to be lost.
QString unusableToSave(const QString &path, qint16 language) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return ctlText(CtlText::NotAFile, language).arg(path);
    if (info.exists() && !info.isWritable())
        return ctlText(CtlText::CannotWrite, language).arg(path, QStringLiteral("read-only"));
    const QFileInfo folder(info.absolutePath());
    if (!folder.isDir())
        return ctlText(CtlText::CannotWrite, language).arg(path, QStringLiteral("no such folder"));
    if (!folder.isWritable())
        return ctlText(CtlText::CannotWrite, language)
            .arg(path, QStringLiteral("the folder is read-only"));
    return {};
}

bool writeOut(const QByteArray &bytes) {
    return std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) ==
               size_t(bytes.size()) &&
           std::fflush(stdout) == 0;
}

// The listing, one entry a line: List1's entries on a "504", the lines of Text1 on a "303".
bool printListing(const Globals &g, const ConsoleScreen &screen) {
    QList<QByteArray> entries;
    if (g.CncType == Cnc504) {
        entries = screen.list1Entries();
    } else {
        entries = screen.text1().split('\n');
        for (QByteArray &e : entries)
            if (e.endsWith('\r'))
                e.chop(1);
        if (!entries.isEmpty() && entries.last().isEmpty())
            entries.removeLast(); // behind the last line end
    }
    QByteArray out;
    for (const QByteArray &e : entries)
        out += e + '\n';
    return writeOut(out);
}

} // namespace

int runDncctl(const CtlOptions &o) {
    OperationState state;
    SignalPipe interrupts(state);

    // Start-up as the window's: the command line, the texts, the choices, the settings.
    Globals g;
    g.iniPath = defaultIniPath();
    g.Language = o.language;
    g.ConfigSection = o.section;
    g.ToolDbEnabled = o.toolDb;
    g.DatabasePath = o.databasePath;
    g.LimitCount = qint16(o.limits.size());
    for (qsizetype i = 0; i < o.limits.size(); ++i)
        g.LimitStrings[size_t(i) + 1] = o.limits[i];
    InitTexts(g);
    InitChoices(g);
    ReadSettings(g);

    ConsoleScreen screen(g, state);
    const auto refuse = [&screen](int code, const QString &why) {
        screen.say(why);
        return code;
    };

    // Everything that can be told before the port is opened.
    if (const QString why = applyLineOverrides(g, o); !why.isEmpty())
        return refuse(ExitNotOffered, why);
    if (!commandOffered(g.CncType, indexOf(o.command)))
        return refuse(
            ExitNotOffered,
            ctlText(CtlText::NotOffered, g.Language).arg(o.commandWord, g.CncChoices[g.CncType]));
    const bool named = o.command == CtlCommand::Receive && g.CncType == Cnc504;
    if (o.command == CtlCommand::Receive && o.args.size() != (named ? 2 : 1))
        return refuse(ExitUsage,
                      named ? QStringLiteral("a control \"504\" sends the program named: "
                                             "dncctl receive NAME OUT")
                            : QStringLiteral("a control \"%1\" chooses the program it sends "
                                             "itself: dncctl receive OUT")
                                  .arg(g.CncChoices[g.CncType]));
    const QString out = o.command == CtlCommand::Receive ? o.args.last() : QString();
    const bool toStdout = out == u"-";
    if (o.command == CtlCommand::Send) {
        if (const QString why = unusableToSend(o.args[0], g.Language); !why.isEmpty())
            return refuse(ExitFile, why);
    }
    if (o.command == CtlCommand::Receive && !toStdout) {
        if (const QString why = unusableToSave(out, g.Language); !why.isEmpty())
            return refuse(ExitFile, why);
    }
    if (g.ToolDbEnabled && o.command == CtlCommand::Send) {
        // Sending without counting would leave the counts wrong without anyone seeing it.
        if (const QString why = checkToolDatabase(g.DatabasePath); !why.isEmpty())
            return refuse(ExitToolDb, why);
    }

    // The real parts, wired as the window wires them.
    RealLinkParts parts(g, state, o.port, RealLinkParts::clockDivisorFromEnvironment());
    WatchedComm comm(parts.comm);
    if (const int interval = startupTimerInterval(g.CncType))
        parts.timer.setInterval(interval);
    CmDialog dialog;
    Link link{g, comm, parts.timer, parts.yield, screen, dialog, state};
    ToolListUpdater counter(g, screen);
    ToolListWatch watch(counter, screen);
    if (g.ToolDbEnabled)
        link.toolList = &watch;
    if (!o.quiet && ::isatty(::fileno(stderr))) {
        if (o.command == CtlCommand::Send)
            screen.enableProgress(ProgressRefreshMs, [&comm] { return comm.sent(); });
        else
            screen.enableProgress(ProgressRefreshMs);
    }

    QCoreApplication::processEvents();
    if (const int s = interrupts.caught())
        return refuse(ExitSignalBase + s,
                      ctlText(CtlText::Interrupted, g.Language).arg(signalName(s)));

    {
        const OperationState::Run run(state);
        switch (o.command) {
        case CtlCommand::Send:
            screen.setOpenAnswer(QFileInfo(o.args[0]).absoluteFilePath());
            SendFile(link);
            break;
        case CtlCommand::Receive:
            screen.setSaveAnswer(toStdout ? QString() : QFileInfo(out).absoluteFilePath());
            if (named)
                screen.setPick(o.args[0].toLocal8Bit());
            ReceiveFile(link);
            break;
        case CtlCommand::List:
            MapContext(link);
            break;
        case CtlCommand::Change:
            ChangeContext(link);
            break;
        case CtlCommand::Execute:
            ChangeExecute(link);
            break;
        case CtlCommand::Delete:
            screen.setPick(o.args[0].toLocal8Bit());
            DeleteContext(link);
            break;
        case CtlCommand::None:
            break;
        }
    }

    // What the operation left, read back.
    Outcome result;
    const int caught = interrupts.caught();
    // A signal read only after the operation had ended did not end it.
    if (caught != 0 && state.ending() && screen.pick() != Pick::NotListed)
        result.signal = caught;
    result.portFailed = comm.failed();
    bool timeoutShown = false;
    for (const ConsoleScreen::Box &b : screen.boxes()) {
        if (b.duringToolList)
            result.toolDbFailed = true;
        else if (b.icon == BoxIcon::Critical)
            result.fileFailed = true;
        else if (b.text == g.Text(TimeoutMessage))
            timeoutShown = true;
    }
    result.pick = screen.pick();
    // For a delete, the wait that counts is the listing before the choice.
    result.timedOut = (o.command == CtlCommand::Send || o.command == CtlCommand::Receive ||
                       o.command == CtlCommand::List || o.command == CtlCommand::Delete) &&
                      g.TimedOut &&
                      !(o.command == CtlCommand::Delete && result.pick == Pick::Chosen);
    const QByteArray program = screen.text1();
    if (o.command == CtlCommand::Receive)
        result.received = !program.isEmpty();

    // The data asked for, on standard output.
    bool written = true;
    if (o.command == CtlCommand::List && !result.portFailed)
        written = printListing(g, screen);
    if (o.command == CtlCommand::Receive && toStdout && result.received && result.signal == 0) {
        QFile stdoutFile;
        written = stdoutFile.open(::fileno(stdout), QIODevice::WriteOnly) &&
                  writeSavedProgram(stdoutFile, program);
    }
    if (!written) {
        screen.say(ctlText(CtlText::CannotWrite, g.Language)
                       .arg(QStringLiteral("standard output"), QStringLiteral("closed")));
        result.fileFailed = true;
    }

    const int code = exitCodeOf(result);
    // The reply loops end a silence without a word; the wait of a send has said it already.
    if (code == ExitTimeout && !timeoutShown)
        screen.say(g.Text(TimeoutMessage));
    if (code == ExitNoProgram) {
        if (result.pick == Pick::NotListed)
            screen.say(ctlText(CtlText::NotListed, g.Language).arg(o.args[0]));
        else if (result.pick == Pick::NotAsked)
            screen.say(ctlText(CtlText::NothingListed, g.Language));
        else
            screen.say(ctlText(CtlText::NothingReceived, g.Language));
    }
    if (result.signal != 0) {
        if (o.command == CtlCommand::Receive && result.received)
            screen.say(ctlText(CtlText::NotSaved, g.Language).arg(program.size()));
        screen.say(ctlText(CtlText::Interrupted, g.Language).arg(signalName(result.signal)));
    }
    return code;
}
