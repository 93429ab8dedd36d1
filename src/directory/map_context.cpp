#include "comm.h"
#include "directory.h"
#include "reply_list.h"
#include "reply_loop.h"
#include "wire_chars.h"

#include <QCoreApplication>

void MapContext(Link &l) {
    const OutcomeRecord::Scope record(l.outcome, OperationName::MapContext, l.state);
    // Only the controls "303" and "504" have a directory command.
    if (l.g.CncType != Cnc303 && l.g.CncType != Cnc504) {
        l.outcome.fail(OutcomeKind::Cancelled,
                       QCoreApplication::translate("Directory", "no directory command"));
        return;
    }
    runOnPort(l, [&] {
        l.screen.setMousePointer(HourglassPointer);
        SetCom(l);
        l.comm.setPortOpen(true);
        const QByteArray command = l.g.CncType == Cnc303 ? QByteArray("MC") : QByteArray("MC,/ISO");
        l.comm.output(command + CR + PromptSeq);

        QByteArray reply;
        const ReplyTally tally = waitForReply(l, EotRule::OnlyWithoutCr, reply);
        l.outcome.received = reply;
        l.outcome.bytes = tally.keptBytes;
        l.outcome.lines = tally.keptLines;
        // A list ends with an EOT; a silence may have cut it.
        if (l.g.TimedOut)
            l.outcome.fail(OutcomeKind::TimedOut);

        if (!reply.isEmpty()) {
            if (l.g.CncType == Cnc303) {
                l.screen.setText1Visible(true);
                l.screen.setText1Text(QString::fromLatin1(reply));
            } else {
                showReplyInList1(l, reply);
            }
        }
        l.comm.setPortOpen(false);
        l.screen.setMousePointer(DefaultPointer);
    });
}
