#pragma once
// The journal's words (operations, outcomes, stations' states) as a reader of the pages reads
// them. A word the program does not know is shown as it is stored.

#include "journal_queries.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

// A station whose last word is older than this is taken to be gone.
inline constexpr int OfflineAfterSeconds = 90;

class JournalTexts {
    Q_DECLARE_TR_FUNCTIONS(Web)

public:
    static QString operation(const QString &operation);
    static QString outcome(const QString &outcome);
    // What a station is doing as of `now`, and a class for its colour: "offline" once its
    // row is older than OfflineAfterSeconds, "none" without a station.
    static QString state(const std::optional<StationRow> &station, const QDateTime &now,
                         QString *cssClass = nullptr);
};
