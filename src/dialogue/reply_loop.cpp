#include "reply_loop.h"

#include "comm.h"
#include "wire_chars.h"

#include <algorithm>

namespace {

// Lines in what the dialogue drops: each CR ends one, and text behind the last CR is the start
// of one more. The EOT that ends the reply, an LF behind a CR and NUL leader are no line.
qint64 linesIn(QByteArrayView dropped) {
    const QByteArrayView tail = dropped.sliced(dropped.lastIndexOf(WireChar::CR) + 1);
    const bool partLine = std::any_of(tail.begin(), tail.end(), [](char c) {
        return c != WireChar::EOT && c != '\n' && c != '\0';
    });
    return dropped.count(WireChar::CR) + (partLine ? 1 : 0);
}

} // namespace

ReplyTally waitForReply(Link &l, EotRule rule, QByteArray &reply,
                        const std::function<void()> &afterChunk) {
    ReplyTally tally;
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
            if (rule == EotRule::BeforeCr && hasEot) {
                tally.droppedLines +=
                    linesIn(QByteArrayView(chunk).first(chunk.indexOf(WireChar::EOT)));
                break;
            }
            const qsizetype cr = chunk.indexOf(WireChar::CR);
            if (cr >= 0) {
                // Only the first line of a chunk counts; the control sends the next one after
                // the go-ahead.
                reply.append(chunk.constData(), cr + 1);
                reply.append('\n');
                tally.keptBytes += cr + 1;
                ++tally.keptLines;
                tally.droppedLines += linesIn(QByteArrayView(chunk).sliced(cr + 1));
                l.comm.output(PromptSeq);
            } else if (hasEot) {
                break; // reached only by a listing: a reception has left above
            } else {
                reply.append(chunk);
                tally.keptBytes += chunk.size();
            }
            if (afterChunk)
                afterChunk();
        }
        // Tested after the chunk, so that one arriving with the tick still counts.
        if (l.g.TimedOut || l.state.ending())
            break;
    }
    l.timer.setEnabled(false);
    return tally;
}
