#pragma once
// The operations' screen in a station, where nobody looks: each box becomes a log line, the
// counter of a send is kept for the station's state, and nothing is ever asked.

#include "screen.h"

#include <functional>

class StationScreen : public Screen {
public:
    explicit StationScreen(std::function<void(const QString &)> log) : m_log(std::move(log)) {}

    QString caption() const { return m_caption; }

    void setLabel1Caption(const QString &text) override { m_caption = text; }
    void setLabel1Visible(bool) override {}
    void setText1Text(const QString &) override {}
    void setText1Visible(bool) override {}
    void setList1Visible(bool) override {}
    void list1Clear() override {}
    void list1AddItem(const QString &) override {}
    void list1Refresh() override {}
    int list1Count() const override { return 0; }
    int list1ListIndex() const override { return NoChoiceComing; }
    QString list1List(int) const override { return {}; }
    void repaint() override {}
    void setMousePointer(int) override {}
    void msgBox(const QString &text, BoxIcon, const QString &) override { m_log(text); }
    QString inputBox(const QString &, const QString &, const QString &) override { return {}; }
    QString showOpen(const FileDialogRequest &) override { return {}; }
    QString showSave(const FileDialogRequest &) override { return {}; }

private:
    std::function<void(const QString &)> m_log;
    QString m_caption;
};
