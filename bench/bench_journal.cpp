// What a journal row costs an operation: JournalWriter::add, as a front end calls it once the
// operation has ended, timed row by row into the default SQLite file (in a temporary state
// folder) and into PostgreSQL when DNC_PG_URI names a server. A send's row is written with
// none and with 20 tools. Not a test: it prints, it does not judge.
//   scripts/lib/pg-cluster.sh run build/bench/bench_journal      (DNC_PG_DURABLE=1: fsync on)
#include "journal_writer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int Rows = 300;

JournalRow sendRow(int i, int tools) {
    JournalRow row;
    row.time = QDateTime::currentDateTimeUtc();
    row.host = QStringLiteral("shop-pc");
    row.machine = QStringLiteral("Lathe%1").arg(i % 8);
    row.device = QStringLiteral("/dev/ttyUSB0");
    row.control = QStringLiteral("303");
    row.operation = QStringLiteral("send");
    row.file = QStringLiteral("/srv/nc/O%1.tap").arg(1000 + i);
    row.bytes = 48210;
    row.lines = 2000;
    row.sha256 = QString(64, QLatin1Char('a'));
    row.outcome = QStringLiteral("done");
    row.durationMs = 5000;
    row.user = QStringLiteral("machinist");
    for (int t = 1; t <= tools; ++t)
        row.tools << QStringLiteral("drill %1.5").arg(t);
    return row;
}

void measure(const char *engine, const JournalTarget &target, int tools) {
    JournalWriter writer(target,
                         [](const QString &t) { std::fprintf(stderr, "%s\n", qPrintable(t)); });
    // The first row opens the connection and makes the tables that are missing: what a dncctl
    // run pays, once.
    QElapsedTimer first;
    first.start();
    writer.add(sendRow(0, tools));
    const double firstMs = double(first.nsecsElapsed()) / 1e6;
    QList<double> ms;
    for (int i = 1; i <= Rows; ++i) {
        QElapsedTimer clock;
        clock.start();
        writer.add(sendRow(i, tools));
        ms << double(clock.nsecsElapsed()) / 1e6;
    }
    std::sort(ms.begin(), ms.end());
    std::printf("%-10s %2d tools: first row %6.2f ms; then median %6.2f ms, 95th percentile "
                "%6.2f ms, most %6.2f ms (%d rows; %lld kept unwritten)\n",
                engine, tools, firstMs, ms[ms.size() / 2], ms[ms.size() * 95 / 100], ms.last(),
                Rows, qint64(writer.kept()));
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const JournalTarget file{dir.filePath(QStringLiteral("dnc/journal.db")), true};
    std::printf("The journal's cost per operation (goal: under 5 ms)\n");
    for (const int tools : {0, 20})
        measure("SQLite", file, tools);
    const QString server = qEnvironmentVariable("DNC_PG_URI");
    if (server.isEmpty()) {
        std::printf("PostgreSQL: no server (DNC_PG_URI unset)\n");
        return 0;
    }
    for (const int tools : {0, 20})
        measure("PostgreSQL", {server, false}, tools);
    return 0;
}
