#pragma once
// Answers the window's modal boxes and dialogs as they open, the way an operator would, and
// notes the text of every message box; for tests that run the whole window.

#include "dnc_window.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

class ModalCatcher {
public:
    QStringList boxes;                    // texts of the message boxes, in order
    QString fileName;                     // the file dialog's answer; empty: Cancel
    QString typed;                        // the input box's answer
    std::function<bool(QWidget *)> other; // any other dialog: true when it was dealt with

    ModalCatcher() {
        QObject::connect(&m_poll, &QTimer::timeout, [this] { look(); });
        m_poll.start(5);
    }

    // Empty when the boxes shown are the one expected: none when `told` is empty, else one
    // that says `told`.
    QString unexpectedBoxes(const QString &told) const {
        const bool ok =
            boxes.size() == (told.isEmpty() ? 0 : 1) && (told.isEmpty() || boxes[0].contains(told));
        return ok ? QString() : boxes.join(u'|') + QStringLiteral(" (%1 boxes)").arg(boxes.size());
    }

private:
    void look() {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible())
            return;
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            boxes << box->text();
            box->accept();
        } else if (auto *input = qobject_cast<QInputDialog *>(modal)) {
            input->setTextValue(typed);
            input->accept();
        } else if (auto *files = qobject_cast<QFileDialog *>(modal)) {
            if (fileName.isEmpty()) {
                files->reject();
            } else {
                files->selectFile(fileName);
                static_cast<QDialog *>(files)->accept();
            }
        } else if (other) {
            other(modal);
        }
    }
    QTimer m_poll;
};

// The window's buttons that can be pressed: their indexes, and Q for Quit.
inline QString enabledButtons(const DncWindow &w) {
    QString enabled;
    for (int i = 0; i < 8; ++i)
        enabled += w.Command1[i]->isEnabled() ? QString::number(i) : QString();
    return enabled + (w.Command2->isEnabled() ? "Q" : "");
}
