#include "tool_db_name.h"

#include "tool_dialect.h"

#include <QRegularExpression>
#include <QStringList>
#include <QUrl>
#include <algorithm>

namespace {

const QString Hidden = QStringLiteral("***");

// The parts of a URI that may hold a password. The user part is read as widely as any reader
// of the URI might read it, up to the last '@', so that a password holding '@', '#', '/', '?'
// or a blank is still all of it; the query may carry one more as password=.
struct Credentials {
    qsizetype userStart = -1; // the user part is [userStart, userEnd) of the name
    qsizetype userEnd = -1;
    QString user;
    QStringList passwords; // as written, possibly empty ones
    qsizetype queryStart = -1;
};

Credentials credentialsOf(const QString &name) {
    Credentials c;
    if (toolDbEngineOf(name) != ToolDbEngine::Postgres)
        return c;
    const qsizetype start = name.indexOf(QLatin1String("://")) + 3;
    const qsizetype at = name.lastIndexOf(QLatin1Char('@'));
    if (at >= start) {
        c.userStart = start;
        c.userEnd = at;
        const QString userinfo = name.mid(start, at - start);
        const qsizetype colon = userinfo.indexOf(QLatin1Char(':'));
        c.user = colon < 0 ? userinfo : userinfo.left(colon);
        if (colon >= 0)
            c.passwords << userinfo.mid(colon + 1);
    }
    c.queryStart = name.indexOf(QLatin1Char('?'), std::max(start, at));
    if (c.queryStart >= 0) {
        for (const QString &item : name.mid(c.queryStart + 1).split(QLatin1Char('&'))) {
            if (item.section(QLatin1Char('='), 0, 0) == QLatin1String("password"))
                c.passwords << item.section(QLatin1Char('='), 1);
        }
    }
    return c;
}

// Every spelling of the passwords a text may hold: as written, decoded, encoded again.
QStringList secretsOf(const Credentials &c) {
    QStringList secrets;
    for (const QString &p : c.passwords) {
        const QString decoded = QUrl::fromPercentEncoding(p.toUtf8());
        secrets << p << decoded << QString::fromLatin1(QUrl::toPercentEncoding(decoded));
    }
    secrets.removeAll(QString());
    secrets.removeDuplicates();
    // The longest first, so that no part of one is left behind by a shorter one.
    std::sort(secrets.begin(), secrets.end(),
              [](const QString &a, const QString &b) { return a.size() > b.size(); });
    return secrets;
}

} // namespace

QString toolDbDisplayName(const QString &name) {
    if (toolDbEngineOf(name) == ToolDbEngine::Sqlite)
        return QStringLiteral("\"%1\"").arg(name);
    const Credentials c = credentialsOf(name);
    QString shown = name;
    if (c.queryStart >= 0) {
        QStringList kept;
        for (const QString &item : name.mid(c.queryStart + 1).split(QLatin1Char('&'))) {
            if (item.section(QLatin1Char('='), 0, 0) != QLatin1String("password"))
                kept << item;
        }
        shown = name.left(c.queryStart) +
                (kept.isEmpty() ? QString() : QLatin1Char('?') + kept.join(QLatin1Char('&')));
    }
    if (c.userStart >= 0)
        shown.replace(c.userStart, c.userEnd - c.userStart, c.user);
    return shown;
}

QString toolDbSafeText(const QString &text, const QString &name) {
    QString safe = text;
    // A URI parser's complaint goes on to repeat the whole text and its parts.
    const qsizetype echo = safe.indexOf(QLatin1String("; source was \""));
    if (echo >= 0)
        safe.truncate(echo);
    const Credentials c = credentialsOf(name);
    if (!c.passwords.isEmpty())
        safe.replace(name, toolDbDisplayName(name));
    for (const QString &secret : secretsOf(c))
        safe.replace(secret, Hidden);
    // What a driver quotes of a login, whatever the password is.
    static const QRegularExpression userinfo(QStringLiteral(R"(userinfo\s*=\s*"[^"]*")"));
    static const QRegularExpression password(
        QStringLiteral(R"(password\s*=\s*('(?:[^'\\]|\\.)*'|"[^"]*"|[^\s;&]*))"),
        QRegularExpression::CaseInsensitiveOption);
    safe.replace(userinfo, QStringLiteral("userinfo = \"%1\"").arg(Hidden));
    safe.replace(password, QStringLiteral("password=%1").arg(Hidden));
    return safe;
}

QString toolDbErrorText(const QSqlError &error, const QString &name) {
    return toolDbSafeText(error.text().simplified(), name);
}
