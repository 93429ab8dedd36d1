#include "web_server.h"

#include "journal_page.h"
#include "languages.h"
#include "machines_page.h"
#include "tools_page.h"

#include <QFile>
#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <cstdio>

namespace {

using Status = QHttpServerResponder::StatusCode;

const QByteArray Html = "text/html; charset=utf-8";

// The page's own style sheet is all it may load; forms go back to this server only.
const QByteArray Policy = "default-src 'none'; style-src 'self'; img-src 'self'; "
                          "form-action 'self'; base-uri 'none'; frame-ancestors 'none'";

QByteArray resource(const QString &name) {
    QFile file(QStringLiteral(":/web/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

WebServer::WebServer(JournalSource &source, const ConnectionLimits &limits, Clock clock,
                     QObject *parent)
    : QObject(parent), m_source(source), m_clock(std::move(clock)),
      m_guard(new ConnectionGuard(limits, this)) {
    // No route: every request comes here, so that one place decides what is served.
    m_http.setMissingHandler(
        [this](const QHttpServerRequest &request, QHttpServerResponder &&responder) {
            serve(request, std::move(responder));
        });
}

quint16 WebServer::listen(const QHostAddress &address, quint16 port) {
    if (!m_guard->listen(address, port))
        return 0;
    m_http.bind(m_guard);
    return m_guard->serverPort();
}

void WebServer::serve(const QHttpServerRequest &request, QHttpServerResponder &&responder) {
    PageContext context;
    context.language = languageOfAcceptLanguage(request.value("Accept-Language"));
    context.locale = languageLocale(context.language);
    context.now = m_clock();
    m_translations.use(context.language);

    const auto method = request.method();
    const bool head = method == QHttpServerRequest::Method::Head;
    Answer a;
    if (method != QHttpServerRequest::Method::Get && !head) {
        a.status = Status::MethodNotAllowed;
        a.type = Html;
        a.body = PageFrame::message(context, PageFrame::tr("Not allowed"),
                                    PageFrame::tr("These pages can only be read."));
    } else {
        a = answer(request.url().path(QUrl::FullyEncoded),
                   request.url().query(QUrl::FullyEncoded).toUtf8(), context);
    }
    responder.writeStatusLine(a.status);
    responder.writeHeader("Content-Type", a.type);
    responder.writeHeader("Content-Length", QByteArray::number(a.body.size()));
    responder.writeHeader("Content-Security-Policy", Policy);
    responder.writeHeader("X-Content-Type-Options", "nosniff");
    responder.writeHeader("Referrer-Policy", "no-referrer");
    responder.writeHeader("Cache-Control", "no-store");
    responder.writeHeader("Content-Language", context.locale.bcp47Name().left(2).toLatin1());
    if (a.status == Status::MethodNotAllowed)
        responder.writeHeader("Allow", "GET, HEAD");
    if (!a.disposition.isEmpty())
        responder.writeHeader("Content-Disposition", a.disposition);
    responder.writeBody(head ? QByteArray() : a.body);
}

WebServer::Answer WebServer::unavailable(const PageContext &context, const QString &reason) {
    // The reason may name the database; it goes to the log, not to the page.
    std::fprintf(stderr, "dnc-web: %s\n", qPrintable(reason));
    return {Status::ServiceUnavailable,
            Html,
            PageFrame::message(context, PageFrame::tr("Journal not available"),
                               PageFrame::tr("The journal cannot be read at the moment. The page "
                                             "tries again by itself.")),
            {}};
}

WebServer::Answer WebServer::answer(const QString &path, const QByteArray &query,
                                    const PageContext &context) {
    const FormFields fields = parseFormQuery(query);
    if (path == QLatin1String("/style.css"))
        return {Status::Ok, "text/css; charset=utf-8", resource(QStringLiteral("style.css")), {}};
    if (path == QLatin1String("/icon.svg"))
        return {Status::Ok, "image/svg+xml", resource(QStringLiteral("icon.svg")), {}};
    const bool machines = path == QLatin1String("/");
    const bool journal = path == QLatin1String("/journal");
    const bool csv = path == QLatin1String("/journal.csv");
    const bool tools = path == QLatin1String("/tools");
    if (!machines && !journal && !csv && !tools)
        return {Status::NotFound,
                Html,
                PageFrame::message(context, PageFrame::tr("Not found"),
                                   PageFrame::tr("There is no such page.")),
                {}};

    JournalQueries *q = m_source.queries();
    if (!q)
        return unavailable(context, m_source.error());
    const auto failed = [&] {
        const QString reason = q->error();
        m_source.failed();
        return unavailable(context, reason);
    };
    if (machines) {
        QList<MachineRow> rows;
        if (!q->machines(rows))
            return failed();
        return {Status::Ok, Html, MachinesPage::build(context, rows), {}};
    }
    if (journal || csv) {
        const JournalRequest request = JournalRequest::of(fields);
        if (csv) {
            QByteArray body = JournalCsv::header();
            if (!q->journalEach(request.filter,
                                [&body](const TransferRow &r) { body += JournalCsv::line(r); }))
                return failed();
            return {Status::Ok, "text/csv; charset=utf-8", body,
                    "attachment; filename=\"journal.csv\""};
        }
        QStringList names;
        QList<TransferRow> rows;
        if (!q->machineNames(names) || !q->journal(request.filter, JournalPageRows + 1,
                                                   (request.page - 1) * JournalPageRows, rows))
            return failed();
        return {Status::Ok, Html, JournalPage::build(context, request, names, rows), {}};
    }
    const QDateTime from =
        context.now.toLocalTime().date().addDays(1 - ToolDays).startOfDay().toUTC();
    QList<ToolCount> top;
    if (!q->topTools(from, TopToolCount, top))
        return failed();
    QString tool = formValue(fields, QStringLiteral("tool")).trimmed();
    if (tool.isEmpty() && !top.isEmpty())
        tool = top.first().tool;
    QList<QDateTime> times;
    if (!tool.isEmpty() && !q->toolTimes(tool, from, times))
        return failed();
    return {Status::Ok, Html, ToolsPage::build(context, top, tool, times), {}};
}
