#pragma once
// A station serves one machine with nobody at the PC: it holds the port and listens. A program
// the control punches is filed; a punched request (the reserved program number, the name in
// its first comment) is answered with that program, or with a short program that says why not.

#include "journal_row.h"
#include "link.h"
#include "port_owner.h"
#include "punch.h"
#include "punch_reader.h"
#include "station_settings.h"
#include "station_state_writer.h"

#include <QDateTime>
#include <functional>

class DeviceComm;

class Station {
public:
    using Log = std::function<void(const QString &)>;

    // `comm` is the port the link speaks through; `reload` re-reads the settings into `g` and
    // `settings` and says why they cannot be served, or empty.
    Station(Link &link, DeviceComm &comm, StationSettings settings, Log log,
            std::function<QString(StationSettings &)> reload);

    // Serves until the link's operation state is asked to end. Returns the exit status.
    int run();
    // Asked from outside (SIGHUP): the settings are read again before the next punch.
    void requestReload() { m_reload = true; }
    // Hears a row for each punch filed and each request answered or refused.
    void setJournal(std::function<void(const JournalRow &)> journal) {
        m_journal = std::move(journal);
    }

    static constexpr int RetryOpenMs = 3000;
    // What it is doing now, for its row in station_state; the percentage of a send is the
    // screen's to tell.
    StationActivity activity() const;
    // Called each time the activity changes, but for the counter of a send and the start of a
    // punch, which are only looked at.
    void setActivityChanged(std::function<void()> f) { m_changed = std::move(f); }

private:
    bool openPort();
    void portLost(const QString &why);
    void handle(const Punch &punch, const QDateTime &arrival);
    void serve(const ProgramRequest &request);
    void file(const Punch &punch, const QDateTime &arrival);
    // `refusal`: why the request was refused, and the reply sent is the refusal's.
    void send(const QString &path, const ProgramRequest &request, const QByteArray &refusal);
    void journal(JournalRow row);
    // Waits `ms` in the event loop; an end or a reload asked for cuts it short.
    void pause(int ms);

    Link &m_l;
    DeviceComm &m_comm;
    StationSettings m_s;
    Log m_log;
    std::function<QString(StationSettings &)> m_readAgain;
    std::function<void(const JournalRow &)> m_journal;
    PunchReader m_reader;
    PortClaim m_claim;
    bool m_reload = false;
    bool m_lost = false;     // the device went away or could not be opened
    bool m_listened = false; // the port has been open once
    QString m_lastOpenError; // told once until it changes
    QString m_doing;         // "waiting" or "sending" while a request is served
    QString m_program;       // the program requested
    bool m_reading = false;  // waiting for a punch, or taking one
    std::function<void()> m_changed;
    void changed() {
        if (m_changed)
            m_changed();
    }
};
