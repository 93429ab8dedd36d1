#include "comm.h"
#include "directory.h"
#include "transfer.h"

namespace {

// Two letters alone, no CR and no go-ahead; closing the port lets them leave first.
void SendTwoLetters(Link &l, const QByteArray &letters) {
    if (l.g.CncType > 1)
        return;
    RunOnPort(l, [&] {
        l.screen.setMousePointer(11);
        SetCom(l);
        l.comm.setPortOpen(true);
        l.comm.output(letters);
        l.comm.setPortOpen(false);
        l.screen.setMousePointer(0);
    });
}

} // namespace

void ChangeContext(Link &l) {
    SendTwoLetters(l, QByteArrayLiteral("CC"));
}

void ChangeExecute(Link &l) {
    SendTwoLetters(l, QByteArrayLiteral("CE"));
}
