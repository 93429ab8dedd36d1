#include "comm.h"
#include "profile.h"
#include "punch_reader.h"
#include "transfer.h"

void ReceivePunch(Link &l, int waitMs) {
    const OutcomeRecord::Scope record(l.outcome, OperationName::ReceivePunch, l.state);
    Punch punch;
    runOnPort(l, [&] {
        l.screen.setMousePointer(11);
        SetCom(l);
        l.comm.setPortOpen(true);
        PunchReader reader;
        punch = reader.read(l, waitMs, punchSilenceMs(l.g));
        l.comm.setPortOpen(false);
        l.screen.setMousePointer(0);
        if (!punch.portFailure.isEmpty()) {
            l.outcome.fail(OutcomeKind::PortFailure, punch.portFailure);
            l.screen.msgBox(punch.portFailure, BoxIcon::Critical, QString());
        }
    });
    OutcomeRecord &r = l.outcome;
    r.received = punch.bytes;
    r.bytes = punch.bytes.size();
    r.lines = punch.lines;
    if (punch.bytes.isEmpty())
        r.fail(OutcomeKind::TimedOut);
    // Cut by silence: the control has stopped, and what came is offered as it is.
    if (!punch.bytes.isEmpty()) {
        l.screen.setText1Visible(true);
        l.screen.setText1Text(QString::fromLatin1(punch.bytes));
        SaveFile(l, punch.bytes);
    }
}

int punchSilenceMs(const Globals &g) {
    const QString text = GetProfile(g, g.ConfigSection, QStringLiteral("PunchSilence"));
    bool ok = false;
    const double seconds = text.toDouble(&ok);
    return ok && seconds > 0 && seconds <= 3600 ? int(seconds * 1000) : DefaultPunchSilenceMs;
}
