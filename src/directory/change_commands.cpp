#include "comm.h"
#include "directory.h"
#include "wire_chars.h"

#include <QCoreApplication>

namespace {

// Two letters alone, no CR and no go-ahead; closing the port lets them leave first.
void sendTwoLetters(Link &l, const QByteArray &letters, OperationName operation) {
    const OutcomeRecord::Scope record(l.outcome, operation, l.state);
    if (l.g.CncType != Cnc303 && l.g.CncType != CncNone) {
        l.outcome.fail(OutcomeKind::Cancelled,
                       QCoreApplication::translate("Directory", "no such command"));
        return;
    }
    runOnPort(l, [&] {
        l.screen.setMousePointer(HourglassPointer);
        SetCom(l);
        l.comm.setPortOpen(true);
        l.comm.output(letters);
        l.outcome.bytes = letters.size();
        l.comm.setPortOpen(false);
        l.screen.setMousePointer(DefaultPointer);
    });
}

} // namespace

void ChangeContext(Link &l) {
    sendTwoLetters(l, QByteArrayLiteral("CC"), OperationName::ChangeContext);
}

void ChangeExecute(Link &l) {
    sendTwoLetters(l, QByteArrayLiteral("CE"), OperationName::ChangeExecute);
}
