#include "tool_count.h"

#include "number_text.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>
#include <optional>

namespace {

QString failedText(const QString &name, const ToolDbConnection &connection,
                   const QSqlError &error) {
    return QCoreApplication::translate("ToolList", "The tool \"%1\" cannot be counted: %2")
        .arg(name, connection.errorText(error));
}

QString busyText(const QString &name, const ToolDbConnection &connection) {
    return QCoreApplication::translate(
               "ToolList", "The tool \"%1\" and those after it in this program were not counted: "
                           "the tool database %2 is busy (another station or program holds it "
                           "locked) and stayed so for %3, the longest this program waits.")
        .arg(name, connection.displayName(), waitText(connection.busyTimeoutMs()));
}

// util read as a 16-bit integer; a reason when it cannot be.
std::optional<qint16> utilOf(const QVariant &value, const QString &name, QString &why) {
    if (value.isNull()) {
        why =
            QCoreApplication::translate("ToolList", "The tool \"%1\" has no count (util is empty).")
                .arg(name);
        return std::nullopt;
    }
    bool ok = false;
    const double number = value.toDouble(&ok);
    const std::optional<qint16> util = ok ? roundToInt16(number) : std::nullopt;
    if (!util)
        why = QCoreApplication::translate(
                  "ToolList", "The count of the tool \"%1\" is not a 16-bit integer: %2")
                  .arg(name, value.toString());
    return util;
}

// The statements of a count, prepared once per send and bound anew for each name.
struct CountQueries {
    QSqlQuery find, insert, update;
    bool prepared = false;
    explicit CountQueries(const QSqlDatabase &db) : find(db), insert(db), update(db) {}

    // Inside the first transaction: preparing reads the schema, which another writer may
    // hold locked until the lock is ours.
    bool prepare(const ToolDialect &sql, QSqlError &error) {
        for (auto [query, text] :
             {std::pair{&find, sql.findQuery()}, std::pair{&insert, sql.insertQuery()},
              std::pair{&update, sql.updateQuery()}}) {
            if (!query->prepare(text)) {
                error = query->lastError();
                return false;
            }
        }
        prepared = true;
        return true;
    }
};

bool run(QSqlQuery &query, QSqlError &error) {
    if (query.exec())
        return true;
    error = query.lastError();
    return false;
}

// One name inside its transaction. A reason when it cannot be counted; `error` tells the
// database's own failures.
QString countOne(CountQueries &q, const ToolDialect &sql, const QString &name, const QString &date,
                 QSqlError &error) {
    if (!q.prepared && !q.prepare(sql, error))
        return error.text();
    q.find.bindValue(0, name);
    if (!run(q.find, error))
        return error.text();
    if (!q.find.next()) {
        q.find.finish();
        q.insert.bindValue(0, name);
        q.insert.bindValue(1, date);
        return run(q.insert, error) ? QString() : error.text();
    }
    const QVariant key = q.find.value(0);
    QString why;
    const std::optional<qint16> util = utilOf(q.find.value(1), name, why);
    q.find.finish();
    if (!util)
        return why;
    if (*util == 32767)
        return QCoreApplication::translate("ToolList",
                                           "The count of the tool \"%1\" is at its highest, 32767.")
            .arg(name);
    q.update.bindValue(0, name);
    q.update.bindValue(1, int(*util) + 1);
    q.update.bindValue(2, date);
    q.update.bindValue(3, key);
    return run(q.update, error) ? QString() : error.text();
}

} // namespace

QString toolDateText(const QDateTime &when) {
    return when.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

ToolCount countTools(const ToolDbConnection &connection, const QStringList &names,
                     const QDateTime &now, const std::function<void()> &onBusy) {
    ToolCount result;
    QSqlDatabase db = connection.database();
    const ToolDialect &sql = connection.dialect();
    const QString date = toolDateText(now);
    // Declared first, so that every transaction has ended before they are freed.
    CountQueries queries(db);
    const auto rollBack = [&] { QSqlQuery(db).exec(QStringLiteral("ROLLBACK")); };
    for (const QString &name : names) {
        // A tool name with a double quote is refused: such names are a typing error in the
        // program's head, and the operator is told which line to mend.
        if (name.contains(QLatin1Char('"'))) {
            result.failure =
                QCoreApplication::translate(
                    "ToolList", "The tool name \"%1\" holds a double quote (\"), which a tool "
                                "name may not hold.")
                    .arg(name);
            return result;
        }
        QSqlError error;
        if (!sql.beginCount(db, name, connection.busyTimeoutMs(), onBusy, error)) {
            result.failure = sql.isBusy(error) ? busyText(name, connection)
                                               : failedText(name, connection, error);
            return result;
        }
        const QString why = countOne(queries, sql, name, date, error);
        if (why.isEmpty()) {
            QSqlQuery commit(db);
            if (commit.exec(QStringLiteral("COMMIT"))) {
                ++result.counted;
                continue;
            }
            error = commit.lastError();
        }
        rollBack();
        if (error.isValid())
            result.failure = sql.isBusy(error) ? busyText(name, connection)
                                               : failedText(name, connection, error);
        else
            result.failure = why;
        return result;
    }
    return result;
}
