#include "comm.h"
#include "directory.h"
#include "reply_loop.h"
#include "transfer.h"

void ReceiveFile(Link &l) {
    QByteArray reply;
    bool portFailed = true;
    RunOnPort(l, [&] {
        l.screen.setMousePointer(11);
        SetCom(l);
        l.screen.setLabel1Visible(true);
        l.screen.setLabel1Caption(QStringLiteral("0"));
        l.comm.setPortOpen(true);

        bool requested = false;
        if (l.g.CncType == 1) {
            l.comm.output("PC" + l.g.CR + l.g.PromptSeq);
            requested = true;
        } else if (l.g.CncType == 2) {
            const QByteArray name = SelectCNCFile(l);
            if (!name.isEmpty()) {
                l.comm.output("PC,/ISO/" + name + l.g.CR + l.g.PromptSeq);
                requested = true;
            }
        }
        if (requested) {
            WaitForReply(l, EotRule::BeforeCr, reply,
                         [&] { l.screen.setLabel1Caption(QString::number(reply.size())); });
        }

        l.comm.setPortOpen(false);
        l.screen.setMousePointer(0);
        portFailed = false;
    });
    // A failed port has already ended the operation with its message.
    if (portFailed)
        return;

    // Also when the window is closing: what came is offered for saving before the end.
    if (!reply.isEmpty()) {
        l.screen.setText1Visible(true);
        l.screen.setText1Text(QString::fromLatin1(reply));
        SaveFile(l, reply);
    }
    l.screen.setLabel1Visible(false);
}
