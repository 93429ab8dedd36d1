#include "tool_count.h"

#include "number_text.h"

#include <QSqlError>
#include <QSqlQuery>
#include <optional>

namespace {

QString failedText(const QString &name, const QSqlQuery &query) {
    return QStringLiteral("The tool \"%1\" cannot be counted: %2")
        .arg(name, query.lastError().text());
}

// util read as a 16-bit integer; a reason when it cannot be.
std::optional<qint16> utilOf(const QVariant &value, const QString &name, QString &why) {
    if (value.isNull()) {
        why = QStringLiteral("The tool \"%1\" has no count (util is empty).").arg(name);
        return std::nullopt;
    }
    bool ok = false;
    const double number = value.toDouble(&ok);
    const std::optional<qint16> util = ok ? roundToInt16(number) : std::nullopt;
    if (!util)
        why = QStringLiteral("The count of the tool \"%1\" is not a 16-bit integer: %2")
                  .arg(name, value.toString());
    return util;
}

} // namespace

QString toolDateText(const QDateTime &when) {
    return when.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

ToolCount countTools(const QSqlDatabase &db, const QStringList &names, const QDateTime &now) {
    ToolCount result;
    const QString date = toolDateText(now);
    for (const QString &name : names) {
        // A tool name with a double quote is refused: such names are a typing error in the
        // program's head, and the operator is told which line to mend.
        if (name.contains(QLatin1Char('"'))) {
            result.failure =
                QStringLiteral("The tool name \"%1\" holds a double quote (\"), which a tool "
                               "name may not hold.")
                    .arg(name);
            return result;
        }
        QSqlQuery find(db);
        find.prepare(QStringLiteral("SELECT rowid, util FROM tool_list WHERE tool = ? COLLATE "
                                    "NOCASE ORDER BY rowid LIMIT 1"));
        find.addBindValue(name);
        if (!find.exec()) {
            result.failure = failedText(name, find);
            return result;
        }
        QSqlQuery write(db);
        if (!find.next()) {
            write.prepare(
                QStringLiteral("INSERT INTO tool_list (tool, util, Date) VALUES (?, 1, ?)"));
            write.addBindValue(name);
            write.addBindValue(date);
        } else {
            const QVariant rowid = find.value(0);
            std::optional<qint16> util = utilOf(find.value(1), name, result.failure);
            if (!util)
                return result;
            if (*util == 32767) {
                result.failure =
                    QStringLiteral("The count of the tool \"%1\" is at its highest, 32767.")
                        .arg(name);
                return result;
            }
            find.finish();
            write.prepare(QStringLiteral(
                "UPDATE tool_list SET tool = ?, util = ?, Date = ? WHERE rowid = ?"));
            write.addBindValue(name);
            write.addBindValue(int(*util) + 1);
            write.addBindValue(date);
            write.addBindValue(rowid);
        }
        find.finish();
        if (!write.exec()) {
            result.failure = failedText(name, write);
            return result;
        }
        ++result.counted;
    }
    return result;
}
