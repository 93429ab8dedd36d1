#include "comm.h"
#include "reply_loop.h"
#include "transfer.h"
#include "wire_chars.h"

void ReceiveFile(Link &l) {
    const OutcomeRecord::Scope record(l.outcome, OperationName::ReceiveFile, l.state);
    QByteArray reply;
    runOnPort(l, [&] {
        l.screen.setMousePointer(HourglassPointer);
        SetCom(l);
        l.screen.setLabel1Visible(true);
        l.screen.setLabel1Caption(QStringLiteral("0"));
        l.comm.setPortOpen(true);

        bool requested = false;
        if (l.g.CncType == Cnc303) {
            l.comm.output("PC" + CR + PromptSeq);
            requested = true;
        } else if (l.g.CncType == Cnc504) {
            const QByteArray name = SelectCNCFile(l);
            if (!name.isEmpty()) {
                l.comm.output("PC,/ISO/" + name + CR + PromptSeq);
                requested = true;
            }
        }
        if (requested) {
            const ReplyTally tally = waitForReply(l, EotRule::BeforeCr, reply, [&] {
                l.screen.setLabel1Caption(QString::number(reply.size()));
            });
            noteReception(l, tally, reply);
        }

        l.comm.setPortOpen(false);
        l.screen.setMousePointer(DefaultPointer);
    });
    // Also when the port failed (its message is out, the port closed) or the operation is
    // being ended: what came is offered for saving, and the operator decides.
    if (!reply.isEmpty()) {
        l.screen.setText1Visible(true);
        l.screen.setText1Text(QString::fromLatin1(reply));
        SaveFile(l, reply);
    }
    l.screen.setLabel1Visible(false);
}

void noteReception(Link &l, const ReplyTally &tally, const QByteArray &reply) {
    OutcomeRecord &r = l.outcome;
    r.received = reply;
    r.bytes = tally.keptBytes;
    r.lines = tally.keptLines;
    if (tally.droppedLines > 0) {
        r.shortfall = Shortfall::LinesDropped;
        r.linesLeftOut = tally.droppedLines;
    }
    if (l.g.TimedOut)
        r.fail(OutcomeKind::TimedOut);
    else if (reply.isEmpty())
        r.fail(OutcomeKind::NotOnControl);
}
