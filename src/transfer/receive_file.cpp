#include "comm.h"
#include "reply_loop.h"
#include "transfer.h"
#include "wire_chars.h"

void ReceiveFile(Link &l) {
    QByteArray reply;
    const bool portWorked = runOnPort(l, [&] {
        l.screen.setMousePointer(11);
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
            waitForReply(l, EotRule::BeforeCr, reply,
                         [&] { l.screen.setLabel1Caption(QString::number(reply.size())); });
        }

        l.comm.setPortOpen(false);
        l.screen.setMousePointer(0);
    });
    // A failed port has already ended the operation with its message.
    if (!portWorked)
        return;

    // Also when the operation is being ended: what came is offered for saving before the end.
    if (!reply.isEmpty()) {
        l.screen.setText1Visible(true);
        l.screen.setText1Text(QString::fromLatin1(reply));
        SaveFile(l, reply);
    }
    l.screen.setLabel1Visible(false);
}
