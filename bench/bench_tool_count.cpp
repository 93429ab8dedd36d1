// Tool counts per second, through the path a send takes (UpdateToolList: a connection of its
// own, the scan, the count), with 1 and with 8 stations at once, and how long one program of 100
// tool lines waits for its count: on the PostgreSQL server named by DNC_PG_URI, and on one
// SQLite file.
//
//   DNC_PG_DURABLE=1 scripts/lib/pg-cluster.sh run build/bench/bench_tool_count [programs]
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
#include <algorithm>
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

struct Figure {
    double rate = 0;    // tool lines counted per second
    int busySends = 0;  // sends stopped by the busy time-out
    bool exact = false; // one row per name, and every line counted that was not stopped
};

Figure measure(const QString &database, const QString &folder, int stations, int programs) {
    if (!run(database, QStringLiteral("DELETE FROM tool_list")))
        qFatal("cannot empty tool_list of %s", qPrintable(toolDbDisplayName(database)));
    QSet<int> used;
    const QStringList files = writePrograms(folder, stations, programs, used);
    std::atomic<int> busy = 0;
    std::atomic<int> otherFailures = 0;
    QElapsedTimer clock;
    clock.start();
    {
        std::vector<std::jthread> threads;
        for (int k = 0; k < stations; ++k)
            threads.emplace_back([&, k] {
                Globals g;
                g.DatabasePath = database;
                RecordingScreen screen;
                ToolListUpdater updater(g, screen); // the stations' own busy time-out
                for (int j = 0; j < programs; ++j)
                    updater.UpdateToolList(files[k * programs + j]);
                for (const auto &box : screen.boxes) {
                    if (box.text.contains(QLatin1String(" is busy "))) {
                        ++busy;
                    } else {
                        ++otherFailures;
                        std::fprintf(stderr, "station %d: %s\n", k, qPrintable(box.text));
                    }
                }
            });
    }
    const double seconds = clock.nsecsElapsed() / 1e9;
    const ToolDbConnection connection(QStringLiteral("bench"), database, 10000);
    QSqlQuery query(connection.database());
    if (!query.exec(QStringLiteral("SELECT count(*), count(DISTINCT lower(tool)), "
                                   "coalesce(sum(util), 0) FROM tool_list")) ||
        !query.next())
        qFatal("cannot read tool_list of %s", qPrintable(toolDbDisplayName(database)));
    const int counted = query.value(2).toInt();
    const int sent = stations * programs * LinesPerProgram;
    Figure figure;
    figure.rate = counted / seconds;
    figure.busySends = busy;
    figure.exact = otherFailures == 0 && query.value(0) == query.value(1) &&
                   (busy > 0 ? counted < sent : counted == sent && query.value(0) == used.size());
    return figure;
}

// Milliseconds that UpdateToolList takes for one program of 100 tool lines, the median of
// `runs`: the first run makes the rows, the others count them up.
double programMs(const QString &database, const QString &folder, int runs) {
    if (!run(database, QStringLiteral("DELETE FROM tool_list")))
        qFatal("cannot empty tool_list of %s", qPrintable(toolDbDisplayName(database)));
    QByteArray text = "(PART)\r\n";
    for (int m = 0; m < 100; ++m)
        text += "/T" + QByteArray::number(m + 1) + " tool " + QByteArray::number(m) + "\r\n";
    text += "%\r\nM30\r\n";
    QFile file(folder + QStringLiteral("/hundred.tap"));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    file.close();
    Globals g;
    g.DatabasePath = database;
    RecordingScreen screen;
    ToolListUpdater updater(g, screen);
    QList<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        updater.UpdateToolList(file.fileName());
        times << clock.nsecsElapsed() / 1e6;
    }
    if (!screen.boxes.isEmpty())
        qFatal("the count failed: %s", qPrintable(screen.boxes.first().text));
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
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
        << " tool lines per station, " << Names << " names, a connection per send, busy time-out "
        << waitText(DefaultBusyTimeoutMs) << ")\n";
    for (const auto &[engine, database] : databases)
        out << QStringLiteral("%1 one program of 100 tool lines: %2 ms (median of 21)")
                   .arg(engine + u',', -12)
                   .arg(programMs(database, folder.path(), 21), 0, 'f', 1)
            << Qt::endl;
    for (const auto &[engine, database] : databases)
        for (const int stations : {1, 8}) {
            const Figure f = measure(database, folder.path(), stations, programs);
            out << QStringLiteral("%1 %2 station(s): %3 counts/s")
                       .arg(engine + u',', -12)
                       .arg(stations)
                       .arg(f.rate, 0, 'f', 0);
            if (f.busySends > 0)
                out << QStringLiteral(", %1 of %2 sends stopped by the busy time-out")
                           .arg(f.busySends)
                           .arg(stations * programs);
            out << (f.exact ? "" : "  WRONG COUNTS") << Qt::endl;
        }
    return 0;
}
