#include "comm.h"
#include "dialogue.h"
#include "reply_list.h"
#include "reply_loop.h"
#include "wire_chars.h"

QByteArray SelectCNCFile(Link &l) {
    const OutcomeRecord::Scope record(l.outcome, OperationName::SelectCNCFile, l.state);
    QByteArray result;
    l.comm.output("MC,/ISO" + CR + PromptSeq);

    QByteArray reply;
    waitForReply(l, EotRule::OnlyWithoutCr, reply);

    bool declined = false;
    l.outcome.listed = 0;
    if (!reply.isEmpty()) {
        // Clearing drops a selection left from an earlier list, so it cannot count here.
        showReplyInList1(l, reply);
        l.screen.list1Refresh();
        l.screen.setMousePointer(DefaultPointer);
        l.outcome.listed = l.screen.list1Count();
        if (l.screen.list1Count() > 0) {
            // No time limit: the operator's first selection, by click or keyboard, is the
            // choice. An operation being ended leaves the wait with nothing chosen.
            int index;
            do {
                index = l.screen.list1ListIndex();
                declined = index == Screen::NoChoiceComing;
                if (declined)
                    break;
                l.yield.DoEvents();
            } while (index < 0 && !l.state.ending());
            if (!l.state.ending() && !declined)
                result = l.screen.list1List(index).toLatin1();
        }
        l.screen.setList1Visible(false);
        l.screen.repaint();
    }
    l.screen.setMousePointer(DefaultPointer);
    l.outcome.programName = result;
    // The list's own silence does not matter once a program is chosen from it.
    if (result.isEmpty())
        l.outcome.fail(l.g.TimedOut && !declined ? OutcomeKind::TimedOut
                                                 : OutcomeKind::NotOnControl);
    return result;
}
