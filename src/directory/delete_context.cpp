#include "comm.h"
#include "directory.h"
#include "wire_chars.h"

#include <QCoreApplication>

void DeleteContext(Link &l) {
    const OutcomeRecord::Scope record(l.outcome, OperationName::DeleteContext, l.state);
    if (l.g.CncType == CncXonXoff) {
        l.outcome.fail(OutcomeKind::Cancelled,
                       QCoreApplication::translate("Directory", "no delete command"));
        return;
    }
    runOnPort(l, [&] {
        l.screen.setMousePointer(HourglassPointer);
        SetCom(l);
        // Only the control "504" has a delete command; the others end with the port unopened.
        if (l.g.CncType != Cnc504)
            l.outcome.fail(OutcomeKind::Cancelled,
                           QCoreApplication::translate("Directory", "no delete command"));
        if (l.g.CncType == Cnc504) {
            l.comm.setPortOpen(true);
            const QByteArray name = SelectCNCFile(l);
            if (!name.isEmpty()) {
                const QByteArray command = "DC,/ISO/" + name + CR + PromptSeq;
                l.comm.output(command);
                l.outcome.bytes = command.size();
            }
        }
        if (l.comm.portOpen())
            l.comm.setPortOpen(false);
        l.screen.setMousePointer(DefaultPointer);
    });
}
