#include "journal_lost.h"

#include "journal_database.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>

namespace {

constexpr int LockWaitMs = 2000;

QString field(QString text) {
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text;
}

QList<LostCount> readAll() {
    QList<LostCount> all;
    QFile file(lostCountsPath());
    if (!file.open(QIODevice::ReadOnly))
        return all;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const QStringList f = QString::fromUtf8(line).split(QLatin1Char('\t'));
        if (f.size() == 4 && f[1].toLongLong() > 0)
            all << LostCount{f[0], f[1].toLongLong(), f[2], f[3]};
    }
    return all;
}

bool writeAll(const QList<LostCount> &all) {
    if (all.isEmpty())
        return QFile::remove(lostCountsPath()) || !QFile::exists(lostCountsPath());
    QSaveFile file(lostCountsPath());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    for (const LostCount &c : all)
        file.write(QStringLiteral("%1\t%2\t%3\t%4\n")
                       .arg(field(c.journal))
                       .arg(c.count)
                       .arg(field(c.host), field(c.machine))
                       .toUtf8());
    return file.commit();
}

} // namespace

QString lostCountsPath() {
    return QFileInfo(defaultJournalPath()).absolutePath() + QStringLiteral("/journal-lost");
}

bool keepLostCount(const LostCount &lost) {
    if (!QDir().mkpath(QFileInfo(lostCountsPath()).absolutePath()))
        return false;
    QLockFile lock(lostCountsPath() + QStringLiteral(".lock"));
    if (!lock.tryLock(LockWaitMs))
        return false;
    QList<LostCount> all = readAll();
    all << LostCount{field(lost.journal), lost.count, lost.host, lost.machine};
    return writeAll(all);
}

LostCounts::LostCounts(const QString &journal) : m_journal(field(journal)) {
    // Most runs find no file: nothing to hold.
    if (!QFile::exists(lostCountsPath()))
        return;
    m_lock = new QLockFile(lostCountsPath() + QStringLiteral(".lock"));
    if (!m_lock->tryLock(LockWaitMs))
        return;
    for (const LostCount &c : readAll()) {
        if (c.journal == m_journal)
            m_counts << c;
    }
}

LostCounts::~LostCounts() {
    delete m_lock; // unlocks
}

void LostCounts::written() {
    if (m_counts.isEmpty())
        return;
    QList<LostCount> rest;
    for (const LostCount &c : readAll()) {
        if (c.journal != m_journal)
            rest << c;
    }
    writeAll(rest);
    m_counts.clear();
}
