#include "connection_guard.h"

#include <QTcpSocket>
#include <QTimer>

QTcpSocket *ConnectionGuard::nextPendingConnection() {
    QTcpSocket *socket = QTcpServer::nextPendingConnection();
    while (socket && m_open >= m_limits.maxConnections) {
        socket->abort();
        socket->deleteLater();
        socket = QTcpServer::nextPendingConnection();
    }
    if (!socket)
        return nullptr;
    ++m_open;
    connect(socket, &QObject::destroyed, this, [this] { --m_open; });

    // Connected before the HTTP server's own handler, so this sees each read first.
    auto *deadline = new QTimer(socket);
    deadline->setSingleShot(true);
    connect(deadline, &QTimer::timeout, socket, &QTcpSocket::abort);
    deadline->start(m_limits.requestTimeoutMs);
    auto received = std::make_shared<qint64>(0);
    const qint64 max = m_limits.maxRequestBytes;
    connect(socket, &QTcpSocket::readyRead, socket, [socket, received, max] {
        // The server reads everything each time, so what waits now is what has just come.
        *received += socket->bytesAvailable();
        if (*received > max) {
            // The server's own handler comes next and must find nothing to read.
            socket->readAll();
            QMetaObject::invokeMethod(socket, &QTcpSocket::abort, Qt::QueuedConnection);
        }
    });
    connect(socket, &QTcpSocket::bytesWritten, socket, [deadline, received, this] {
        *received = 0;
        deadline->start(m_limits.requestTimeoutMs);
    });
    return socket;
}
