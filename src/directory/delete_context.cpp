#include "comm.h"
#include "directory.h"
#include "transfer.h"

void DeleteContext(Link &l) {
    if (l.g.CncType == 3)
        return;
    RunOnPort(l, [&] {
        l.screen.setMousePointer(11);
        SetCom(l);
        // Only the control "504" has a delete command; the others end with the port unopened.
        if (l.g.CncType == 2) {
            l.comm.setPortOpen(true);
            const QByteArray name = SelectCNCFile(l);
            if (!name.isEmpty())
                l.comm.output("DC,/ISO/" + name + l.g.CR + l.g.PromptSeq);
        }
        if (l.comm.portOpen())
            l.comm.setPortOpen(false);
        l.screen.setMousePointer(0);
    });
}
