#include "reply_loop.h"

#include "comm.h"
#include "wire_chars.h"

void waitForReply(Link &l, EotRule rule, QByteArray &reply,
                  const std::function<void()> &afterChunk) {
    l.g.TimedOut = false;
    for (;;) {
        l.yield.DoEvents();
        if (l.comm.inBufferCount() == 0) {
            // Enabling a running timer does not restart it: the silence is counted from the
            // first empty pass.
            l.timer.setEnabled(true);
        } else {
            l.timer.setEnabled(false);
            const QByteArray chunk = l.comm.input();
            const bool hasEot = chunk.contains(WireChar::EOT);
            if (rule == EotRule::BeforeCr && hasEot)
                break;
            const qsizetype cr = chunk.indexOf(WireChar::CR);
            if (cr >= 0) {
                // Only the first line of a chunk counts; the control sends the next one after
                // the go-ahead.
                reply.append(chunk.constData(), cr + 1);
                reply.append('\n');
                l.comm.output(PromptSeq);
            } else if (hasEot) {
                break; // reached only by a listing: a reception has left above
            } else {
                reply.append(chunk);
            }
            if (afterChunk)
                afterChunk();
        }
        // Tested after the chunk, so that one arriving with the tick still counts.
        if (l.g.TimedOut || l.state.ending())
            break;
    }
    l.timer.setEnabled(false);
}
