#pragma once
// The wait for an answer that the control gives line by line: a reception, a listing and the
// list to choose from all collect it in the same passes and differ only in where an EOT counts.

#include "link.h"

#include <QByteArray>
#include <functional>

enum class EotRule {
    // A reception: a chunk holding an EOT anywhere ends it, text and CR ahead of it lost.
    BeforeCr,
    // A listing: an EOT counts only in a chunk without CR; a line and an EOT together give
    // the line, and the wait goes on.
    OnlyWithoutCr,
};

// What a reply brought and what of it the dialogue's rules dropped.
struct ReplyTally {
    qint64 keptBytes = 0;    // the control's characters kept, without the LF added behind a CR
    qint64 keptLines = 0;    // lines kept whole, ended by CR
    qint64 droppedLines = 0; // lines, or starts of lines, that came and were not kept
};

// Collects the answer into `reply` (appended in place), answering each chunk that holds a CR
// with PromptSeq. Ends at an EOT, at silence for the timer's interval, or when the operation
// is being ended; leaves the timer off. `afterChunk` runs after each chunk that was kept.
ReplyTally waitForReply(Link &l, EotRule rule, QByteArray &reply,
                        const std::function<void()> &afterChunk = {});
