#include "station.h"

#include "comm.h"
#include "device_comm.h"
#include "dialogue.h"
#include "nc_file_survey.h"
#include "program_lookup.h"
#include "punch_filing.h"
#include "regular_file.h"
#include "reply_program.h"
#include "transfer.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

namespace {

QString cutText(const Punch &p, bool ending) {
    if (!p.portFailure.isEmpty())
        return QCoreApplication::translate("Station", ", cut short: the device went away");
    if (p.cutBySilence)
        return QCoreApplication::translate(
            "Station", ", cut short: the control fell silent before its closing %");
    if (ending && !p.complete)
        return QCoreApplication::translate("Station", ", cut short: the station was stopped");
    return {};
}

// How a send ended, in the log's language.
QString outcomeText(OutcomeKind kind) {
    static const char *const words[] = {
        QT_TRANSLATE_NOOP("Station", "done"),
        QT_TRANSLATE_NOOP("Station", "cancelled"),
        QT_TRANSLATE_NOOP("Station", "sent, tools not counted"),
        QT_TRANSLATE_NOOP("Station", "timed out"),
        QT_TRANSLATE_NOOP("Station", "not on the control"),
        QT_TRANSLATE_NOOP("Station", "file failure"),
        QT_TRANSLATE_NOOP("Station", "port failure"),
        QT_TRANSLATE_NOOP("Station", "interrupted"),
    };
    return QCoreApplication::translate("Station", words[int(kind)]);
}

// Where a part-way send starts, in the log's language.
QString placeText(const StartPoint &start) {
    switch (start.kind) {
    case StartKind::Line:
        return QCoreApplication::translate("Station", "line %1").arg(start.number);
    case StartKind::Block:
        return QCoreApplication::translate("Station", "block N%1").arg(start.number);
    case StartKind::Tool:
        return QCoreApplication::translate("Station", "tool %1").arg(start.number);
    case StartKind::Top:
        break;
    }
    return {};
}

} // namespace

Station::Station(Link &link, DeviceComm &comm, StationSettings settings, Log log,
                 std::function<QString(StationSettings &)> reload)
    : m_l(link), m_comm(comm), m_s(std::move(settings)), m_log(std::move(log)),
      m_readAgain(std::move(reload)) {}

int Station::run() {
    // The station's whole life is one operation: a signal ends whatever it is doing.
    const OperationState::Run life(m_l.state);
    // Listening is being ready: DTR tells the control so from the first opening on.
    m_comm.setDTREnable(true);
    m_log(QCoreApplication::translate(
              "Station", "serving %1: programs from %2, punches filed in %3, requests %4")
              .arg(m_l.g.ComSettings, m_s.programDir, m_s.receiveDir,
                   QString::fromLatin1(m_s.requestNumber)));
    while (!m_l.state.ending()) {
        if (m_reload) {
            m_reload = false;
            if (m_comm.portOpen())
                m_comm.setPortOpen(false);
            StationSettings fresh;
            const QString why = m_readAgain(fresh);
            if (why.isEmpty()) {
                m_s = fresh;
                m_log(QCoreApplication::translate("Station", "settings read again: %1")
                          .arg(m_l.g.ComSettings));
            } else {
                m_log(QCoreApplication::translate("Station", "settings read again, not used: %1")
                          .arg(why));
            }
        }
        if (!m_comm.portOpen() && !openPort()) {
            pause(RetryOpenMs);
            continue;
        }
        m_reading = true;
        const Punch punch = m_reader.read(m_l, -1, m_s.punchSilenceMs, [this] { return m_reload; });
        m_reading = false;
        const QDateTime arrival = QDateTime::currentDateTimeUtc();
        if (m_reader.ignored() > 0)
            m_log(QCoreApplication::translate("Station", "%1 characters before any %% ignored")
                      .arg(m_reader.ignored()));
        if (!punch.bytes.isEmpty())
            handle(punch, arrival);
        if (!punch.portFailure.isEmpty())
            portLost(punch.portFailure);
    }
    if (m_comm.portOpen())
        m_comm.setPortOpen(false);
    m_claim.release();
    m_log(QStringLiteral("stopped"));
    return 0;
}

