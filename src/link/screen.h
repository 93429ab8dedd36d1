#pragma once
// What the operations show and ask: the window's controls, the pointer, the boxes and the
// file dialog. The window implements it with widgets; tests with recorders and scripts.

#include <QString>

enum class BoxIcon { None, Critical };

// The mouse pointer an operation sets: the hourglass while it works, then the default.
inline constexpr int DefaultPointer = 0;
inline constexpr int HourglassPointer = 11;

struct FileDialogRequest {
    QString initDir;
    QString filter;     // Qt form: "Tape file *.tap (*.tap);;All files *.* (*.*)"
    QString defaultExt; // without the dot
    QString fileName;   // fills the name field; may be a pattern
};

class Screen {
public:
    virtual ~Screen() = default;

    virtual void setLabel1Caption(const QString &text) = 0;
    virtual void setLabel1Visible(bool on) = 0;

    virtual void setText1Text(const QString &text) = 0;
    virtual void setText1Visible(bool on) = 0;

    virtual void setList1Visible(bool on) = 0;
    virtual void list1Clear() = 0; // also drops the selection
    virtual void list1AddItem(const QString &item) = 0;
    virtual void list1Refresh() = 0;
    virtual int list1Count() const = 0;
    // -1 while nothing is selected; NoChoiceComing when none will be: a front end that chooses
    // by name finds the name not in the list.
    virtual int list1ListIndex() const = 0;
    static constexpr int NoChoiceComing = -2;
    virtual QString list1List(int index) const = 0;
    virtual void repaint() = 0;

    // HourglassPointer or DefaultPointer
    virtual void setMousePointer(int pointer) = 0;

    // Modal; title empty means the program's title.
    virtual void msgBox(const QString &text, BoxIcon icon, const QString &title) = 0;
    // Empty string on Cancel.
    virtual QString inputBox(const QString &prompt, const QString &title,
                             const QString &defaultText) = 0;
    // Full path of the chosen file, empty on Cancel.
    virtual QString showOpen(const FileDialogRequest &request) = 0;
    virtual QString showSave(const FileDialogRequest &request) = 0;
};
