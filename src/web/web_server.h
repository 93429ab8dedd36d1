#pragma once
// dnc-web's HTTP side: which path is which page, the methods allowed, the headers every answer
// carries. Pages are built one at a time on the thread of the event loop.

#include "accept_language.h"
#include "connection_guard.h"
#include "journal_source.h"
#include "page_frame.h"

#include <QDateTime>
#include <QHostAddress>
#include <QHttpServer>
#include <functional>

class WebServer : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>; // UTC
    WebServer(JournalSource &source, const ConnectionLimits &limits = {},
              Clock clock = &QDateTime::currentDateTimeUtc, QObject *parent = nullptr);

    // The port listened on, or 0 when the address cannot be had (errorString() says why).
    quint16 listen(const QHostAddress &address, quint16 port);
    QString errorString() const { return m_guard->errorString(); }

private:
    struct Answer {
        QHttpServerResponder::StatusCode status = QHttpServerResponder::StatusCode::Ok;
        QByteArray type;
        QByteArray body;
        QByteArray disposition;
    };
    void serve(const QHttpServerRequest &request, QHttpServerResponder &&responder);
    Answer answer(const QString &path, const QByteArray &query, const PageContext &context);
    Answer unavailable(const PageContext &context, const QString &reason);

    JournalSource &m_source;
    Clock m_clock;
    QHttpServer m_http;
    ConnectionGuard *m_guard;
    PageTranslations m_translations;
};
