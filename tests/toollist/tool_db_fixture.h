#pragma once
// A tool database made from the repository's schema in a temporary folder, with a connection
// of the test's own.

#include <QtCore>
#include <QtSql>

class ToolDbFixture {
public:
    ToolDbFixture() {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        db.setDatabaseName(path());
        QFile schema(QStringLiteral(DNC_TOOL_SCHEMA));
        if (!db.open() || !schema.open(QIODevice::ReadOnly))
            qFatal("cannot make a database from %s", DNC_TOOL_SCHEMA);
        const QString sql = QString::fromUtf8(schema.readAll()).remove(QRegularExpression("--.*"));
        for (const QString &statement : sql.split(u';'))
            if (!statement.trimmed().isEmpty() && !exec(statement))
                qFatal("the schema does not run");
    }
    ~ToolDbFixture() {
        QSqlDatabase::database(m_name, false).close();
        QSqlDatabase::removeDatabase(m_name);
    }
    QString path() const { return m_dir.filePath(QStringLiteral("tools.db")); }

    // Runs one statement; `rows`, when given, gets each row of its result as fields joined by ':'.
    bool exec(const QString &sql, const QVariantList &binds = {}, QStringList *rows = nullptr) {
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        query.prepare(sql);
        for (const QVariant &value : binds)
            query.addBindValue(value);
        if (!query.exec())
            qWarning() << sql << query.lastError().text();
        while (rows && query.next()) {
            QStringList fields;
            for (int i = 0; i < query.record().count(); ++i)
                fields << query.value(i).toString();
            *rows << fields.join(u':');
        }
        return query.isActive();
    }
    QStringList
    rows(const QString &sql = QStringLiteral("SELECT * FROM tool_list ORDER BY rowid")) {
        QStringList result;
        exec(sql, {}, &result);
        return result;
    }
    // A program file beside the database.
    QString program(const QByteArray &bytes) {
        QFile file(m_dir.filePath(QStringLiteral("p.tap")));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

private:
    QTemporaryDir m_dir;
    QString m_name = QStringLiteral("fixture_%1").arg(quintptr(this));
};