bool Station::openPort() {
    try {
        SetCom(m_l);
        PortOwner other;
        if (!m_claim.claim(m_comm.devicePath(), m_l.g.ConfigSection, &other))
            throw CommError{m_comm.deviceName(),
                            QCoreApplication::translate("Station", "%1 serves it already")
                                .arg(stationText(other)),
                            CommError::Stage::Opening};
        m_comm.setPortOpen(true);
    } catch (const CommError &e) {
        const QString text = e.message();
        if (text != m_lastOpenError)
            m_log(QCoreApplication::translate("Station", "%1; trying again every %2 s")
                      .arg(text)
                      .arg(RetryOpenMs / 1000));
        m_lastOpenError = text;
        m_lost = true;
        changed();
        return false;
    }
    // Opened again after each answer: only a change is worth a line.
    if (m_lost)
        m_log(QCoreApplication::translate("Station", "%1 is back: listening")
                  .arg(m_comm.deviceName()));
    else if (!m_listened)
        m_log(QCoreApplication::translate("Station", "listening on %1").arg(m_comm.deviceName()));
    m_lost = false;
    m_listened = true;
    m_lastOpenError.clear();
    changed();
    return true;
}

void Station::portLost(const QString &why) {
    try {
        m_comm.setPortOpen(false);
    } catch (const CommError &) {
        // Gone already; closed is all that is needed.
    }
    m_log(QCoreApplication::translate("Station", "device lost: %1; waiting for it to come back")
              .arg(why));
    m_lastOpenError.clear();
    m_lost = true;
    changed();
}

void Station::handle(const Punch &punch, const QDateTime &arrival) {
    if (const std::optional<ProgramRequest> request = requestOf(punch.bytes, m_s.requestNumber);
        request && punch.portFailure.isEmpty() && !m_l.state.ending())
        serve(*request);
    else
        file(punch, arrival);
}

void Station::journal(JournalRow row) {
    if (!m_journal)
        return;
    const JournalContext c = journalContext(m_l.g, m_comm.devicePath());
    row.host = c.host;
    row.machine = c.machine;
    row.device = c.device;
    row.control = c.control;
    row.user = c.user;
    m_journal(row);
}

void Station::file(const Punch &punch, const QDateTime &arrival) {
    const FiledPunch filed = filePunch(m_s.receiveDir, punch.bytes, arrival);
    JournalRow row;
    row.time = arrival;
    row.operation = QStringLiteral("punch");
    row.file = filed.path;
    row.program = QString::fromLatin1(programNumberOf(punch.bytes));
    row.bytes = punch.bytes.size();
    row.lines = punch.lines;
    row.sha256 = QString::fromLatin1(
        QCryptographicHash::hash(punch.bytes, QCryptographicHash::Sha256).toHex());
    row.outcome = QStringLiteral("done");
    if (filed.path.isEmpty()) {
        row.outcome = QStringLiteral("file_failure");
        row.message = filed.error;
    } else if (!punch.portFailure.isEmpty()) {
        row.outcome = QStringLiteral("port_failure");
        row.message = punch.portFailure;
    } else if (punch.cutBySilence) {
        row.outcome = QStringLiteral("timeout");
    } else if (m_l.state.ending() && !punch.complete) {
        row.outcome = QStringLiteral("interrupted");
    }
    if (filed.path.isEmpty())
        m_log(QCoreApplication::translate("Station", "punch of %1 characters NOT filed in %2: %3")
                  .arg(punch.bytes.size())
                  .arg(m_s.receiveDir, filed.error));
    else
        m_log(QCoreApplication::translate("Station", "punch filed: %1, %2 characters, %3 lines%4")
                  .arg(filed.path)
                  .arg(punch.bytes.size())
                  .arg(punch.lines)
                  .arg(cutText(punch, m_l.state.ending())));
    // After the log's line: a journal that waits for a lock does not hold it back.
    journal(row);
}

