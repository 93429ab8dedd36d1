#pragma once
// The listening socket of dnc-web, which keeps one client from holding the server: a
// connection that has not had its answer within the time allowed, or sends more than a
// request may hold, is dropped; past a number of open connections new ones are refused.

#include <QTcpServer>

struct ConnectionLimits {
    int requestTimeoutMs = 10000; // from the connection, or from the last answer, to the next
    qint64 maxRequestBytes = 64 * 1024;
    int maxConnections = 256;
};

class ConnectionGuard : public QTcpServer {
    Q_OBJECT

public:
    explicit ConnectionGuard(const ConnectionLimits &limits, QObject *parent = nullptr)
        : QTcpServer(parent), m_limits(limits) {}
    QTcpSocket *nextPendingConnection() override;
    int openConnections() const { return m_open; }

private:
    ConnectionLimits m_limits;
    int m_open = 0;
};
