#pragma once
// The operations' screen on a terminal or in a script. Boxes become lines on standard error;
// Label1 becomes the progress line; the file dialogs and the choice from List1 are answered
// from the command line. What the operation did is read from its record, not from here.

#include "globals.h"
#include "operation_state.h"
#include "screen.h"

#include <QElapsedTimer>
#include <QList>
#include <QStringList>
#include <QTimer>
#include <cstdio>
#include <functional>

class ConsoleScreen : public Screen {
public:
    explicit ConsoleScreen(const OperationState &state, std::FILE *err = stderr);
    ~ConsoleScreen() override;

    // The progress line, redrawn every refreshMs while Label1 shows. `characters` counts what
    // went over the line; without it the caption's number is the count (a reception).
    void enableProgress(int refreshMs, std::function<qint64()> characters = {});
    int progressDraws() const { return m_draws; }

    // The entry of List1 to choose: the one whose bytes equal `name`. When the list holds none,
    // no choice will come.
    void setPick(const QByteArray &name) { m_pickName = name; }

    // What the file dialogs answer; empty is Cancel.
    void setOpenAnswer(const QString &path) { m_openAnswer = path; }
    void setSaveAnswer(const QString &path) { m_saveAnswer = path; }
    // A line of the program's own on standard error, clear of the progress line.
    void say(const QString &text);

    void setLabel1Caption(const QString &text) override { m_caption = text; }
    void setLabel1Visible(bool on) override;
    void setText1Text(const QString &) override {}
    void setText1Visible(bool) override {}
    void setList1Visible(bool) override {}
    void list1Clear() override { m_list1.clear(); }
    void list1AddItem(const QString &item) override { m_list1 << item; }
    void list1Refresh() override {}
    int list1Count() const override { return int(m_list1.size()); }
    int list1ListIndex() const override;
    QString list1List(int index) const override { return m_list1.value(index); }
    void repaint() override {}
    void setMousePointer(int) override {}
    void msgBox(const QString &text, BoxIcon icon, const QString &title) override;
    QString inputBox(const QString &, const QString &, const QString &) override { return {}; }
    QString showOpen(const FileDialogRequest &) override { return m_openAnswer; }
    QString showSave(const FileDialogRequest &) override;

private:
    void draw();
    void clearLine();
    int columns() const;

    const OperationState &m_state;
    std::FILE *m_err;

    QString m_caption;
    QStringList m_list1;
    QString m_openAnswer;
    QString m_saveAnswer;
    QByteArray m_pickName; // empty: the command names no program

    bool m_progress = false;
    bool m_drawn = false; // the progress line stands on the terminal
    std::function<qint64()> m_characters;
    QTimer m_tick;
    QElapsedTimer m_clock;
    int m_draws = 0;
};
