#include "update_tool_list.h"

#include "tool_count.h"
#include "tool_db.h"
#include "tool_scan.h"

#include <QCoreApplication>
#include <QFile>
#include <QObject>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

// The whole count of one program on the thread that calls it: its own connection, the file,
// the scan, the counts. The failure's text, empty when all went well.
QString countProgram(const QString &database, const QString &file,
                     const std::array<QString, 11> &limits, qint16 limitCount, int busyTimeoutMs,
                     const std::function<void()> &onBusy) {
    const ToolDbConnection connection(QStringLiteral("scan"), database, busyTimeoutMs);
    if (!connection.isOpen())
        return connection.error();
    QFile nc(file);
    if (!nc.open(QIODevice::ReadOnly))
        return QCoreApplication::translate(
                   "ToolList", "The tools of %1 cannot be counted: it cannot be read (%2).")
            .arg(file, nc.errorString());
    const ToolScan scan = scanToolLines(nc, limits, limitCount);
    nc.close();
    // The names ahead of a line the scan could not read are counted; a failure of the count
    // itself is told first.
    const ToolCount count =
        countTools(connection, scan.names, QDateTime::currentDateTime(), onBusy);
    return count.failed() ? count.failure : scan.failure;
}

} // namespace

void ToolListUpdater::UpdateToolList(const QString &file) {
    const auto count = [&](const std::function<void()> &onBusy) {
        return countProgram(m_g.DatabasePath, file, m_g.LimitStrings, m_g.LimitCount,
                            m_busyTimeoutMs, onBusy);
    };
    QString failure;
    if (!m_yield) {
        failure = count({});
    } else {
        std::mutex mutex;
        std::condition_variable changed;
        bool busy = false;
        bool done = false;
        QObject waker; // a posted call to it wakes a yield that sleeps until the next event
        const auto tell = [&](bool &flag) {
            {
                const std::lock_guard lock(mutex);
                flag = true;
            }
            changed.notify_all();
            QMetaObject::invokeMethod(
                &waker, [] {}, Qt::QueuedConnection);
        };
        std::jthread worker([&] {
            const QString why = count([&] { tell(busy); });
            failure = why;
            tell(done);
        });
        bool noticed = false;
        std::unique_lock lock(mutex);
        while (!done) {
            if (busy && !noticed) {
                noticed = true;
                lock.unlock();
                m_screen.setLabel1Caption(
                    QCoreApplication::translate(
                        "ToolList", "The tool database is busy with another station or program: "
                                    "waiting up to %1 for it.")
                        .arg(waitText(m_busyTimeoutMs)));
                m_screen.setLabel1Visible(true);
                lock.lock();
                continue;
            }
            lock.unlock();
            m_yield->DoEvents();
            lock.lock();
            // A yield that returns at once must not make this loop spin a core.
            changed.wait_for(lock, std::chrono::milliseconds(2),
                             [&] { return done || (busy && !noticed); });
        }
        lock.unlock();
        worker.join();
        if (noticed)
            m_screen.setLabel1Visible(false);
    }
    m_failure = failure;
    if (!failure.isEmpty())
        m_screen.msgBox(failure, BoxIcon::Critical, QString());
}
