#pragma once
// One request written as raw bytes to a server of this process, and what came back, read
// while the event loop runs (the server answers on the same thread).

#include <QByteArray>
#include <QMap>
#include <QTcpSocket>

struct HttpReply {
    int status = 0;                       // 0: no status line came
    QMap<QByteArray, QByteArray> headers; // names in lower case
    QByteArray body;
    bool closed = false; // the server closed the connection
};

HttpReply httpExchange(quint16 port, const QByteArray &request, int timeoutMs = 5000);
// "GET /path HTTP/1.1" with a Host and, when given, an Accept-Language.
QByteArray httpRequest(const QByteArray &method, const QByteArray &target,
                       const QByteArray &language = {});
// Runs the event loop until `done` holds or the time is up; whether it held.
bool waitFor(const std::function<bool()> &done, int timeoutMs);
