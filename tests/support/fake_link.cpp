#include "fake_link.h"

#include <QTest>
#include <stdexcept>

void FakeTimer::setEnabled(bool e) {
    if (e && !on)
        ++starts;
    on = e;
}

void FakeTimer::fire() {
    if (on)
        m_g.TimedOut = true;
}

ScriptedYield &ScriptedYield::then(std::function<void()> step) {
    steps.push_back(std::move(step));
    return *this;
}

void ScriptedYield::DoEvents() {
    if (!steps.empty()) {
        auto step = std::move(steps.front());
        steps.pop_front();
        step();
        return;
    }
    if (++idlePasses > limit)
        throw std::runtime_error("a wait did not end: the script ran out");
    if (idle)
        idle();
}

RecordingScreen::~RecordingScreen() {
    // Outside a test (a benchmark) or after a failure there is nothing more to tell.
    if (!QTest::currentTestFunction() || QTest::currentTestFailed())
        return;
    if (!boxes.isEmpty())
        QTest::qFail(qPrintable("a box nobody took: " + boxes.first().text), __FILE__, __LINE__);
    else if (pointer == 11)
        QTest::qFail("the pointer is left at 11", __FILE__, __LINE__);
}

RecordingScreen::Box RecordingScreen::takeBox() {
    if (boxes.isEmpty()) {
        QTest::qFail("no box was shown", __FILE__, __LINE__);
        return {};
    }
    return boxes.takeFirst();
}

void RecordingScreen::list1Clear() {
    list1.clear();
    listIndex = -1;
}

void RecordingScreen::setMousePointer(int p) {
    pointer = p;
    pointers << p;
}

void RecordingScreen::msgBox(const QString &text, BoxIcon icon, const QString &title) {
    boxes << Box{text, icon, title};
}

namespace {
// The next scripted answer, or `otherwise` once they are spent.
QString next(std::deque<QString> &answers, const QString &otherwise = QString()) {
    if (answers.empty())
        return otherwise;
    const QString a = answers.front();
    answers.pop_front();
    return a;
}
} // namespace

QString RecordingScreen::inputBox(const QString &prompt, const QString &, const QString &def) {
    inputPrompts << prompt;
    return next(inputAnswers, def);
}

QString RecordingScreen::showOpen(const FileDialogRequest &r) {
    openRequests << r;
    return next(openAnswers);
}

QString RecordingScreen::showSave(const FileDialogRequest &r) {
    saveRequests << r;
    return next(saveAnswers);
}
