#pragma once
// A tool database made from the repository's schema in a temporary folder, and plain access
// to its rows through a connection of the test's own.

#include <QSqlDatabase>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>
#include <QVariantList>

struct ToolRow {
    QString tool;
    QVariant util;
    QVariant Date;
};

class ToolDbFixture {
public:
    ToolDbFixture();
    ~ToolDbFixture();
    QString path() const { return m_path; }
    QString folder() const { return m_dir.path(); }
    // Runs one statement with its bound values; fails the test's QVERIFY through the result.
    bool exec(const QString &sql, const QVariantList &binds = {});
    QList<ToolRow> rows();    // in rowid order
    QString integrityCheck(); // "ok" for a sound file
    QSqlDatabase database() const { return QSqlDatabase::database(m_name, false); }

private:
    QTemporaryDir m_dir;
    QString m_path;
    QString m_name;
};

// Writes bytes to a file in `folder`; returns its path.
QString WriteFile(const QString &folder, const QString &name, const QByteArray &bytes);
