#pragma once
// Rows a program could not write before it ended: their count is kept in a small file beside
// the default journal, and the next program that writes the same journal from this account
// writes it as a row of its own (operation "journal", outcome "rows_lost").

#include <QList>
#include <QString>

struct LostCount {
    QString journal; // the journal as shown, never with a password
    qint64 count = 0;
    QString host;
    QString machine;
};

// $XDG_STATE_HOME/dnc/journal-lost
QString lostCountsPath();

// Adds a count; false when the file cannot be written either.
bool keepLostCount(const LostCount &lost);

// Holds the file for the time it takes to write its counts into the journal, so that no two
// programs write the same count.
class LostCounts {
public:
    explicit LostCounts(const QString &journal); // reads the counts of `journal`, if any
    ~LostCounts();
    LostCounts(const LostCounts &) = delete;
    LostCounts &operator=(const LostCounts &) = delete;

    const QList<LostCount> &counts() const { return m_counts; }
    // The counts are in the journal: they go from the file.
    void written();

private:
    QString m_journal;
    QList<LostCount> m_counts;
    class QLockFile *m_lock = nullptr;
};
