#include "journal_source.h"

JournalQueries *JournalSource::queries() {
    if (m_queries)
        return m_queries.get();
    if (!m_connection)
        m_connection =
            std::make_unique<ToolDbConnection>(QStringLiteral("web"), m_name, DefaultBusyTimeoutMs);
    else
        m_connection->reopen();
    if (!m_connection->isOpen()) {
        m_error = m_connection->error();
        return nullptr;
    }
    m_queries = std::make_unique<JournalQueries>(m_connection->database(), toolDbEngineOf(m_name));
    return m_queries.get();
}
