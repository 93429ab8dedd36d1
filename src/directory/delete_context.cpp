#include "comm.h"
#include "directory.h"
#include "wire_chars.h"

void DeleteContext(Link &l) {
    if (l.g.CncType == CncXonXoff)
        return;
    runOnPort(l, [&] {
        l.screen.setMousePointer(11);
        SetCom(l);
        // Only the control "504" has a delete command; the others end with the port unopened.
        if (l.g.CncType == Cnc504) {
            l.comm.setPortOpen(true);
            const QByteArray name = SelectCNCFile(l);
            if (!name.isEmpty())
                l.comm.output("DC,/ISO/" + name + CR + PromptSeq);
        }
        if (l.comm.portOpen())
            l.comm.setPortOpen(false);
        l.screen.setMousePointer(0);
    });
}
