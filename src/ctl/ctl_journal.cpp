#include "ctl_journal.h"

#include "ctl_outcome.h"
#include "journal_database.h"
#include "journal_reader.h"

#include <QCoreApplication>
#include <cstdio>

namespace {

void sayError(const QString &text) {
    std::fputs((QStringLiteral("dncctl: ") + text + QLatin1Char('\n')).toLocal8Bit().constData(),
               stderr);
}

} // namespace

int runJournalCommand(const CtlOptions &o) {
    QString why;
    const auto connection =
        openJournalDatabase(QStringLiteral("read"), journalTarget(o.databasePath), &why);
    if (connection)
        why = createJournalTables(*connection);
    if (!why.isEmpty()) {
        sayError(QCoreApplication::translate("dncctl", "the journal cannot be read: %1").arg(why));
        return ExitToolDb;
    }
    if (!o.pruneBefore.isEmpty()) {
        const qint64 removed = pruneJournal(*connection, journalDate(o.pruneBefore), &why);
        if (removed < 0) {
            sayError(QCoreApplication::translate("dncctl", "the journal's rows cannot be "
                                                           "removed: %1")
                         .arg(why));
            return ExitToolDb;
        }
        std::fputs(QCoreApplication::translate("dncctl", "%1 row(s) removed from the journal.\n")
                       .arg(removed)
                       .toLocal8Bit()
                       .constData(),
                   stderr);
        return ExitOk;
    }
    JournalFilter filter;
    if (!o.since.isEmpty())
        filter.since = journalDate(o.since);
    if (!o.until.isEmpty())
        filter.until = journalDate(o.until, true);
    filter.machine = o.machine;
    filter.outcome = o.outcome;
    const JournalRead read = readJournal(*connection, filter);
    if (!read.error.isEmpty()) {
        sayError(QCoreApplication::translate("dncctl", "the journal cannot be read: %1")
                     .arg(read.error));
        return ExitToolDb;
    }
    const QByteArray out = o.format == u"csv"    ? journalCsv(read.rows)
                           : o.format == u"json" ? journalJson(read.rows)
                                                 : journalTable(read.rows);
    if (std::fwrite(out.constData(), 1, size_t(out.size()), stdout) != size_t(out.size()) ||
        std::fflush(stdout) != 0) {
        sayError(QCoreApplication::translate("dncctl", "standard output cannot be written"));
        return ExitFile;
    }
    return ExitOk;
}
