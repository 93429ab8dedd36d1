#pragma once
// The fake clock, the scripted yield and the recording screen, and a Link built of them.

#include "fake_comm.h"
#include "link.h"
#include "link_times.h"

#include <QStringList>
#include <QTest>
#include <functional>
#include <stdexcept>

// The tick happens only when the test says so.
class FakeTimer : public LinkTimer {
public:
    explicit FakeTimer(Globals &g) : m_g(g) {}
    int ms = InitialIntervalMs;
    bool on = false;
    int starts = 0; // stopped -> running transitions
    void setInterval(int v) override { ms = v; }
    int interval() const override { return ms; }
    void setEnabled(bool e) override {
        starts += e && !on;
        on = e;
    }
    bool enabled() const override { return on; }
    // A tick, as the real timer would give it after its interval; only while running.
    void fire() { m_g.TimedOut = m_g.TimedOut || on; }

private:
    Globals &m_g;
};

// Each DoEvents runs the next step of the script; once the script is spent it runs `idle`.
// A wait that never ends would spin forever: after `limit` idle passes it throws.
class ScriptedYield : public Yield {
public:
    QList<std::function<void()>> steps;
    std::function<void()> idle;
    long idlePasses = 0;
    long limit = 1000000;
    ScriptedYield &then(std::function<void()> step) {
        steps.push_back(std::move(step));
        return *this;
    }
    void DoEvents() override {
        if (!steps.empty())
            steps.takeFirst()();
        else if (++idlePasses > limit)
            throw std::runtime_error("a wait did not end: the script ran out");
        else if (idle)
            idle();
    }
};

// Records what an operation shows. Each box must be taken by the test (takeBox); at its end
// the screen fails the running test on a box nobody took, or on the pointer left at 11.
class RecordingScreen : public Screen {
public:
    struct Box {
        QString text;
        BoxIcon icon = BoxIcon::None;
    };
    QStringList captions;
    bool label1Visible = false;
    QString text1;
    bool text1Visible = false;
    bool list1Visible = false;
    QStringList list1;
    int listIndex = -1;
    int pointer = 0;
    QList<int> pointers;
    QList<Box> boxes;
    QStringList inputAnswers; // each dialog takes the first, or its default once spent
    QStringList openAnswers;
    QStringList saveAnswers;
    QList<FileDialogRequest> openRequests;
    QList<FileDialogRequest> saveRequests;
    QStringList inputPrompts;

    ~RecordingScreen() override {
        // Outside a test (a benchmark) or after a failure there is nothing more to tell.
        if (!QTest::currentTestFunction() || QTest::currentTestFailed())
            return;
        if (!boxes.isEmpty())
            QTest::qFail(qPrintable("a box nobody took: " + boxes.first().text), __FILE__,
                         __LINE__);
        else if (pointer == 11)
            QTest::qFail("the pointer is left at 11", __FILE__, __LINE__);
    }
    // The oldest box not taken yet; fails the test when there is none.
    Box takeBox() {
        if (boxes.isEmpty())
            QTest::qFail("no box was shown", __FILE__, __LINE__);
        return boxes.isEmpty() ? Box() : boxes.takeFirst();
    }

    void setLabel1Caption(const QString &t) override { captions << t; }
    void setLabel1Visible(bool on) override { label1Visible = on; }
    void setText1Text(const QString &t) override { text1 = t; }
    void setText1Visible(bool on) override { text1Visible = on; }
    void setList1Visible(bool on) override { list1Visible = on; }
    void list1Clear() override {
        list1.clear();
        listIndex = -1;
    }
    void list1AddItem(const QString &item) override { list1 << item; }
    void list1Refresh() override {}
    int list1Count() const override { return int(list1.size()); }
    int list1ListIndex() const override { return listIndex; }
    QString list1List(int i) const override { return list1.value(i); }
    void repaint() override {}
    void setMousePointer(int p) override { pointers << (pointer = p); }
    void msgBox(const QString &text, BoxIcon icon, const QString &) override {
        boxes << Box{text, icon};
    }
    QString inputBox(const QString &prompt, const QString &, const QString &def) override {
        inputPrompts << prompt;
        return inputAnswers.isEmpty() ? def : inputAnswers.takeFirst();
    }
    QString showOpen(const FileDialogRequest &r) override {
        openRequests << r;
        return openAnswers.isEmpty() ? QString() : openAnswers.takeFirst();
    }
    QString showSave(const FileDialogRequest &r) override {
        saveRequests << r;
        return saveAnswers.isEmpty() ? QString() : saveAnswers.takeFirst();
    }
};

// A Link over fakes, with a fresh Globals.
struct FakeLink {
    Globals g;
    FakeComm comm;
    FakeTimer timer{g};
    ScriptedYield yield;
    RecordingScreen screen;
    CmDialog dialog;
    // The test runs inside one operation, which it can ask to end (the window closing).
    OperationState state;
    OperationState::Run run{state};
    Link link{g, comm, timer, yield, screen, dialog, state};
};

// What an operation left behind that it must not: the port open, the clock running, Label1
// shown, the hourglass. Empty when it ended clean. For FakeLink and RealLink alike.
template <class L> QString leftOver(L &l) {
    QStringList left;
    if (l.comm.portOpen())
        left << QStringLiteral("port open");
    if (l.timer.enabled())
        left << QStringLiteral("timer running");
    if (l.screen.label1Visible)
        left << QStringLiteral("Label1 shown");
    if (l.screen.pointer == HourglassPointer)
        left << QStringLiteral("hourglass");
    return left.join(QStringLiteral(", "));
}
