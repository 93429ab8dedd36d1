#include "comm.h"
#include "link_times.h"
#include "nc_file_survey.h"
#include "nc_line_reader.h"
#include "transfer.h"
#include "wire_chars.h"

#include <QCoreApplication>

#include <cmath>
#include <future>
#include <utility>

namespace {

// The prefix, then the share of the file sent as "##": rounded, no digit when it is 0.
QString caption(const QString &prefix, qint64 sent, qint64 total) {
    const auto percent = std::llround(double(sent) / double(total) * 100.0);
    return prefix + (percent == 0 ? QString() : QString::number(percent)) + QLatin1Char('%');
}

QByteArray prepareLine(const Globals &g, NcLineReader &file) {
    QByteArray line = file.readLine();
    if (g.NoSpace != 0)
        line = StripSpaces(line);
    return line;
}

void noteLineSent(OutcomeRecord &r, const QByteArray &line) {
    r.bytes += line.size() + 1;
    ++r.lines;
}

// The lines behind the blank one that hold anything: the control has none of them.
void noteLinesLeftOut(Link &l, const Globals &g, NcLineReader &file) {
    qint64 left = 0;
    while (!file.atEnd())
        left += !prepareLine(g, file).isEmpty();
    if (left > 0 && !file.failed()) {
        l.outcome.shortfall = Shortfall::BlankLine;
        l.outcome.linesLeftOut = left;
    }
}

// Gives the port time to put out what is queued; an operation being ended stops it too.
void drain(Link &l) {
    while (l.comm.outBufferCount() > 0 && !l.state.ending())
        l.yield.DoEvents();
}

// "303" and "504": every line, and the start, is answered with DLE "7".
void sendAcknowledged(Link &l, NcLineReader &file, const QString &prefix) {
    Globals &g = l.g;
    const qint64 total = file.size();
    qint64 sent = 0;
    bool blank = false;
    l.timer.setInterval(AnswerTimeoutMs);
    l.comm.output("R" + CR);
    WaitForAnswer(l);
    while (!file.atEnd() && !g.TimedOut) {
        l.yield.DoEvents();
        if (l.state.ending())
            break;
        const QByteArray line = prepareLine(g, file);
        if (line.isEmpty()) {
            blank = !file.failed();
            break; // a blank line ends the program; so does a line that could not be read
        }
        l.comm.output(line + CR);
        noteLineSent(l.outcome, line);
        sent += line.size();
        l.screen.setLabel1Caption(caption(prefix, sent, total));
        drain(l);
        WaitForAnswer(l);
    }
    // However the loop ended: end of file, blank line, time-out.
    l.comm.output(WireChar::EOT + CR);
    drain(l);
    l.comm.setPortOpen(false);
    if (blank)
        noteLinesLeftOut(l, g, file);
}

// "XonXoff": a plain stream; any character from the control halts it until an X-on.
void sendStream(Link &l, NcLineReader &file, const QString &prefix) {
    Globals &g = l.g;
    const qint64 total = file.size();
    qint64 sent = 0;
    l.timer.setInterval(FirstXonTimeoutMs);
    l.comm.output(QByteArray(1, WireChar::XON));
    if (g.WaitXon != 0)
        WaitForXon(l);
    l.timer.setInterval(XonTimeoutMs);
    while (!file.atEnd() && !g.TimedOut) {
        l.yield.DoEvents();
        if (l.state.ending())
            break;
        const QByteArray line = prepareLine(g, file);
        if (file.failed())
            break;
        l.comm.output(line + CR);
        noteLineSent(l.outcome, line);
        sent += line.size();
        if (l.comm.inBufferCount() >= 1)
            WaitForXon(l);
        l.screen.setLabel1Caption(caption(prefix, sent, total));
    }
    drain(l);
    l.comm.setPortOpen(false);
}

} // namespace

