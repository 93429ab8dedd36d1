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

// Collects the answer into `reply` (appended in place), answering each chunk that holds a CR
// with PromptSeq. Ends at an EOT, at silence for the timer's interval, or when the operation
// is being ended; leaves the timer off. `afterChunk` runs after each chunk that was kept.
void waitForReply(Link &l, EotRule rule, QByteArray &reply,
                  const std::function<void()> &afterChunk = {});
