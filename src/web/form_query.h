#pragma once
// The query of a page's URL as a browser's form writes it ("+" for a blank), read and written
// the same way, whatever the names and values hold.

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

using FormFields = QList<QPair<QString, QString>>;

// Every field of a query such as "machine=Lathe%201&date=2026-11-24", in order.
FormFields parseFormQuery(const QByteArray &query);
// The first value of `name`, or an empty string.
QString formValue(const FormFields &fields, const QString &name);
// "a=1&b=x%26y": fields with an empty value are left out.
QString formQuery(const FormFields &fields);
