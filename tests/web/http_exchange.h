#pragma once
// One request written as raw bytes to a server of this process, and what came back, read
// while the event loop runs (the server answers on the same thread).

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMap>
#include <QTcpSocket>
#include <QTimer>

struct HttpReply {
    int status = 0;                       // 0: no whole answer came
    QMap<QByteArray, QByteArray> headers; // names in lower case
    QByteArray body;
    bool closed = false; // the server closed the connection
};

// Runs the event loop until `done` holds or the time is up; whether it held.
inline bool waitFor(const std::function<bool()> &done, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    QTimer tick; // wakes the loop when nothing else does
    tick.start(5);
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// Whether `data` holds a whole answer, filling `reply` when it does.
inline bool parseHttpReply(const QByteArray &data, bool head, HttpReply &reply) {
    const qsizetype end = data.indexOf("\r\n\r\n");
    if (end < 0)
        return false;
    const QList<QByteArray> lines = data.left(end).split('\n');
    reply.status = lines.value(0).split(' ').value(1).toInt();
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            reply.headers.insert(line.left(colon).trimmed().toLower(),
                                 line.mid(colon + 1).trimmed());
    }
    reply.body = data.mid(end + 4);
    return head || reply.body.size() >= reply.headers.value("content-length").toLongLong();
}

inline HttpReply httpExchange(quint16 port, const QByteArray &request, int timeoutMs = 5000) {
    HttpReply reply;
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    socket.write(request);
    QByteArray data;
    bool whole = false;
    waitFor(
        [&] {
            if (socket.isOpen())
                data += socket.readAll();
            whole = parseHttpReply(data, request.startsWith("HEAD "), reply);
            reply.closed = socket.state() == QAbstractSocket::UnconnectedState;
            return whole || reply.closed;
        },
        timeoutMs);
    if (!whole)
        reply.status = 0;
    return reply;
}

// "GET /path HTTP/1.1" with a Host and, when given, an Accept-Language.
inline QByteArray httpRequest(const QByteArray &method, const QByteArray &target,
                              const QByteArray &language = {}) {
    QByteArray r = method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n";
    if (!language.isEmpty())
        r += "Accept-Language: " + language + "\r\n";
    return r + "\r\n";
}
