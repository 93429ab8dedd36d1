#pragma once
// Adds one use per name to the table tool_list. Every row is final at its own write.

#include <QDateTime>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

struct ToolCount {
    int counted = 0; // names written before a failure, or all of them
    QString failure; // empty when every name was counted
    bool failed() const { return !failure.isEmpty(); }
};

// A name is looked up without regard to case; a new one gets util 1, a known one util + 1,
// and both get `now` as Date and the name in the given form. Stops at the first failure.
ToolCount countTools(const QSqlDatabase &db, const QStringList &names, const QDateTime &now);

// The form of Date in the table: local time, to the second.
QString toolDateText(const QDateTime &when);
