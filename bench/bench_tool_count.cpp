// Tool counts per second, through the path a send takes (UpdateToolList: a connection of its
// own, the scan, one transaction per tool line), with 1 and with 8 stations at once: on the
// PostgreSQL server named by DNC_PG_URI, and on one SQLite file.
//
//   scripts/lib/pg-cluster.sh run build/bench/bench_tool_count [programs per station]
//
// Each station is a thread with its own connections; all count the same 50 tool names.
// Afterwards the table must hold exactly what was sent, or the figures are not printed.

#include "fake_link.h"
#include "tool_db.h"
#include "update_tool_list.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSet>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <thread>

namespace {

constexpr int Names = 50;
constexpr int LinesPerProgram = 5;

QString toolName(int i) {
    return QStringLiteral("tool %1").arg(i, 2, 10, QChar('0'));
}

// Programs of station k: five tool lines each, spread over the 50 names.
QStringList writePrograms(const QString &folder, int stations, int programs, QSet<int> &used) {
    QStringList files;
    for (int k = 0; k < stations; ++k)
        for (int j = 0; j < programs; ++j) {
            QByteArray text = "(PART)\r\n";
            for (int m = 0; m < LinesPerProgram; ++m) {
                const int name = (k * 7 + j * 3 + m * 11) % Names;
                used.insert(name);
                text += "/T" + QByteArray::number(m + 1) + ' ' + toolName(name).toLatin1() + "\r\n";
            }
            text += "%\r\nG0 X0\r\nM30\r\n";
            QFile file(QStringLiteral("%1/s%2p%3.tap").arg(folder).arg(k).arg(j));
            if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
                qFatal("cannot write %s", qPrintable(file.fileName()));
            files << file.fileName();
        }
    return files;
}

bool run(const QString &database, const QString &sql) {
    const ToolDbConnection connection(QStringLiteral("bench"), database, 10000);
    QSqlQuery query(connection.database());
    return connection.isOpen() && query.exec(sql);
}

int totalUtil(const QString &database, int rows) {
    const ToolDbConnection connection(QStringLiteral("bench"), database, 10000);
    QSqlQuery query(connection.database());
    if (!query.exec(QStringLiteral("SELECT count(*), coalesce(sum(util), 0) FROM tool_list")) ||
        !query.next())
        return -1;
    // One row per name, or the figure means nothing.
    return query.value(0).toInt() == rows ? query.value(1).toInt() : -1;
}

// Counts per second for `stations` at once; -1 when the table does not hold what was sent.
double measure(const QString &database, const QString &folder, int stations, int programs) {
    if (!run(database, QStringLiteral("DELETE FROM tool_list")))
        qFatal("cannot empty tool_list of %s", qPrintable(toolDbDisplayName(database)));
    QSet<int> used;
    const QStringList files = writePrograms(folder, stations, programs, used);
    std::atomic<int> failures = 0;
    QElapsedTimer clock;
    clock.start();
    {
        std::vector<std::jthread> threads;
        for (int k = 0; k < stations; ++k)
            threads.emplace_back([&, k] {
                Globals g;
                g.DatabasePath = database;
                RecordingScreen screen;
                ToolListUpdater updater(g, screen, 10000);
                for (int j = 0; j < programs; ++j)
                    updater.UpdateToolList(files[k * programs + j]);
                failures += int(screen.boxes.size());
                for (const auto &box : screen.boxes)
                    std::fprintf(stderr, "station %d: %s\n", k, qPrintable(box.text));
            });
    }
    const double seconds = clock.nsecsElapsed() / 1e9;
    const int counts = stations * programs * LinesPerProgram;
    if (failures != 0 || totalUtil(database, int(used.size())) != counts)
        return -1;
    return counts / seconds;
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    const int programs = argc > 1 ? std::max(1, atoi(argv[1])) : 100;
    QTemporaryDir folder;
    const QString sqlite = folder.filePath(QStringLiteral("tools.db"));
    {
        QFile file(sqlite);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot make %s", qPrintable(sqlite));
    }
    run(sqlite, QStringLiteral("CREATE TABLE tool_list (tool TEXT, util SMALLINT, Date DATETIME)"));
    QList<std::pair<QString, QString>> databases{{QStringLiteral("SQLite file"), sqlite}};
    const QString server = qEnvironmentVariable("DNC_PG_URI");
    if (!server.isEmpty()) {
        run(server, QStringLiteral("DROP TABLE IF EXISTS tool_list"));
        QFile schema(QStringLiteral(DNC_TOOL_PG_SCHEMA));
        if (!schema.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", DNC_TOOL_PG_SCHEMA);
        const QString sql = QString::fromUtf8(schema.readAll()).remove(QRegularExpression("--.*"));
        for (const QString &statement : sql.split(u';'))
            if (!statement.trimmed().isEmpty() && !run(server, statement))
                qFatal("the schema does not run on %s", qPrintable(toolDbDisplayName(server)));
        databases.prepend({QStringLiteral("PostgreSQL"), server});
    } else {
        std::fprintf(stderr, "DNC_PG_URI is unset: SQLite only (run it under pg-cluster.sh)\n");
    }

    QTextStream out(stdout);
    out << "Tool counts per second (" << programs << " programs of " << LinesPerProgram
        << " tool lines per station, " << Names << " names, a connection per send)\n";
    for (const auto &[engine, database] : databases)
        for (const int stations : {1, 8}) {
            const double rate = measure(database, folder.path(), stations, programs);
            out << QStringLiteral("%1, %2 station(s): ").arg(engine, -12).arg(stations)
                << (rate < 0 ? QStringLiteral("WRONG COUNTS") : QString::number(rate, 'f', 0))
                << (rate < 0 ? "" : " counts/s") << Qt::endl;
        }
    return 0;
}
