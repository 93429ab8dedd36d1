#include "comm.h"
#include "dialogue.h"

#include <QCoreApplication>

bool runOnPort(Link &l, const std::function<void()> &operation) {
    try {
        operation();
        return true;
    } catch (const CommError &e) {
        l.timer.setEnabled(false);
        try {
            l.comm.setPortOpen(false);
        } catch (const CommError &) {
            // The port is already gone; closed is all we need.
        }
        l.screen.setLabel1Visible(false);
        l.screen.setMousePointer(DefaultPointer);
        const QString text = e.message();
        l.outcome.fail(OutcomeKind::PortFailure, text);
        l.screen.msgBox(text, BoxIcon::Critical, QString());
        return false;
    }
}
