#include "form_query.h"

#include <QUrl>

FormFields parseFormQuery(const QByteArray &query) {
    FormFields fields;
    for (QByteArray item : query.split('&')) {
        if (item.isEmpty())
            continue;
        item.replace('+', ' ');
        const qsizetype eq = item.indexOf('=');
        const QByteArray name = eq < 0 ? item : item.left(eq);
        const QByteArray value = eq < 0 ? QByteArray() : item.mid(eq + 1);
        fields.append({QString::fromUtf8(QByteArray::fromPercentEncoding(name)),
                       QString::fromUtf8(QByteArray::fromPercentEncoding(value))});
    }
    return fields;
}

QString formValue(const FormFields &fields, const QString &name) {
    for (const auto &f : fields)
        if (f.first == name)
            return f.second;
    return QString();
}

QString formQuery(const FormFields &fields) {
    QStringList items;
    for (const auto &f : fields)
        if (!f.second.isEmpty())
            items << QString::fromLatin1(QUrl::toPercentEncoding(f.first) + '=' +
                                         QUrl::toPercentEncoding(f.second));
    return items.join(u'&');
}
