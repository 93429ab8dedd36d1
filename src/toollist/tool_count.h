#pragma once
// Adds one use per name to the table tool_list. Every row is final at its own commit.

#include "tool_db.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

struct ToolCount {
    int counted = 0; // names written before a failure, or all of them
    QString failure; // empty when every name was counted
    bool failed() const { return !failure.isEmpty(); }
};

// A name is looked up without regard to case; a new one gets util 1, a known one util + 1,
// and both get `now` as Date and the name in the given form. Each name is counted in a
// transaction of its own, so that stations counting at once lose nothing. Stops at the first
// failure. `onBusy` hears when another writer holds the lock, before the wait for it.
ToolCount countTools(const ToolDbConnection &connection, const QStringList &names,
                     const QDateTime &now, const std::function<void()> &onBusy = {});

// The form of Date in the table: local time, to the second.
QString toolDateText(const QDateTime &when);
