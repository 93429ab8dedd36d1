#pragma once
// The journal's rows as a test reads them, with a connection of its own: each row a map from
// column to value, oldest first.

#include "tool_db.h"

#include <QFile>
#include <QList>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariantMap>

// `name` as -d names it; a file that is not there holds no rows.
inline QList<QVariantMap> journalRows(const QString &name,
                                      const QString &table = QStringLiteral("transfer_journal")) {
    QList<QVariantMap> rows;
    if (!name.startsWith(QLatin1String("postgres")) && !QFile::exists(name))
        return rows;
    const ToolDbConnection db(QStringLiteral("journal_rows"), name, 5000);
    QSqlQuery query(db.database());
    if (!query.exec(QStringLiteral("SELECT * FROM %1 ORDER BY id").arg(table)))
        return rows;
    while (query.next()) {
        QVariantMap row;
        for (int i = 0; i < query.record().count(); ++i)
            row.insert(query.record().fieldName(i), query.value(i));
        rows << row;
    }
    return rows;
}
