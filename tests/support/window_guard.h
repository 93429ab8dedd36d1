#pragma once
// For tests of the widgets. Answers the modal boxes and dialogs the test expects, in order,
// and fails the running test on what is left: a modal nobody expected (closed at once, so
// that the test goes on), an expected one that never came, the wait cursor still on, a box
// still open. Check before the window goes: the window's screen puts the cursor back when it
// is destroyed.

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <deque>
#include <functional>

class WindowGuard {
public:
    WindowGuard() {
        QObject::connect(&m_poll, &QTimer::timeout, [this] { poll(); });
        m_poll.start(10);
    }
    ~WindowGuard() { check(); }

    // Runs `act` on the next modal widget, which must be a T.
    template <class T> void expect(std::function<void(T *)> act) {
        m_expected.push_back([act](QWidget *w) {
            auto *t = qobject_cast<T *>(w);
            if (t)
                act(t);
            return t != nullptr;
        });
    }

    // Fails the test on what is left over, and clears it away.
    void check() {
        QStringList left = m_unexpected;
        if (!m_expected.empty())
            left << QStringLiteral("%1 expected modal(s) never shown").arg(m_expected.size());
        if (QApplication::overrideCursor())
            left << QStringLiteral("the wait cursor is on");
        while (QApplication::overrideCursor())
            QApplication::restoreOverrideCursor();
        for (QWidget *w : QApplication::topLevelWidgets()) {
            if (w->isVisible() && (w->isModal() || qobject_cast<QMessageBox *>(w))) {
                left << "still open: " + describe(w);
                w->close();
            }
        }
        m_unexpected.clear();
        m_expected.clear();
        if (!left.isEmpty() && QTest::currentTestFunction() && !QTest::currentTestFailed())
            QTest::qFail(qPrintable(left.join(QStringLiteral("; "))), __FILE__, __LINE__);
    }

private:
    static QString describe(QWidget *w) {
        const auto *box = qobject_cast<QMessageBox *>(w);
        return QStringLiteral("%1 \"%2\"")
            .arg(w->metaObject()->className(), box ? box->text() : w->windowTitle());
    }

    void poll() {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || modal == m_answered)
            return;
        m_answered = modal;                  // it may take a moment to close
        std::function<bool(QWidget *)> next; // taken first: its act may open the next modal
        if (!m_expected.empty()) {
            next = std::move(m_expected.front());
            m_expected.pop_front();
        }
        if (next && next(modal))
            return;
        m_unexpected << "unexpected: " + describe(modal);
        if (auto *dialog = qobject_cast<QDialog *>(modal))
            dialog->reject();
        else
            modal->close();
    }

    QTimer m_poll;
    QPointer<QWidget> m_answered;
    std::deque<std::function<bool(QWidget *)>> m_expected;
    QStringList m_unexpected;
};
