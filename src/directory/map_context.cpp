#include "comm.h"
#include "directory.h"
#include "reply_list.h"
#include "reply_loop.h"
#include "transfer.h"

void MapContext(Link &l) {
    // Only the controls "303" and "504" have a directory command.
    if (l.g.CncType != 1 && l.g.CncType != 2)
        return;
    RunOnPort(l, [&] {
        l.screen.setMousePointer(11);
        SetCom(l);
        l.comm.setPortOpen(true);
        const QByteArray command = l.g.CncType == 1 ? QByteArray("MC") : QByteArray("MC,/ISO");
        l.comm.output(command + l.g.CR + l.g.PromptSeq);

        QByteArray reply;
        WaitForReply(l, EotRule::OnlyWithoutCr, reply);

        if (!reply.isEmpty()) {
            if (l.g.CncType == 1) {
                l.screen.setText1Visible(true);
                l.screen.setText1Text(QString::fromLatin1(reply));
            } else {
                ShowReplyInList1(l, reply);
            }
        }
        l.comm.setPortOpen(false);
        l.screen.setMousePointer(0);
    });
}
