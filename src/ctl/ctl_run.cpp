#include "ctl_run.h"

#include "commands_by_type.h"
#include "console_screen.h"
#include "ctl_outcome.h"
#include "ctl_texts.h"
#include "directory.h"
#include "journal_writer.h"
#include "line_overrides.h"
#include "profile.h"
#include "real_link_parts.h"
#include "settings.h"
#include "signal_pipe.h"
#include "text_table.h"
#include "tool_db.h"
#include "transfer.h"
#include "update_tool_list.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

// How often the progress line is redrawn: often enough to look alive, rarely enough to cost
// nothing beside the transfer.
constexpr int ProgressRefreshMs = 200;

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
    case CtlCommand::Journal:
        break;
    }
    return -1;
}

// Why the file to send cannot be sent, or empty. A FIFO or a device would block or never end.
QString unusableToSend(const QString &path) {
    const QFileInfo info(path);
    if (!info.exists())
        return ctlText(CtlText::NoSuchFile).arg(path);
    if (!info.isFile())
        return ctlText(CtlText::NotAFile).arg(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return ctlText(CtlText::CannotRead).arg(path, file.errorString());
    return {};
}

// Why the received program could not be written to `path`, or empty: asked before the
// reception, so that a program is not received only to be lost.
QString unusableToSave(const QString &path) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return ctlText(CtlText::NotAFile).arg(path);
    if (info.exists() && !info.isWritable())
        return ctlText(CtlText::CannotWrite)
            .arg(path, QCoreApplication::translate("dncctl", "read-only"));
    const QFileInfo folder(info.absolutePath());
    if (!folder.isDir())
        return ctlText(CtlText::CannotWrite)
            .arg(path, QCoreApplication::translate("dncctl", "no such folder"));
    if (!folder.isWritable())
        return ctlText(CtlText::CannotWrite)
            .arg(path, QCoreApplication::translate("dncctl", "the folder is read-only"));
    return {};
}

// Writes all of `bytes` to standard output; why not, or empty.
QString writeStdout(const QByteArray &bytes) {
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t n =
            ::write(STDOUT_FILENO, bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return QString::fromLocal8Bit(std::strerror(n < 0 ? errno : EIO));
        done += n;
    }
    return {};
}

// The listing, one entry a line: the whole lines of a "504"'s list, every line of a "303"'s.
QByteArray listingOf(const QByteArray &reply, qint16 cncType) {
    QList<QByteArray> entries = reply.split('\n');
    if (cncType == Cnc504 || entries.last().isEmpty())
        entries.removeLast(); // behind the last line end
    QByteArray out;
    for (QByteArray &e : entries) {
        if (e.endsWith('\r'))
            e.chop(1);
        out += e + '\n';
    }
    return out;
}

