#include "http_exchange.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

bool waitFor(const std::function<bool()> &done, int timeoutMs) {
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

namespace {

// Whether `data` holds a whole answer, filling `reply` when it does.
bool parse(const QByteArray &data, bool head, HttpReply &reply) {
    const qsizetype end = data.indexOf("\r\n\r\n");
    if (end < 0)
        return false;
    const QList<QByteArray> lines = data.left(end).split('\n');
    reply.status = lines.value(0).split(' ').value(1).toInt();
    reply.headers.clear();
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines.at(i).indexOf(':');
        if (colon > 0)
            reply.headers.insert(lines.at(i).left(colon).trimmed().toLower(),
                                 lines.at(i).mid(colon + 1).trimmed());
    }
    const qsizetype length = reply.headers.value("content-length").toLongLong();
    if (!head && data.size() - end - 4 < length)
        return false;
    reply.body = data.mid(end + 4);
    return true;
}

} // namespace

HttpReply httpExchange(quint16 port, const QByteArray &request, int timeoutMs) {
    HttpReply reply;
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    socket.write(request);
    QByteArray data;
    bool whole = false;
    const bool head = request.startsWith("HEAD ");
    waitFor(
        [&] {
            if (socket.isOpen())
                data += socket.readAll();
            whole = parse(data, head, reply);
            reply.closed = socket.state() == QAbstractSocket::UnconnectedState;
            return whole || reply.closed;
        },
        timeoutMs);
    if (!whole)
        reply.status = 0;
    return reply;
}

QByteArray httpRequest(const QByteArray &method, const QByteArray &target,
                       const QByteArray &language) {
    QByteArray r = method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n";
    if (!language.isEmpty())
        r += "Accept-Language: " + language + "\r\n";
    return r + "\r\n";
}
