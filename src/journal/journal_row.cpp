#include "journal_row.h"

#include "profile.h"
#include "settings_keys.h"
#include "tool_scan.h"

#include <QCryptographicHash>
#include <QFile>
#include <QHostInfo>

#include <pwd.h>
#include <unistd.h>

namespace {

QString loginName() {
    if (const passwd *pw = ::getpwuid(::geteuid()))
        return QString::fromLocal8Bit(pw->pw_name);
    return qEnvironmentVariable("USER");
}

// The tools of the file that went out, or none when the file changed since.
QStringList toolsSent(const OutcomeRecord &r, const Globals &g) {
    QFile file(r.filePath);
    if (r.filePath.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    if (QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex() != r.sha256)
        return {};
    return scanToolLines(content, g.LimitStrings, g.LimitCount).names;
}

} // namespace

JournalContext journalContext(const Globals &g, const QString &device) {
    JournalContext c;
    c.host = QHostInfo::localHostName();
    c.machine = g.ConfigSection;
    c.device = device;
    if (g.CncType > 0 && size_t(g.CncType) < g.CncChoices.size())
        c.control = g.CncChoices[size_t(g.CncType)];
    c.user = loginName();
    return c;
}

QString journalOperation(OperationName operation) {
    switch (operation) {
    case OperationName::SendFile:
    case OperationName::SendData:
        return QStringLiteral("send");
    case OperationName::ReceiveFile:
    case OperationName::SaveFile:
    case OperationName::SelectCNCFile:
        return QStringLiteral("receive");
    case OperationName::ReceivePunch:
        return QStringLiteral("punch");
    case OperationName::MapContext:
        return QStringLiteral("list");
    case OperationName::ChangeContext:
        return QStringLiteral("change");
    case OperationName::ChangeExecute:
        return QStringLiteral("execute");
    case OperationName::DeleteContext:
        return QStringLiteral("delete");
    case OperationName::None:
        break;
    }
    return {};
}

QString journalOutcome(OutcomeKind kind) {
    switch (kind) {
    case OutcomeKind::Done:
        return QStringLiteral("done");
    case OutcomeKind::Cancelled:
        return QStringLiteral("cancelled");
    case OutcomeKind::NotCounted:
        return QStringLiteral("not_counted");
    case OutcomeKind::TimedOut:
        return QStringLiteral("timeout");
    case OutcomeKind::NotOnControl:
        return QStringLiteral("not_on_control");
    case OutcomeKind::FileFailure:
        return QStringLiteral("file_failure");
    case OutcomeKind::PortFailure:
        return QStringLiteral("port_failure");
    case OutcomeKind::Interrupted:
        return QStringLiteral("interrupted");
    }
    return {};
}

JournalRow journalRow(const OutcomeRecord &r, const JournalContext &c, const Globals &g) {
    JournalRow row;
    row.time = r.started.isValid() ? r.started : QDateTime::currentDateTimeUtc();
    row.host = c.host;
    row.machine = c.machine;
    row.device = c.device;
    row.control = c.control;
    row.user = c.user;
    row.operation = journalOperation(r.operation);
    row.file = r.filePath;
    row.program = QString::fromLocal8Bit(r.programName);
    row.bytes = r.bytes;
    row.lines = r.lines;
    row.sha256 = QString::fromLatin1(r.sha256);
    row.start = r.start;
    row.outcome = journalOutcome(r.kind);
    row.message = r.reason;
    if (r.started.isValid() && r.ended.isValid())
        row.durationMs = r.started.msecsTo(r.ended);
    // Reached whole: done, or sent with only the tool list failing; from the top.
    const bool whole = r.kind == OutcomeKind::Done || r.kind == OutcomeKind::NotCounted;
    if (row.operation == QLatin1String("send") && whole && r.start.isEmpty() &&
        r.shortfall == Shortfall::None)
        row.tools = toolsSent(r, g);
    return row;
}

bool journalEnabled(const Globals &g) {
    return GetProfile(g, g.ConfigSection, SettingsKey::Journal).trimmed() != SettingsKey::Off;
}
