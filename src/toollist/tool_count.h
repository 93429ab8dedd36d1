#pragma once
// Adds one use per tool line to the table tool_list, all lines of a program in one transaction.

#include "tool_db.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

// The longest tool name, in bytes of UTF-8, that both engines take: a server's index of the
// lowered names holds well under 2700 bytes per entry, whatever the name compresses to.
inline constexpr int MaxToolNameBytes = 2000;

struct ToolCount {
    int counted = 0; // lines counted before a failure, or all of them
    QString failure; // empty when every line was counted
    bool failed() const { return !failure.isEmpty(); }
};

// A name is looked up without regard to case; a new one gets util 1, a known one util + 1,
// and both get `now` as Date and the name in the given form. Stops at the first line that
// cannot be counted (a name no tool may have, a util that is empty or at its highest) and
// commits the lines ahead of it; a database that fails takes back the whole program. The
// other stations' counts of the same names wait for the commit. `onBusy` hears when another
// writer holds a lock, before the wait for it.
ToolCount countTools(const ToolDbConnection &connection, const QStringList &names,
                     const QDateTime &now, const std::function<void()> &onBusy = {});

// Why no tool may have this name (a NUL, a double quote, too long); empty when it may.
QString toolNameProblem(const QString &name);

// The form of Date in the table: local time, to the second.
QString toolDateText(const QDateTime &when);
