#pragma once
// What every page shares: escaping, the frame around a page's body, times and numbers in the
// reader's language.

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QString>

// What a page is built for: the reader's language and the server's time of the request.
struct PageContext {
    qint16 language = 1; // 1 English, 2 French, 3 German
    QLocale locale;
    QDateTime now; // UTC
};

// Text made safe for HTML content and quoted attributes; control characters, which no name
// should hold, become U+FFFD.
QString htmlEscaped(const QString &text);

class PageFrame {
    Q_DECLARE_TR_FUNCTIONS(Web)

public:
    // The whole document: `path` marks the page's own entry in the menu; `body` is HTML.
    static QByteArray page(const PageContext &context, const QString &path, const QString &title,
                           const QString &body);
    // A page that says only why the request was not served.
    static QByteArray message(const PageContext &context, const QString &title,
                              const QString &text);
    // A time of the database, in the server's local time and the reader's format.
    static QString time(const PageContext &context, const QDateTime &utc);
};

// The seconds between two refreshes of a page.
inline constexpr int RefreshSeconds = 30;
