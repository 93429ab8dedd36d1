#pragma once
// What a station is doing, kept in the journal's table station_state for dnc-web: written when
// it changes and every 30 s besides, so that a row that stops moving tells of a station gone.

#include "tool_db.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>

struct StationActivity {
    // listening, sending, receiving, waiting (a request's delay), device_gone, stopped
    QString state;
    std::optional<int> percent; // while sending
    QString program;
    QString device;
    bool operator==(const StationActivity &) const = default;
};

// The percentage at the end of a send's counter ("Send file : 42%"), if it shows one.
std::optional<int> percentOfCaption(const QString &caption);

class StationStateWriter : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>; // UTC
    using Activity = std::function<StationActivity()>;

    static constexpr int RefreshMs = 30000;
    static constexpr int LookMs = 1000;
    // A journal locked by another writer is given this long; the station is never held longer.
    static constexpr int BusyTimeoutMs = 500;

    StationStateWriter(ToolDbConnection &db, const QString &machine, const QString &host,
                       Activity activity, Clock clock = &QDateTime::currentDateTimeUtc,
                       QObject *parent = nullptr);

    // Looks at the station every LookMs from now on, in the event loop the station yields to.
    void start();
    // Writes the activity when it changed, or when the last write is RefreshMs old.
    void look();
    // Writes `activity` now, whatever was written before (the last word: stopped).
    void write(const StationActivity &activity);
    // Why the last write failed; empty after one that did not.
    QString error() const { return m_error; }

private:
    ToolDbConnection &m_db;
    QString m_machine, m_host;
    Activity m_activity;
    Clock m_clock;
    QTimer m_timer;
    std::optional<StationActivity> m_written;
    QString m_sinceState;
    QDateTime m_since, m_writtenAt;
    QString m_error;
};
