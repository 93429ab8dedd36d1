#include "throttled_text.h"

ThrottledText::ThrottledText(std::function<void(const QString &)> show) : m_show(std::move(show)) {
    m_turn.setSingleShot(true);
    QObject::connect(&m_turn, &QTimer::timeout, [this] { flush(); });
}

void ThrottledText::set(const QString &text) {
    m_waiting = text;
    m_isWaiting = true;
    if (m_shown.isValid() && m_shown.elapsed() < IntervalMs) {
        if (!m_turn.isActive())
            m_turn.start(int(IntervalMs - m_shown.elapsed()));
        return;
    }
    flush();
}

void ThrottledText::flush() {
    m_turn.stop();
    if (!m_isWaiting)
        return;
    m_isWaiting = false;
    m_shown.start();
    m_show(m_waiting);
}
