#include "fake_link.h"

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
    ++passes;
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

QString RecordingScreen::inputBox(const QString &prompt, const QString &, const QString &def) {
    inputPrompts << prompt;
    if (inputAnswers.empty())
        return def;
    QString a = inputAnswers.front();
    inputAnswers.pop_front();
    return a;
}

QString RecordingScreen::showOpen(const FileDialogRequest &r) {
    openRequests << r;
    if (openAnswers.empty())
        return {};
    QString a = openAnswers.front();
    openAnswers.pop_front();
    return a;
}

QString RecordingScreen::showSave(const FileDialogRequest &r) {
    saveRequests << r;
    if (saveAnswers.empty())
        return {};
    QString a = saveAnswers.front();
    saveAnswers.pop_front();
    return a;
}
