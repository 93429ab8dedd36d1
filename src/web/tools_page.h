#pragma once
// The page "/tools": the most used tools as bars, and one tool's use per day as a line.

#include "journal_queries.h"
#include "page_frame.h"

inline constexpr int ToolDays = 30;     // the period both charts cover
inline constexpr int TopToolCount = 20; // the bars

class ToolsPage {
    Q_DECLARE_TR_FUNCTIONS(Web)

public:
    // `tool` is the one whose days are drawn (empty: none), `times` its uses in the period.
    static QByteArray build(const PageContext &context, const QList<ToolCount> &top,
                            const QString &tool, const QList<QDateTime> &times);
    // The uses of each local day of the period that ends today, the oldest first.
    static QList<qint64> perDay(const QList<QDateTime> &times, const QDate &today, int days);
};
