#include "tool_list_model.h"

#include "number_text.h"
#include "tool_count.h"

#include <QCoreApplication>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

ToolListModel::ToolListModel(const QString &path, int busyTimeoutMs, QObject *parent)
    : QSqlQueryModel(parent), m_name(path), m_busyTimeoutMs(busyTimeoutMs) {}

ToolListModel::~ToolListModel() {
    // The query must let go of the connection before the connection is removed.
    clear();
}

bool ToolListModel::refresh() {
    if (!m_connection)
        m_connection =
            std::make_unique<ToolDbConnection>(QStringLiteral("grid"), m_name, m_busyTimeoutMs);
    // A session the server has dropped is not asked again: it is made anew.
    const bool live = m_connection->isOpen() && m_connection->database().isOpen();
    if (live && read())
        return true;
    // A lock only costs another wait; anything else may be a session the server has dropped.
    if (live && m_connection->dialect().isBusy(lastError()))
        return false;
    clear();
    if (!m_connection->reopen()) {
        m_error = m_connection->error();
        return false;
    }
    return read();
}

bool ToolListModel::read() {
    // The key rides along as a last, hidden column: it is how an edit finds its row.
    setQuery(m_connection->dialect().gridQuery(), m_connection->database());
    // Fetch everything, so that no open read keeps a count from writing.
    while (canFetchMore())
        fetchMore();
    m_error = lastError().isValid() ? m_connection->errorText(lastError()) : QString();
    return m_error.isEmpty();
}

int ToolListModel::columnCount(const QModelIndex &parent) const {
    return std::max(0, QSqlQueryModel::columnCount(parent) - 1);
}

Qt::ItemFlags ToolListModel::flags(const QModelIndex &index) const {
    const Qt::ItemFlags base = QSqlQueryModel::flags(index);
    return index.isValid() ? base | Qt::ItemIsEditable : base;
}

bool ToolListModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (role != Qt::EditRole || !index.isValid() || index.column() >= columnCount() ||
        !m_connection)
        return false;
    QSqlDatabase db = m_connection->database();
    if (!db.isOpen()) { // a session the server has dropped: the next refresh makes a new one
        m_error = QCoreApplication::translate(
                      "ToolList", "The change was not saved: the connection to the tool database "
                                  "%1 was lost.")
                      .arg(m_connection->displayName());
        return false;
    }
    const QString field = record().fieldName(index.column());
    QVariant stored = value;
    if (field.compare(QLatin1String("util"), Qt::CaseInsensitive) == 0) {
        // The count is a 16-bit integer, as the counting reads it.
        bool ok = false;
        const double number = value.toString().trimmed().toDouble(&ok);
        const std::optional<qint16> util = ok ? roundToInt16(number) : std::nullopt;
        if (!util)
            return false;
        stored = int(*util);
    } else if (field.compare(QLatin1String("tool"), Qt::CaseInsensitive) == 0) {
        // A name the counting would refuse is refused here too, on either engine alike.
        m_error = toolNameProblem(value.toString());
        if (!m_error.isEmpty())
            return false;
    }
    const QVariant key = record(index.row()).value(QSqlQueryModel::columnCount() - 1);
    QSqlQuery update(db);
    if (!update.exec(QStringLiteral("UPDATE tool_list SET %1 = %2 WHERE %3 = %4")
                         .arg(db.driver()->escapeIdentifier(field, QSqlDriver::FieldName),
                              sqlLiteral(db, stored), m_connection->dialect().key(),
                              sqlLiteral(db, key)))) {
        m_error = m_connection->errorText(update.lastError());
        return false;
    }
    refresh();
    return true;
}
