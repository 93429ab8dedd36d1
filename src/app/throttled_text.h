#pragma once
// A text on screen that may change thousands of times a second (the count of a receive, the
// share of a send) is shown at most 30 times a second: more cannot be read, and each showing
// costs a repaint. The last value given is always shown, at the latest one interval later.

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <functional>

class ThrottledText {
public:
    static constexpr int IntervalMs = 33;

    explicit ThrottledText(std::function<void(const QString &)> show);

    void set(const QString &text);
    // Shows a value still waiting for its turn, at once.
    void flush();

private:
    std::function<void(const QString &)> m_show;
    QString m_waiting;
    bool m_isWaiting = false;
    QElapsedTimer m_shown; // since the last showing
    QTimer m_turn;
};
