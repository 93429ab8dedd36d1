#include "update_tool_list.h"

#include "tool_count.h"
#include "tool_db.h"
#include "tool_scan.h"

#include <QFile>

void ToolListUpdater::UpdateToolList(const QString &file) {
    QString failure;
    {
        const ToolDbConnection connection(QStringLiteral("scan"), m_g.DatabasePath,
                                          m_busyTimeoutMs);
        QFile nc(file);
        if (!connection.isOpen()) {
            failure = connection.error();
        } else if (!nc.open(QIODevice::ReadOnly)) {
            failure = QStringLiteral("%1: %2").arg(file, nc.errorString());
        } else {
            const ToolScan scan = scanToolLines(nc, m_g.LimitStrings, m_g.LimitCount);
            nc.close();
            // The names ahead of a bad line are counted: each count stands on its own.
            const ToolCount count =
                countTools(connection.database(), scan.names, QDateTime::currentDateTime());
            failure = count.failed() ? count.failure : scan.failure;
        }
    }
    if (!failure.isEmpty())
        m_screen.msgBox(failure, BoxIcon::Critical, QString());
}
