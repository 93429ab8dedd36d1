#include "journal_source.h"

JournalQueries *JournalSource::queries() {
    if (m_queries)
        return m_queries.get();
    m_connection = openJournalDatabase(QStringLiteral("web"), m_target, &m_error);
    if (!m_connection)
        return nullptr;
    // The default journal is this program's own file: before any station has written, its
    // pages show empty tables rather than an error. A database named by -d is only read.
    if (m_target.embedded) {
        m_error = createJournalTables(*m_connection);
        if (!m_error.isEmpty()) {
            m_connection.reset();
            return nullptr;
        }
    }
    m_queries =
        std::make_unique<JournalQueries>(m_connection->database(), toolDbEngineOf(m_target.name));
    return m_queries.get();
}

void JournalSource::failed() {
    m_queries.reset();
    m_connection.reset();
}
