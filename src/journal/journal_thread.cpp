#include "journal_thread.h"

#include <QTimer>

JournalThread::JournalThread(const JournalTarget &target, std::function<void(const QString &)> say)
    : m_worker(new QObject) {
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("journal"));
    m_thread.start();
    QMetaObject::invokeMethod(m_worker, [this, target, say = std::move(say)] {
        m_writer = std::make_unique<JournalWriter>(target, say);
        m_retry = new QTimer(m_worker);
        QObject::connect(m_retry, &QTimer::timeout, m_worker, [this] {
            if (m_writer->kept() > 0)
                m_writer->flush();
        });
        m_retry->start(JournalRetryMs);
    });
}

JournalThread::~JournalThread() {
    QMetaObject::invokeMethod(
        m_worker,
        [this] {
            delete m_retry;
            m_writer.reset();
        },
        Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
    delete m_worker;
}

void JournalThread::add(std::function<JournalRow()> makeRow) {
    QMetaObject::invokeMethod(m_worker,
                              [this, makeRow = std::move(makeRow)] { m_writer->add(makeRow()); });
}
