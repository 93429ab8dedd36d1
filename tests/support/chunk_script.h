#pragma once
// Scripted far ends for the reply waits.
//
// deliverChunks: each chunk arrives at one yield, exactly as given; a chunk ending in "<tick>"
// also gets the clock's tick in the same pass. Once the chunks are spent the control falls
// silent, so the tick ends the wait.
//
// answerCommands: a control that answers a command with lines, the next line only after each
// go-ahead, then EOT, as a well-behaved control does.

#include "fake_link.h"

#include <QList>
#include <QPair>
#include <deque>
#include <memory>

inline const QByteArray Tick = QByteArrayLiteral("<tick>");

inline void deliverChunks(FakeLink &f, const QList<QByteArray> &chunks) {
    for (const QByteArray &c : chunks) {
        f.yield.then([&f, c] {
            if (c.endsWith(Tick)) {
                f.comm.inbox += c.chopped(Tick.size());
                f.timer.fire();
            } else {
                f.comm.inbox += c;
            }
        });
    }
    f.yield.idle = [&f] { f.timer.fire(); };
}

// Each pair: a command prefix and the lines (CR included) it is answered with.
using Answers = QList<QPair<QByteArray, QList<QByteArray>>>;

inline void answerCommands(FakeLink &f, const Answers &answers) {
    auto pending = std::make_shared<std::deque<QByteArray>>();
    f.comm.onOutput = [&f, answers, pending](const QByteArray &bytes) {
        if (bytes == f.g.PromptSeq) {
            if (!pending->empty()) {
                f.comm.inbox += pending->front();
                pending->pop_front();
            }
            return;
        }
        for (const auto &[prefix, lines] : answers) {
            if (!bytes.startsWith(prefix))
                continue;
            pending->assign(lines.begin(), lines.end());
            pending->push_back(QByteArray("\x04"));
            f.comm.inbox += pending->front();
            pending->pop_front();
            return;
        }
    };
}

// The operator picks entry `index` as soon as List1 shows entries; until then the control
// is silent whenever it has nothing to say, so the clock ticks.
inline void pickWhenShown(FakeLink &f, int index) {
    f.yield.idle = [&f, index] {
        if (f.screen.list1Visible && f.screen.list1Count() > 0 && f.screen.listIndex < 0)
            f.screen.listIndex = index;
        else
            f.timer.fire();
    };
}

// How many go-aheads the program wrote.
inline qsizetype promptsWritten(const FakeLink &f) {
    return f.comm.writes.count(f.g.PromptSeq);
}
