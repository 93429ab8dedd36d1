#pragma once
// The journal written on a thread of its own, for a front end with an operator in front of it:
// a database that is slow or away (a server's connect time-out, another writer's lock) and the
// reading of a large program's tools never hold the window that ended an operation.

#include "journal_writer.h"

#include <QThread>
#include <functional>
#include <memory>

class QTimer;

class JournalThread {
public:
    // `say` is called on the journal's thread.
    JournalThread(const JournalTarget &target, std::function<void(const QString &)> say);
    // Waits for the rows handed over, and the writer's last try, before the thread ends.
    ~JournalThread();
    JournalThread(const JournalThread &) = delete;
    JournalThread &operator=(const JournalThread &) = delete;

    // `makeRow` runs on the journal's thread: it must hold copies of what it reads.
    void add(std::function<JournalRow()> makeRow);

private:
    QThread m_thread;
    QObject *m_worker;                       // lives on m_thread
    std::unique_ptr<JournalWriter> m_writer; // made, used and ended on m_thread
    QTimer *m_retry = nullptr;               // on m_thread: tries kept rows again
};
