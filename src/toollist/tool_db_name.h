#pragma once
// How the database named by -d may be shown: never with a password, whatever the URI looks
// like and whatever a driver's words quote of it.

#include <QSqlError>
#include <QString>

// The name as messages show it: a path as given, a URI without its password.
QString toolDbDisplayName(const QString &name);

// A text about the database `name` (a driver's error, a URI parser's complaint) with every
// password taken out: that of the URI in any spelling, and any a driver quotes.
QString toolDbSafeText(const QString &text, const QString &name);
QString toolDbErrorText(const QSqlError &error, const QString &name);