// What the record says that no box has said yet.
void tell(ConsoleScreen &screen, const Globals &g, const CtlOptions &o, const OutcomeRecord &r) {
    switch (r.kind) {
    case OutcomeKind::TimedOut:
        if (r.reason.isEmpty()) // the reply loops end a silence without a word
            screen.say(g.Text(TimeoutMessage));
        break;
    case OutcomeKind::NotOnControl:
        if (!r.programName.isEmpty() || r.listed < 0)
            screen.say(ctlText(CtlText::NothingReceived));
        else if (r.listed == 0)
            screen.say(ctlText(CtlText::NothingListed));
        else
            screen.say(ctlText(CtlText::NotListed).arg(o.args[0]));
        break;
    case OutcomeKind::NotCounted:
        screen.say(ctlText(CtlText::NotCounted));
        break;
    default:
        break;
    }
    const QString left = QString::number(r.linesLeftOut);
    if (r.shortfall == Shortfall::BlankLine)
        screen.say(ctlText(CtlText::BlankLine).arg(left));
    else if (r.shortfall == Shortfall::NoCarriageReturn)
        screen.say(ctlText(CtlText::NoCarriageReturn).arg(left));
    else if (r.shortfall == Shortfall::LinesDropped)
        screen.say(ctlText(CtlText::LinesDropped).arg(left));
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

    ConsoleScreen screen(state);
    const auto refuse = [&screen](int code, const QString &why) {
        screen.say(why);
        return code;
    };

    // Everything that can be told before the port is opened.
    if (const QString why = applyLineOverrides(g, o); !why.isEmpty())
        return refuse(ExitNotOffered, why);
    if (comPortNumber(g.ComSettings) == 0) {
        const qsizetype colon = g.ComSettings.indexOf(u':');
        // A device given for this run stands for whatever port the section names.
        if (o.port.isEmpty())
            return refuse(ExitNotOffered,
                          ctlText(CtlText::NoSuchPort)
                              .arg(g.ConfigSection, QDir::toNativeSeparators(g.iniPath),
                                   g.ComSettings.left(colon + 1)));
        g.ComSettings = QStringLiteral("COM1:") + g.ComSettings.mid(colon + 1);
    }
    if (!commandOffered(g.CncType, indexOf(o.command)))
        return refuse(ExitNotOffered,
                      ctlText(CtlText::NotOffered).arg(o.commandWord, g.CncChoices[g.CncType]));
    const bool named = o.command == CtlCommand::Receive && g.CncType == Cnc504;
    if (o.command == CtlCommand::Receive && o.args.size() != (named ? 2 : 1))
        return refuse(ExitUsage,
                      named ? QCoreApplication::translate(
                                  "dncctl", "a control \"504\" sends the program named: "
                                            "dncctl receive NAME OUT")
                            : QCoreApplication::translate(
                                  "dncctl", "a control \"%1\" chooses the program it sends "
                                            "itself: dncctl receive OUT")
                                  .arg(g.CncChoices[g.CncType]));
    const QString out = o.command == CtlCommand::Receive ? o.args.last() : QString();
    const bool toStdout = out == u"-";
    // Whatever opened next would have taken its descriptor: the program would go to the port.
    if (o.stdoutClosed && (toStdout || o.command == CtlCommand::List))
        return refuse(ExitFile, ctlText(CtlText::StdoutClosed));
    if (o.command == CtlCommand::Send) {
        if (const QString why = unusableToSend(o.args[0]); !why.isEmpty())
            return refuse(ExitFile, why);
    }
    if (o.command == CtlCommand::Receive && !toStdout) {
        if (const QString why = unusableToSave(out); !why.isEmpty())
            return refuse(ExitFile, why);
    }
    if (g.ToolDbEnabled && o.command == CtlCommand::Send) {
        // Sending without counting would leave the counts wrong without anyone seeing it.
        if (const QString why = checkToolDatabase(g.DatabasePath); !why.isEmpty())
            return refuse(ExitToolDb, why);
    }

    // The real parts, wired as the window wires them.
    RealLinkParts parts(g, state, o.port, RealLinkParts::clockDivisorFromEnvironment());
    if (const int interval = startupTimerInterval(g.CncType))
        parts.timer.setInterval(interval);
    CmDialog dialog;
    Link link{g, parts.comm, parts.timer, parts.yield, screen, dialog, state};
    // Counted beside the event loop, so that Ctrl-C is heard while a lock is waited for.
    ToolListUpdater counter(g, screen, DefaultBusyTimeoutMs, &parts.yield);
    if (g.ToolDbEnabled)
        link.toolList = &counter;
    if (!o.quiet && ::isatty(::fileno(stderr))) {
        if (o.command == CtlCommand::Send)
            screen.enableProgress(ProgressRefreshMs, [&link] { return link.outcome.bytes; });
        else
            screen.enableProgress(ProgressRefreshMs);
    }

    QCoreApplication::processEvents();
    if (const int s = interrupts.caught())
        return refuse(ExitSignalBase + s, ctlText(CtlText::Interrupted).arg(signalName(s)));

    {
        const OperationState::Run run(state);
        switch (o.command) {
        case CtlCommand::Send:
            screen.setOpenAnswer(QFileInfo(o.args[0]).absoluteFilePath());
            link.startAt = o.start;
            SendFile(link);
            break;
        case CtlCommand::Receive:
            screen.setSaveAnswer(toStdout ? QString() : QFileInfo(out).absoluteFilePath());
            if (named)
                screen.setPick(o.args[0].toLocal8Bit());
            // An "XonXoff" control is asked for nothing: the operator punches at the machine.
            if (g.CncType == CncXonXoff)
                ReceivePunch(link, o.waitSeconds * 1000);
            else
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
        case CtlCommand::Journal:
            break;
        }
    }

    // What the operation did, as its record says.
    OutcomeRecord r = link.outcome;
    QString unwritten;
    // dncctl takes a program to standard output itself: the save's dialog was given no file.
    if (toStdout && r.kind == OutcomeKind::Cancelled && !r.received.isEmpty()) {
        r.kind = OutcomeKind::Done;
        const QByteArray program = r.received + "\r\n";
        r.sha256 = QCryptographicHash::hash(program, QCryptographicHash::Sha256).toHex();
        unwritten = writeStdout(program);
    }
    if (o.command == CtlCommand::List && r.kind != OutcomeKind::PortFailure)
        unwritten = writeStdout(listingOf(r.received, g.CncType));
    if (!unwritten.isEmpty()) {
        const QString text =
            ctlText(CtlText::CannotWrite)
                .arg(QCoreApplication::translate("dncctl", "standard output"), unwritten);
        r.fail(OutcomeKind::FileFailure, text);
        screen.say(text);
    }
    tell(screen, g, o, r);
    const int signal = r.kind == OutcomeKind::Interrupted ? interrupts.caught() : 0;
    if (r.kind == OutcomeKind::Interrupted) {
        if (o.command == CtlCommand::Receive && !r.received.isEmpty())
            screen.say(ctlText(CtlText::NotSaved).arg(r.received.size()));
        screen.say(ctlText(CtlText::Interrupted).arg(signalName(signal)));
    }
    // The row is written once the operation has ended; a journal that fails says so and
    // leaves the exit status as the operation made it.
    if (journalEnabled(g)) {
        JournalWriter journal(journalTarget(g.DatabasePath),
                              [&screen](const QString &text) { screen.say(text); });
        const QString device = o.port.isEmpty() ? parts.comm.devicePath() : o.port;
        journal.add(journalRow(r, journalContext(g, device), g));
    }
    return exitCodeOf(r, signal);
}
