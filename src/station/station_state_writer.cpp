#include "station_state_writer.h"

#include <QSqlError>
#include <QSqlQuery>

std::optional<int> percentOfCaption(const QString &caption) {
    if (!caption.endsWith(u'%'))
        return std::nullopt;
    qsizetype i = caption.size() - 1;
    while (i > 0 && caption.at(i - 1).isDigit())
        --i;
    // The counter shows no number before the first whole percent.
    bool ok = false;
    const int percent = caption.mid(i, caption.size() - 1 - i).toInt(&ok);
    return ok && percent <= 100 ? percent : 0;
}

StationStateWriter::StationStateWriter(ToolDbConnection &db, const QString &machine,
                                       const QString &host, Activity activity, Clock clock,
                                       QObject *parent)
    : QObject(parent), m_db(db), m_machine(machine), m_host(host), m_activity(std::move(activity)),
      m_clock(std::move(clock)) {
    connect(&m_timer, &QTimer::timeout, this, &StationStateWriter::look);
}

void StationStateWriter::start() {
    look();
    m_timer.start(LookMs);
}

void StationStateWriter::look() {
    const StationActivity now = m_activity();
    if (m_written && *m_written == now && m_writtenAt.msecsTo(m_clock()) < RefreshMs)
        return;
    write(now);
}

void StationStateWriter::write(const StationActivity &activity) {
    const QDateTime now = m_clock();
    if (!m_since.isValid() || m_sinceState != activity.state) {
        m_since = now;
        m_sinceState = activity.state;
    }
    // Times as the journal keeps them on either engine: ISO text in UTC with milliseconds,
    // which PostgreSQL reads into its timestamptz.
    const auto iso = [](const QDateTime &t) {
        return t.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
    };
    const QVariant percent =
        activity.percent ? QVariant(*activity.percent) : QVariant(QMetaType::fromType<int>());
    const QString program = activity.program.isNull() ? QString("") : activity.program;
    const QString device = activity.device.isNull() ? QString("") : activity.device;
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("UPDATE station_state SET host = ?, device = ?, state = ?, "
                             "percent = ?, program = ?, since = ?, updated = ? WHERE machine = ?"));
    for (const QVariant &v :
         {QVariant(m_host), QVariant(device), QVariant(activity.state), percent, QVariant(program),
          QVariant(iso(m_since)), QVariant(iso(now)), QVariant(m_machine)})
        q.addBindValue(v);
    bool ok = q.exec();
    if (ok && q.numRowsAffected() == 0) {
        q.prepare(
            QStringLiteral("INSERT INTO station_state (machine, host, device, state, "
                           "percent, program, since, updated) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
        for (const QVariant &v :
             {QVariant(m_machine), QVariant(m_host), QVariant(device), QVariant(activity.state),
              percent, QVariant(program), QVariant(iso(m_since)), QVariant(iso(now))})
            q.addBindValue(v);
        ok = q.exec();
    }
    // Not written: tried again at the next look, since nothing counts as written.
    if (!ok) {
        m_error = m_db.errorText(q.lastError());
        m_written.reset();
        return;
    }
    m_error.clear();
    m_written = activity;
    m_writtenAt = now;
}
