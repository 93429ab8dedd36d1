#pragma once
// The operations' view of the main window: its controls, the pointer and the boxes.

#include "screen.h"
#include "throttled_text.h"

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QWidget;

// The text as a message box shows it: one break for each line end.
QString boxText(const QString &text);

class WindowScreen : public Screen {
public:
    WindowScreen(QWidget *window, QLabel *label1, QPlainTextEdit *text1, QListWidget *list1);
    ~WindowScreen() override;

    void setLabel1Caption(const QString &text) override;
    void setLabel1Visible(bool on) override;
    void setText1Text(const QString &text) override;
    void setText1Visible(bool on) override;
    void setList1Visible(bool on) override;
    void list1Clear() override;
    void list1AddItem(const QString &item) override;
    void list1Refresh() override;
    int list1Count() const override;
    int list1ListIndex() const override;
    QString list1List(int index) const override;
    void repaint() override;
    void setMousePointer(int pointer) override;
    void msgBox(const QString &text, BoxIcon icon, const QString &title) override;
    QString inputBox(const QString &prompt, const QString &title,
                     const QString &defaultText) override;
    QString showOpen(const FileDialogRequest &request) override;
    QString showSave(const FileDialogRequest &request) override;

private:
    QWidget *m_window;
    QLabel *m_label1;
    QPlainTextEdit *m_text1;
    QListWidget *m_list1;
    ThrottledText m_caption;
    ThrottledText m_text;
    bool m_hourglass = false;
};