void Station::serve(const ProgramRequest &request) {
    const ProgramLookup found = findProgram(m_s.programDir, request.name);
    QTemporaryDir replyDir;
    QString path = found.path;
    // A place to start from is looked for before anything is sent.
    QByteArray why = refusalWords(found.refusal);
    std::optional<StartPoint> start = StartPoint();
    if (!request.place.isEmpty())
        start = startPointOf(request.place);
    if (!start)
        why = "BAD PLACE " + request.place.toUpper().toLatin1();
    else if (why.isEmpty() && start->partWay())
        why = surveyNcFile(path, MaxLineBytes, *start).missing;
    if (!why.isEmpty()) {
        m_log(QCoreApplication::translate("Station", "request for \"%1\" refused: %2")
                  .arg(request.name, QString::fromLatin1(why)));
        path = replyDir.filePath(QString::fromLatin1(m_s.replyNumber) + QStringLiteral(".tap"));
        QFile reply(path);
        if (!reply.open(QIODevice::WriteOnly) ||
            reply.write(replyProgram(m_s.replyNumber, request.name, why)) < 0) {
            m_log(QCoreApplication::translate("Station", "no reply sent: %1")
                      .arg(reply.errorString()));
            return;
        }
    } else {
        if (start->partWay())
            m_log(QCoreApplication::translate("Station", "request for \"%1\" from %2: %3")
                      .arg(request.name, placeText(*start), path));
        else
            m_log(QCoreApplication::translate("Station", "request for \"%1\": %2")
                      .arg(request.name, path));
    }
    // Time for the operator to switch the control to read.
    m_program = request.name;
    m_doing = QStringLiteral("waiting");
    changed();
    pause(m_s.requestDelayMs);
    if (!m_l.state.ending()) {
        if (why.isEmpty())
            m_l.startAt = *start;
        m_doing = QStringLiteral("sending");
        changed();
        send(path, request, why);
    }
    m_doing.clear();
    changed();
}

void Station::send(const QString &path, const ProgramRequest &request, const QByteArray &refusal) {
    // What the control sent behind its request is no answer to anything we send.
    m_l.comm.input();
    ToolListHook *const counter = m_l.toolList;
    if (!refusal.isEmpty())
        m_l.toolList = nullptr;
    QElapsedTimer clock;
    clock.start();
    SendData(m_l, path);
    m_l.toolList = counter;
    const OutcomeRecord &r = m_l.outcome;
    m_log(QCoreApplication::translate("Station", "answer %1: %2, %3 characters, %4 lines in %5 s%6")
              .arg(outcomeText(r.kind), QDir::toNativeSeparators(path))
              .arg(r.bytes)
              .arg(r.lines)
              .arg(double(clock.elapsed()) / 1000.0, 0, 'f', 1)
              .arg(r.reason.isEmpty() ? QString() : QStringLiteral(" (") + r.reason + u')'));
    // The row tells of the request; a refusal's row, of the refusal, however its reply went.
    JournalRow row = journalRow(r, JournalContext(), m_l.g);
    row.operation = QStringLiteral("request");
    row.program = request.name;
    if (!refusal.isEmpty()) {
        row.outcome = QStringLiteral("refused");
        row.message = QString::fromLatin1(refusal);
        row.file.clear(); // the reply's file is gone with its temporary folder
        row.tools.clear();
    }
    journal(row);
}

StationActivity Station::activity() const {
    StationActivity a;
    a.device = m_comm.deviceName();
    if (m_lost)
        a.state = QStringLiteral("device_gone");
    else if (!m_doing.isEmpty())
        a.state = m_doing;
    else if (m_reading && m_reader.started())
        a.state = QStringLiteral("receiving");
    else
        a.state = QStringLiteral("listening");
    if (!m_doing.isEmpty())
        a.program = m_program;
    return a;
}

void Station::pause(int ms) {
    const QDeadlineTimer deadline(ms, Qt::PreciseTimer);
    QTimer wake; // the event loop sleeps until it, a signal, or characters
    wake.setSingleShot(true);
    wake.setTimerType(Qt::PreciseTimer);
    while (!deadline.hasExpired() && !m_l.state.ending() && !m_reload) {
        // Armed anew each pass: a timer that fired a little early must not leave the loop
        // asleep with nothing more to wake it.
        wake.start(int(std::max<qint64>(deadline.remainingTime(), 0)));
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}
