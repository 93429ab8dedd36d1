#include "tool_count.h"

#include "number_text.h"

#include <QCoreApplication>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QSqlError>
#include <QSqlQuery>
#include <optional>

namespace {

// A name as a message shows it: a long one by its start, a NUL as a sign that can be seen.
QString shownName(const QString &name) {
    constexpr qsizetype Shown = 40;
    QString shown = name.size() > Shown ? name.left(Shown) + QChar(0x2026) : name;
    shown.replace(QChar(0), QChar(0x2400));
    return shown;
}

QString failedText(const ToolDbConnection &connection, const QString &why) {
    return QCoreApplication::translate(
               "ToolList", "The tools of this program were not counted: the tool database %1 "
                           "failed: %2")
        .arg(connection.displayName(), why);
}

QString busyText(const QString &name, const ToolDbConnection &connection) {
    return QCoreApplication::translate(
               "ToolList", "The tool \"%1\" and those after it in this program were not counted: "
                           "the tool database %2 is busy (another station or program holds it "
                           "locked) and stayed so for %3, the longest this program waits.")
        .arg(shownName(name), connection.displayName(), waitText(connection.busyTimeoutMs()));
}

// util read as a 16-bit integer; a reason when it cannot be.
std::optional<qint16> utilOf(const QVariant &value, const QString &name, QString &why) {
    if (value.isNull()) {
        why =
            QCoreApplication::translate("ToolList", "The tool \"%1\" has no count (util is empty).")
                .arg(shownName(name));
        return std::nullopt;
    }
    bool ok = false;
    const double number = value.toDouble(&ok);
    const std::optional<qint16> util = ok ? roundToInt16(number) : std::nullopt;
    if (!util)
        why = QCoreApplication::translate(
                  "ToolList", "The count of the tool \"%1\" is not a 16-bit integer: %2")
                  .arg(shownName(name), value.toString());
    return util;
}

QString highestText(const QString &name) {
    return QCoreApplication::translate("ToolList",
                                       "The count of the tool \"%1\" is at its highest, 32767.")
        .arg(shownName(name));
}

// One tool as the engine tells names apart: the row the look-up found, if any, and the lines
// of this program that count for it.
struct Tool {
    QVariant key; // null: no row yet
    QVariant util;
    QString name; // the form of the last line counted
    int lines = 0;
};

bool exec(QSqlQuery &query, const QString &sql, QSqlError &error) {
    if (query.exec(sql))
        return true;
    error = query.lastError();
    return false;
}

// Inside the transaction: looks the names up, counts the lines in order up to the first that
// cannot count (its reason in `stop`) and writes the rows. False when the database fails.
bool countLines(QSqlDatabase &db, const ToolDialect &sql, const QStringList &lines,
                const QDateTime &now, ToolCount &result, QString &stop, QSqlError &error) {
    QStringList names = lines;
    names.removeDuplicates();
    QSqlQuery query(db);
    if (!exec(query, sql.lookUpQuery(sqlLiteral(db, QJsonArray::fromStringList(names))), error))
        return false;
    QList<Tool> tools;
    QHash<QString, qsizetype> toolOfFold, toolOfName;
    for (const QString &name : names) {
        if (!query.next()) {
            error = query.lastError();
            return false;
        }
        const QString fold = query.value(0).toString();
        if (!toolOfFold.contains(fold)) {
            toolOfFold.insert(fold, tools.size());
            tools.append({query.value(1), query.value(2), QString(), 0});
        }
        toolOfName.insert(name, toolOfFold.value(fold));
    }
    query.finish();

    for (const QString &name : lines) {
        Tool &tool = tools[toolOfName.value(name)];
        int util = tool.lines;
        if (!tool.key.isNull()) {
            const std::optional<qint16> stored = utilOf(tool.util, name, stop);
            if (!stored)
                break;
            util += *stored;
        }
        if (util >= 32767) {
            stop = highestText(name);
            break;
        }
        ++tool.lines;
        tool.name = name;
        ++result.counted;
    }

    QJsonArray updates, inserts;
    for (const Tool &tool : tools) {
        if (tool.lines == 0)
            continue;
        if (tool.key.isNull()) {
            inserts.append(QJsonObject{{"tool", tool.name}, {"util", tool.lines}});
        } else {
            const int util = roundToInt16(tool.util.toDouble()).value_or(0) + tool.lines;
            updates.append(QJsonObject{
                {"key", QJsonValue::fromVariant(tool.key)}, {"tool", tool.name}, {"util", util}});
        }
    }
    const QString date = sqlLiteral(db, toolDateText(now));
    return (updates.isEmpty() ||
            exec(query, sql.updateQuery(sqlLiteral(db, updates), date), error)) &&
           (inserts.isEmpty() ||
            exec(query, sql.insertQuery(sqlLiteral(db, inserts), date), error)) &&
           exec(query, QStringLiteral("COMMIT"), error);
}

} // namespace

QString toolNameProblem(const QString &name) {
    if (name.contains(QChar(0)))
        return QCoreApplication::translate(
                   "ToolList",
                   "The tool name \"%1\" holds a NUL character, which a tool name may not hold.")
            .arg(shownName(name));
    // Such names are a typing error in the program's head: the operator is told which line
    // to mend.
    if (name.contains(QLatin1Char('"')))
        return QCoreApplication::translate(
                   "ToolList", "The tool name \"%1\" holds a double quote (\"), which a tool "
                               "name may not hold.")
            .arg(shownName(name));
    if (const qsizetype bytes = name.toUtf8().size(); bytes > MaxToolNameBytes)
        return QCoreApplication::translate(
                   "ToolList",
                   "The tool name \"%1\" is %2 bytes long; a tool name may hold at most %3.")
            .arg(shownName(name))
            .arg(bytes)
            .arg(MaxToolNameBytes);
    return {};
}

QString toolDateText(const QDateTime &when) {
    return when.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

ToolCount countTools(const ToolDbConnection &connection, const QStringList &names,
                     const QDateTime &now, const std::function<void()> &onBusy) {
    ToolCount result;
    // The lines ahead of a name that no tool may have are counted, it and those after it not.
    QStringList lines;
    QString stop;
    for (const QString &name : names) {
        stop = toolNameProblem(name);
        if (!stop.isEmpty())
            break;
        lines << name;
    }
    QSqlDatabase db = connection.database();
    if (lines.isEmpty() || !db.isOpen()) {
        result.failure =
            lines.isEmpty()
                ? stop
                : failedText(connection,
                             QCoreApplication::translate("ToolList", "the connection was lost."));
        return result;
    }
    const ToolDialect &sql = connection.dialect();
    QSqlError error;
    if (!sql.beginCount(db, lines, connection.busyTimeoutMs(), onBusy, error)) {
        result.failure = sql.isBusy(error) ? busyText(lines.first(), connection)
                                           : failedText(connection, connection.errorText(error));
        return result;
    }
    if (countLines(db, sql, lines, now, result, stop, error)) {
        result.failure = stop;
        return result;
    }
    if (db.isOpen()) // a connection that is gone took the transaction with it
        QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
    result.counted = 0;
    result.failure = sql.isBusy(error) ? busyText(lines.first(), connection)
                                       : failedText(connection, connection.errorText(error));
    return result;
}
