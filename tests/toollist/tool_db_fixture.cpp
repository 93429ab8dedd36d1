#include "tool_db_fixture.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

ToolDbFixture::ToolDbFixture()
    : m_path(m_dir.filePath(QStringLiteral("tools.db"))),
      m_name(QStringLiteral("fixture_%1").arg(quintptr(this))) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    db.setDatabaseName(m_path);
    if (!db.open())
        qFatal("cannot create %s", qPrintable(m_path));
    QFile schema(QStringLiteral(DNC_TOOL_SCHEMA));
    if (!schema.open(QIODevice::ReadOnly))
        qFatal("cannot read the schema %s", DNC_TOOL_SCHEMA);
    for (const QString &statement : QString::fromUtf8(schema.readAll()).split(u';')) {
        QString sql;
        for (const QString &line : statement.split(u'\n'))
            if (!line.trimmed().startsWith(QLatin1String("--")))
                sql += line + u'\n';
        if (!sql.trimmed().isEmpty() && !exec(sql))
            qFatal("the schema does not run");
    }
}

ToolDbFixture::~ToolDbFixture() {
    {
        QSqlDatabase db = database();
        db.close();
    }
    QSqlDatabase::removeDatabase(m_name);
}

bool ToolDbFixture::exec(const QString &sql, const QVariantList &binds) {
    QSqlQuery query(database());
    query.prepare(sql);
    for (const QVariant &value : binds)
        query.addBindValue(value);
    if (!query.exec()) {
        qWarning() << sql << query.lastError().text();
        return false;
    }
    return true;
}

QList<ToolRow> ToolDbFixture::rows() {
    QList<ToolRow> result;
    QSqlQuery query(database());
    if (!query.exec(QStringLiteral("SELECT tool, util, Date FROM tool_list ORDER BY rowid")))
        qWarning() << query.lastError().text();
    while (query.next())
        result << ToolRow{query.value(0).toString(), query.value(1), query.value(2)};
    return result;
}

QString ToolDbFixture::integrityCheck() {
    QSqlQuery query(database());
    if (!query.exec(QStringLiteral("PRAGMA integrity_check")) || !query.next())
        return query.lastError().text();
    return query.value(0).toString();
}

QString WriteFile(const QString &folder, const QString &name, const QByteArray &bytes) {
    const QString path = folder + u'/' + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}
