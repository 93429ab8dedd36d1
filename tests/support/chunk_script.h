#pragma once
// Scripted far ends for the reply waits.

#include "fake_link.h"
#include "wire_chars.h"

#include <QList>
#include <QPair>
#include <algorithm>
#include <deque>
#include <memory>

// Appended to a chunk: the clock's tick comes in the same pass.
inline const QByteArray Tick = QByteArrayLiteral("<tick>");

// Each chunk arrives at one yield, exactly as given; once they are spent the control is
// silent, so the tick ends the wait.
inline void deliverChunks(FakeLink &f, const QList<QByteArray> &chunks) {
    for (const QByteArray &c : chunks) {
        f.yield.then([&f, c] {
            f.comm.inbox += c.endsWith(Tick) ? c.chopped(Tick.size()) : c;
            if (c.endsWith(Tick))
                f.timer.fire();
        });
    }
    f.yield.idle = [&f] { f.timer.fire(); };
}

// A well-behaved control: a command starting with a prefix is answered with its lines, the
// next one only after each go-ahead, then EOT.
using Answers = QList<QPair<QByteArray, QList<QByteArray>>>;

inline void answerCommands(FakeLink &f, const Answers &answers) {
    auto pending = std::make_shared<std::deque<QByteArray>>();
    f.comm.onOutput = [&f, answers, pending](const QByteArray &bytes) {
        if (bytes != PromptSeq) {
            const auto answer = std::find_if(answers.begin(), answers.end(), [&](const auto &a) {
                return bytes.startsWith(a.first);
            });
            if (answer == answers.end())
                return;
            pending->assign(answer->second.begin(), answer->second.end());
            pending->push_back(QByteArray("\x04"));
        }
        if (!pending->empty()) {
            f.comm.inbox += pending->front();
            pending->pop_front();
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
