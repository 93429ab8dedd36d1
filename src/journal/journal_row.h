#pragma once
// A row of the journal: one operation as its record left it, with what the front end knows
// around it (the machine, the device, who ran it).

#include "globals.h"
#include "outcome_record.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

struct JournalRow {
    QDateTime time; // UTC, when the operation began
    QString host;
    QString machine; // the section
    QString device;
    QString control; // "303", "504", "XonXoff"
    QString operation;
    QString file;
    QString program;
    qint64 bytes = 0;
    qint64 lines = 0;
    QString sha256;
    QString start;
    QString outcome;
    QString message;
    qint64 durationMs = 0;
    QString user;
    QStringList tools; // tool_usage: the tools of a send that reached the control whole
};

// What the front end adds to every row it writes.
struct JournalContext {
    QString host;
    QString machine;
    QString device;
    QString control;
    QString user;
};

// The host's name and the user's login, as a front end's context starts.
JournalContext journalContext(const Globals &g, const QString &device);

// "send", "receive", "punch", "list", "change", "execute", "delete"; empty for none.
QString journalOperation(OperationName operation);
// "done", "timeout", "port_failure" ...
QString journalOutcome(OutcomeKind kind);

// The row of a finished operation. A send that reached the control whole, from its top, has
// its tools read from the file when the file is still the one that went out.
JournalRow journalRow(const OutcomeRecord &record, const JournalContext &context, const Globals &g);

// Whether the section's Journal key leaves the journal on.
bool journalEnabled(const Globals &g);
