#include "comm.h"
#include "directory.h"
#include "wire_chars.h"

namespace {

// Two letters alone, no CR and no go-ahead; closing the port lets them leave first.
void sendTwoLetters(Link &l, const QByteArray &letters) {
    if (l.g.CncType != Cnc303 && l.g.CncType != CncNone)
        return;
    runOnPort(l, [&] {
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
    sendTwoLetters(l, QByteArrayLiteral("CC"));
}

void ChangeExecute(Link &l) {
    sendTwoLetters(l, QByteArrayLiteral("CE"));
}
