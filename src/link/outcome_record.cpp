#include "outcome_record.h"

#include "operation_state.h"

void OutcomeRecord::fail(OutcomeKind k, const QString &why) {
    if (k <= kind)
        return;
    kind = k;
    reason = why;
}

OutcomeRecord::Scope::Scope(OutcomeRecord &record, OperationName operation,
                            const OperationState &state)
    : m_r(record), m_state(state) {
    if (m_r.m_depth++ > 0)
        return;
    m_r = OutcomeRecord();
    m_r.m_depth = 1;
    m_r.operation = operation;
    m_r.started = QDateTime::currentDateTimeUtc();
}

OutcomeRecord::Scope::~Scope() {
    if (--m_r.m_depth > 0)
        return;
    // However it came to its end, an operation asked to end did not do all it would have.
    if (m_state.ending())
        m_r.fail(OutcomeKind::Interrupted);
    m_r.ended = QDateTime::currentDateTimeUtc();
}

QString outcomeWord(OutcomeKind kind) {
    switch (kind) {
    case OutcomeKind::Done:
        return QStringLiteral("done");
    case OutcomeKind::Cancelled:
        return QStringLiteral("cancelled");
    case OutcomeKind::NotCounted:
        return QStringLiteral("not counted");
    case OutcomeKind::TimedOut:
        return QStringLiteral("time-out");
    case OutcomeKind::NotOnControl:
        return QStringLiteral("not on the control");
    case OutcomeKind::FileFailure:
        return QStringLiteral("file failure");
    case OutcomeKind::PortFailure:
        return QStringLiteral("port failure");
    case OutcomeKind::Interrupted:
        return QStringLiteral("interrupted");
    }
    return {};
}
