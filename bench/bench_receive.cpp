// Time and peak memory to receive a program and to map a directory from the virtual control,
// at half and at full size, to show that the cost grows in proportion.
//   bench_receive                      the four figures, each measured in a process of its own
//   bench_receive receive|map SIZE     one figure: SIZE bytes of program, or SIZE entries
#include "bench_support.h"
#include "directory.h"
#include "real_link.h"
#include "transfer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

namespace {

// The port lets characters out at the line's speed on a pseudo-terminal; at a fast line the
// go-aheads cost no wire time, and what is measured is the program's own work.
const QString FastLine = QStringLiteral("COM1:4000000,N,8,1");

// The window keeps one caption, not every one it was given.
class BenchScreen : public OperatorScreen {
public:
    void setLabel1Caption(const QString &t) override { last = t; }
    QString last;
};

template <typename Run> void measure(Run run) {
    resetPeak();
    const qint64 before = statusKiB("VmRSS");
    const double cpu = cpuSeconds();
    QElapsedTimer t;
    t.start();
    const qint64 size = run();
    const double seconds = t.nsecsElapsed() / 1e9;
    std::printf("%lld %.3f %.3f %lld\n", static_cast<long long>(size), seconds, cpuSeconds() - cpu,
                static_cast<long long>(statusKiB("VmHWM") - before));
}

void receive(qint64 bytes) {
    QTemporaryDir store, out;
    QFile f(store.filePath("BIG.NC"));
    if (!f.open(QIODevice::WriteOnly))
        qFatal("cannot write the program");
    for (int n = 1; f.size() < bytes; ++n)
        f.write("N" + QByteArray::number(n) + " G1 X123.456 Y-78.901 Z0.5 F1200\r");
    f.close();
    VControlProcess vc;
    if (!startControl(vc, {"--type", "303", "--dir", store.path()}))
        std::exit(1);
    RealLink r(vc.device(), 1, 1);
    r.g.ComSettings = FastLine;
    BenchScreen screen;
    screen.saveAnswers.push_back(out.filePath("got.tap"));
    Link link{r.g, r.comm, r.timer, r.yield, screen, r.dialog, r.state};
    r.g.iniPath = out.filePath("dnc.ini");
    measure([&] {
        ReceiveFile(link);
        return QFile(out.filePath("got.tap")).size();
    });
}

void map(int entries) {
    QTemporaryDir store;
    for (int i = 0; i < entries; ++i) {
        writeFile(store.filePath(QStringLiteral("PROGRAM%1.NC").arg(i, 6, 10, QLatin1Char('0'))),
                  {});
    }
    VControlProcess vc;
    if (!startControl(vc, {"--type", "504", "--dir", store.path()}))
        std::exit(1);
    RealLink r(vc.device(), 2, 1);
    r.g.ComSettings = FastLine;
    BenchScreen screen;
    Link link{r.g, r.comm, r.timer, r.yield, screen, r.dialog, r.state};
    measure([&] {
        MapContext(link);
        return qint64(screen.list1.size());
    });
}

void row(const char *what, const QString &mode, qint64 size) {
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {mode, QString::number(size)});
    child.waitForFinished(-1);
    const QList<QByteArray> f = child.readAllStandardOutput().trimmed().split(' ');
    if (child.exitCode() != 0 || f.size() != 4)
        qFatal("%s failed: %s", what, child.readAllStandardError().constData());
    std::printf("%-12s %10s %9s s %9s s %9s KiB\n", what, f[0].constData(), f[1].constData(),
                f[2].constData(), f[3].constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    useBuiltVControl();
    const QStringList args = app.arguments();
    if (args.size() == 3) {
        const qint64 size = args[2].toLongLong();
        if (args[1] == "receive")
            receive(size);
        else
            map(int(size));
        return 0;
    }
    // The wall time waits on the control for every line; the CPU time is the program's own.
    std::printf("%-12s %10s %11s %11s %13s\n", "", "size", "wall", "cpu", "peak memory");
    row("receive half", "receive", 2500000);
    row("receive full", "receive", 5000000);
    row("map half", "map", 10000);
    row("map full", "map", 20000);
    return 0;
}
