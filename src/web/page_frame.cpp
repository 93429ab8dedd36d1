#include "page_frame.h"

QString htmlEscaped(const QString &text) {
    QString out;
    out.reserve(text.size() + 16);
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '&':
            out += QLatin1String("&amp;");
            break;
        case '<':
            out += QLatin1String("&lt;");
            break;
        case '>':
            out += QLatin1String("&gt;");
            break;
        case '"':
            out += QLatin1String("&quot;");
            break;
        case '\'':
            out += QLatin1String("&#39;");
            break;
        default:
            if ((c.unicode() < 0x20 && c != u'\t' && c != u'\n') || c.unicode() == 0x7f)
                out += QChar(0xfffd);
            else
                out += c;
        }
    }
    return out;
}

QByteArray PageFrame::page(const PageContext &context, const QString &path, const QString &title,
                           const QString &body) {
    const struct {
        const char *path;
        QString name;
    } menu[] = {{"/", tr("Machines")}, {"/journal", tr("Journal")}, {"/tools", tr("Tools")}};
    QString nav;
    for (const auto &entry : menu) {
        const bool here = path == QLatin1String(entry.path);
        nav += QStringLiteral("<a href=\"%1\"%2>%3</a>")
                   .arg(QLatin1String(entry.path),
                        here ? QStringLiteral(" class=\"here\" aria-current=\"page\"") : QString(),
                        htmlEscaped(entry.name));
    }
    const QString lang = context.language == 2   ? QStringLiteral("fr")
                         : context.language == 3 ? QStringLiteral("de")
                                                 : QStringLiteral("en");
    const QString html =
        QStringLiteral("<!DOCTYPE html>\n<html lang=\"%1\"><head><meta charset=\"utf-8\">"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
                       "<meta http-equiv=\"refresh\" content=\"%2\">"
                       "<title>%3 \u2013 DNC</title>"
                       "<link rel=\"icon\" href=\"/icon.svg\" type=\"image/svg+xml\">"
                       "<link rel=\"stylesheet\" href=\"/style.css\"></head>\n"
                       "<body><header><nav>%4</nav><span class=\"clock\">%5</span></header>\n"
                       "<main><h1>%3</h1>\n%6</main></body></html>\n")
            .arg(lang)
            .arg(RefreshSeconds)
            .arg(htmlEscaped(title), nav, htmlEscaped(time(context, context.now)), body);
    return html.toUtf8();
}

QByteArray PageFrame::message(const PageContext &context, const QString &title,
                              const QString &text) {
    return page(context, QString(), title,
                QStringLiteral("<p class=\"message\">%1</p>").arg(htmlEscaped(text)));
}

QString PageFrame::time(const PageContext &context, const QDateTime &utc) {
    if (!utc.isValid())
        return QString();
    const QDateTime local = utc.toLocalTime();
    // Today's times need no date.
    if (local.date() == context.now.toLocalTime().date())
        return context.locale.toString(local.time(), QStringLiteral("HH:mm:ss"));
    return context.locale.toString(local, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}
