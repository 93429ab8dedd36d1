#include "window_screen.h"

#include "app_info.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>

WindowScreen::WindowScreen(QWidget *window, QLabel *label1, QPlainTextEdit *text1,
                           QListWidget *list1)
    : m_window(window), m_label1(label1), m_text1(text1), m_list1(list1),
      m_caption([label1](const QString &t) { label1->setText(t); }),
      m_text([text1](const QString &t) { text1->setPlainText(t); }) {}

WindowScreen::~WindowScreen() {
    setMousePointer(0);
}

void WindowScreen::setLabel1Caption(const QString &text) {
    m_caption.set(text);
}

void WindowScreen::setLabel1Visible(bool on) {
    m_caption.flush();
    m_label1->setVisible(on);
}

void WindowScreen::setText1Text(const QString &text) {
    m_text.set(text);
}

void WindowScreen::setText1Visible(bool on) {
    m_text.flush();
    m_text1->setVisible(on);
}

void WindowScreen::setList1Visible(bool on) {
    m_list1->setVisible(on);
}

void WindowScreen::list1Clear() {
    m_list1->clear();
}

void WindowScreen::list1AddItem(const QString &item) {
    m_list1->addItem(item);
}

void WindowScreen::list1Refresh() {
    m_list1->update();
}

int WindowScreen::list1Count() const {
    return m_list1->count();
}

int WindowScreen::list1ListIndex() const {
    // Only a real selection counts: keyboard focus alone makes a current row without one.
    const QModelIndexList rows = m_list1->selectionModel()->selectedIndexes();
    return rows.isEmpty() ? -1 : rows.first().row();
}

QString WindowScreen::list1List(int index) const {
    const QListWidgetItem *item = m_list1->item(index);
    return item ? item->text() : QString();
}

void WindowScreen::repaint() {
    m_window->repaint();
}

void WindowScreen::setMousePointer(int pointer) {
    const bool hourglass = pointer == HourglassPointer;
    if (hourglass == m_hourglass)
        return;
    m_hourglass = hourglass;
    if (hourglass)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

QString boxText(const QString &text) {
    QString shown = text;
    // A message box breaks at LF and again at CR: each line end, whatever its two characters,
    // becomes one break, so that no empty row stands between the lines.
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    shown.replace(QStringLiteral("\n\r"), QStringLiteral("\n"));
    shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return shown;
}

void WindowScreen::msgBox(const QString &text, BoxIcon icon, const QString &title) {
    QMessageBox box(icon == BoxIcon::Critical ? QMessageBox::Critical : QMessageBox::NoIcon,
                    title.isEmpty() ? QString::fromLatin1(AppTitle) : title, boxText(text),
                    QMessageBox::Ok, m_window);
    box.exec();
}

QString WindowScreen::inputBox(const QString &prompt, const QString &title,
                               const QString &defaultText) {
    bool ok = false;
    const QString answer =
        QInputDialog::getText(m_window, title, prompt, QLineEdit::Normal, defaultText, &ok);
    return ok ? answer : QString();
}

static QString runFileDialog(QWidget *parent, const FileDialogRequest &r,
                             QFileDialog::AcceptMode mode) {
    QFileDialog dialog(parent);
    dialog.setAcceptMode(mode);
    // Neither dialog demands an existing file, and saving over a file asks nothing.
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (!r.initDir.isEmpty())
        dialog.setDirectory(r.initDir);
    QStringList filters = r.filter.split(QStringLiteral(";;"));
    // A pattern in the name field limits the list, as the operator would expect.
    const bool pattern =
        r.fileName.contains(QLatin1Char('*')) || r.fileName.contains(QLatin1Char('?'));
    if (pattern)
        filters.prepend(r.fileName);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(r.defaultExt);
    if (!r.fileName.isEmpty())
        dialog.selectFile(r.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().first();
}

QString WindowScreen::showOpen(const FileDialogRequest &request) {
    return runFileDialog(m_window, request, QFileDialog::AcceptOpen);
}

QString WindowScreen::showSave(const FileDialogRequest &request) {
    return runFileDialog(m_window, request, QFileDialog::AcceptSave);
}
