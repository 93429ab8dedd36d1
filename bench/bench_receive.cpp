// Time and peak memory to receive a program and to map a directory from the virtual control,
// at half and at full size, to show that the cost grows in proportion; then the same receive
// through the window's own screen and widgets (offscreen) beside it through a recording screen.
//   bench_receive                            all figures, each measured in a process of its own
//   bench_receive receive|window|map SIZE    one figure: SIZE bytes of program, or SIZE entries
#include "bench_support.h"
#include "directory.h"
#include "dnc_window.h"
#include "real_link.h"
#include "transfer.h"
#include "vcontrol_process.h"
#include "window_screen.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <sys/resource.h>

namespace {

// The port lets characters out at the line's speed on a pseudo-terminal; at a fast line the
// go-aheads cost no wire time, and what is measured is the program's own work.
const QString kFastLine = QStringLiteral("COM1:4000000,N,8,1");

// The window keeps one caption, not every one it was given.
class BenchScreen : public OperatorScreen {
public:
    void setLabel1Caption(const QString &t) override { last = t; }
    QString last;
};

// The window's screen over the window's real widgets; the operator names the file at once.
class SavingWindowScreen : public WindowScreen {
public:
    using WindowScreen::WindowScreen;
    QString savePath;
    QString showSave(const FileDialogRequest &) override { return savePath; }
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

void startControl(VControlProcess &vc, const char *type, const QTemporaryDir &store) {
    if (!vc.start({"--type", type, "--dir", store.path()}))
        qFatal("%s", qPrintable(vc.errorString()));
}

void receive(qint64 bytes, bool window) {
    QTemporaryDir store, out;
    QFile f(store.filePath("BIG.NC"));
    if (!f.open(QIODevice::WriteOnly))
        qFatal("cannot write the program");
    for (int n = 1; f.size() < bytes; ++n)
        f.write("N" + QByteArray::number(n) + " G1 X123.456 Y-78.901 Z0.5 F1200\r");
    f.close();
    VControlProcess vc;
    startControl(vc, "303", store);
    RealLink r(vc.device(), 1, 1);
    r.g.iniPath = out.filePath("dnc.ini");
    const QString saved = out.filePath("got.tap");
    std::unique_ptr<DncWindow> w;
    std::unique_ptr<Screen> screen;
    if (window) {
        w = std::make_unique<DncWindow>(r.g, r.state, r.comm, r.timer, r.yield, QString());
        w->show();
        auto s = std::make_unique<SavingWindowScreen>(w.get(), w->Label1, w->Text1, w->List1);
        s->savePath = saved;
        screen = std::move(s);
    } else {
        auto s = std::make_unique<BenchScreen>();
        s->saveAnswers.push_back(saved);
        screen = std::move(s);
    }
    r.g.ComSettings = kFastLine;
    Link link{r.g, r.comm, r.timer, r.yield, *screen, r.dialog, r.state};
    measure([&] {
        ReceiveFile(link);
        return QFile(saved).size();
    });
}

void map(int entries) {
    QTemporaryDir store;
    for (int i = 0; i < entries; ++i) {
        QFile f(store.filePath(QStringLiteral("PROGRAM%1.NC").arg(i, 6, 10, QLatin1Char('0'))));
        if (!f.open(QIODevice::WriteOnly))
            qFatal("cannot write a program");
    }
    VControlProcess vc;
    startControl(vc, "504", store);
    RealLink r(vc.device(), 2, 1);
    r.g.ComSettings = kFastLine;
    BenchScreen screen;
    Link link{r.g, r.comm, r.timer, r.yield, screen, r.dialog, r.state};
    measure([&] {
        MapContext(link);
        return qint64(screen.list1.size());
    });
}

struct Figures {
    QByteArray size, wall, cpu, peak;
};

Figures run(const char *what, const QString &mode, qint64 size) {
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {mode, QString::number(size)});
    child.waitForFinished(-1);
    const QList<QByteArray> f = child.readAllStandardOutput().trimmed().split(' ');
    if (child.exitCode() != 0 || f.size() != 4)
        qFatal("%s failed: %s", what, child.readAllStandardError().constData());
    return {f[0], f[1], f[2], f[3]};
}

void row(const char *what, const QString &mode, qint64 size) {
    const Figures f = run(what, mode, size);
    std::printf("%-12s %10s %9s s %9s s %9s KiB\n", what, f.size.constData(), f.wall.constData(),
                f.cpu.constData(), f.peak.constData());
    std::fflush(stdout);
}

// Rounds taken in turn, so that a change in the machine's load falls on both alike.
void windowAgainstRecording(qint64 size, int rounds) {
    std::printf("\nReceiving %lld bytes through the window's widgets (offscreen) and through a "
                "recording screen, %d rounds taken in turn (goal: at most 1.25)\n",
                static_cast<long long>(size), rounds);
    QList<double> recording, window, recordingCpu, windowCpu;
    for (int i = 1; i <= rounds; ++i) {
        const Figures a = run("receive", QStringLiteral("receive"), size);
        const Figures b = run("window", QStringLiteral("window"), size);
        if (a.size != b.size)
            qFatal("the two receptions saved %s and %s bytes", a.size.constData(),
                   b.size.constData());
        recording << a.wall.toDouble();
        window << b.wall.toDouble();
        recordingCpu << a.cpu.toDouble();
        windowCpu << b.cpu.toDouble();
        std::printf("  round %d: recording screen %s s, window %s s (CPU %s s, %s s)\n", i,
                    a.wall.constData(), b.wall.constData(), a.cpu.constData(), b.cpu.constData());
        std::fflush(stdout);
    }
    std::printf("  medians: recording screen %.3f s, window %.3f s; window / recording %.2f\n",
                median(recording), median(window), median(window) / median(recording));
    // The CPU time of the program itself follows the machine's load less than the wall time.
    std::printf("  CPU medians: recording screen %.3f s, window %.3f s; window / recording %.2f\n",
                median(recordingCpu), median(windowCpu), median(windowCpu) / median(recordingCpu));
}

} // namespace

int main(int argc, char **argv) {
    // The window is measured as it draws, without a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    useBuiltVControl();
    const QStringList args = app.arguments();
    if (args.size() == 3) {
        const qint64 size = args[2].toLongLong();
        if (args[1] == "receive" || args[1] == "window")
            receive(size, args[1] == "window");
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
    windowAgainstRecording(5000000, 5);
    return 0;
}