void SendData(Link &l, const QString &FileName) {
    Globals &g = l.g;
    const OutcomeRecord::Scope record(l.outcome, OperationName::SendData, l.state);
    l.outcome.filePath = FileName;
    // Taken back at once: the next send starts at the top unless it is told otherwise.
    const StartPoint start = std::exchange(l.startAt, StartPoint());
    l.outcome.start = start.text();
    // A FIFO would hold the window inside the open and a device such as /dev/zero never ends:
    // neither is counted nor sent.
    if (const QString why = notRegularReason(FileName); !why.isEmpty()) {
        const QString text =
            QCoreApplication::translate("File", "%1 %2: only a regular file can be sent.")
                .arg(FileName, why);
        l.outcome.fail(OutcomeKind::FileFailure, text);
        l.screen.msgBox(text, BoxIcon::Critical, QString());
        return;
    }
    // First of all, so that a file that then fails has been counted all the same; a program
    // sent again part-way was counted when it was sent whole.
    if (g.ToolDbEnabled && l.toolList && !start.partWay()) {
        l.toolList->UpdateToolList(FileName);
        if (const QString why = l.toolList->failure(); !why.isEmpty())
            l.outcome.fail(OutcomeKind::NotCounted, why);
    }
    // The fingerprint for the record is made beside the send: on a long program it takes
    // longer than anything else before the first byte.
    std::future<QByteArray> sha256 = std::async(std::launch::async, sha256OfFile, FileName);
    // Ended while the count waited for the database: the control has been told nothing yet,
    // and must not be given an empty program.
    if (l.state.ending())
        return;
    // A line that cannot be read would cut the program after the control has taken its start
    // and stored what came under its name: such a file is refused while nothing has gone out.
    const NcFileSurvey survey = surveyNcFile(FileName, MaxLineBytes, start);
    if (!survey.error.isEmpty()) {
        const QString text = QCoreApplication::translate("File", "%1: %2. Nothing was sent.")
                                 .arg(FileName, survey.error);
        l.outcome.fail(OutcomeKind::FileFailure, text);
        l.screen.msgBox(text, BoxIcon::Critical, QString());
        return;
    }

    runOnPort(l, [&] {
        SetCom(l);
        l.screen.setMousePointer(HourglassPointer);
        NcLineReader file(FileName);
        if (start.partWay())
            file.skipAfterHead(survey.headLines, survey.startLine, survey.startOffset,
                               survey.sendBytes());
        if (!file.open()) {
            l.screen.setMousePointer(DefaultPointer);
            l.screen.setLabel1Visible(false);
            const QString text =
                QCoreApplication::translate("File", "The NC file %1 cannot be sent: %2")
                    .arg(FileName, file.errorString());
            l.outcome.fail(OutcomeKind::FileFailure, text);
            l.screen.msgBox(text, BoxIcon::Critical, QString());
            return;
        }
        if (file.size() > 0) {
            g.TimedOut = false;
            const QString prefix = g.Text(SendFilePrefix) + FileName + QStringLiteral(" - ");
            l.screen.setLabel1Caption(prefix);
            l.screen.setLabel1Visible(true);
            // The modem status lines are never looked at.
            l.comm.setDTREnable(true);
            if (!l.comm.portOpen())
                l.comm.setPortOpen(true);
            if (g.CncType == Cnc303 || g.CncType == Cnc504)
                sendAcknowledged(l, file, prefix);
            else if (g.CncType == CncXonXoff)
                sendStream(l, file, prefix);
        }
        // Closing, on every way out.
        file.close();
        if (l.comm.portOpen())
            l.comm.setPortOpen(false);
        l.screen.setLabel1Visible(false);
        l.screen.setMousePointer(DefaultPointer);
        if (file.failed()) {
            const QString text = QCoreApplication::translate(
                                     "File", "%1: %2. The lines before it were sent, the rest "
                                             "of the file was not.")
                                     .arg(FileName, file.errorString());
            l.outcome.fail(OutcomeKind::FileFailure, text);
            l.screen.msgBox(text, BoxIcon::Critical, QString());
        }
    });
    l.outcome.sha256 = sha256.get();
    // Every line went out, but as one: the control got one line where the file has many.
    const bool wentOut =
        l.outcome.kind == OutcomeKind::Done || l.outcome.kind == OutcomeKind::NotCounted;
    if (wentOut && survey.carriageReturns == 0 && survey.lineFeeds > 0) {
        l.outcome.shortfall = Shortfall::NoCarriageReturn;
        l.outcome.linesLeftOut = survey.lineFeeds;
    }
}
