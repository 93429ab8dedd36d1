// A 1 MB program sent to the virtual control "XonXoff", in turns, by the window's operation
// (SendData over the real port, clock and event loop, in this process) and by the dncctl
// program (quiet, and with its progress line on a terminal): the times, whether every byte
// arrived, and how often the progress line was drawn.
//   bench_ctl [ROUNDS] [BAUD]      defaults: 3 rounds at 4 000 000 baud
#include "bench_support.h"
#include "pty_pair.h"
#include "real_link.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <atomic>
#include <cstdio>
#include <thread>

namespace {

// The window keeps one caption, not every one it was given.
class OneCaption : public OperatorScreen {
public:
    void setLabel1Caption(const QString &t) override { last = t; }
    QString last;
};

// A control that takes everything at once, so that the line and the program set the pace.
struct Control {
    VControlProcess vc;
    QTemporaryDir store;
    Control() {
        if (!vc.start({"--type", "XonXoff", "--dir", store.path(), "--buffer", "2000000", "--rate",
                       "100000000", "--end-gap", "300"}))
            qFatal("vcontrol: %s", qPrintable(vc.errorString()));
    }
    bool arrived(const QByteArray &wire) {
        if (!vc.waitForEvent(QStringLiteral("STORED"), 1, 30000))
            return false;
        const QStringList stored = QDir(store.path()).entryList(QDir::Files);
        QFile f(store.filePath(stored.value(0)));
        return stored.size() == 1 && f.open(QIODevice::ReadOnly) && f.readAll() == wire;
    }
};

double sendData(const QString &path, int baud, const QByteArray &wire, bool *complete) {
    Control control;
    Globals g;
    OperationState state;
    RealLinkParts parts(g, state, control.vc.device());
    OneCaption screen;
    CmDialog dialog;
    Link link{g, parts.comm, parts.timer, parts.yield, screen, dialog, state};
    g.ComSettings = QStringLiteral("COM1:%1,N,8,1").arg(baud);
    g.CncType = CncXonXoff;
    QElapsedTimer clock;
    clock.start();
    {
        const OperationState::Run run(state);
        SendData(link, path);
    }
    const double s = double(clock.nsecsElapsed()) / 1e9;
    *complete = screen.boxes.isEmpty() && control.arrived(wire);
    return s;
}

struct CtlRun {
    double seconds = 0;
    bool complete = false;
    int draws = 0; // progress lines drawn
};

CtlRun dncctl(const QString &path, int baud, const QByteArray &wire, bool terminal,
              const QString &home) {
    Control control;
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_CONFIG_HOME", home);
    p.setProcessEnvironment(env);
    QStringList args{"--port",   control.vc.device(),
                     "--baud",   QString::number(baud),
                     "--parity", "N",
                     "--data",   "8",
                     "--stop",   "1",
                     "--cnc",    "XonXoff"};
    PtyPair tty;
    std::atomic<bool> done{false};
    QByteArray shown;
    std::thread reader;
    if (terminal) {
        p.setStandardErrorFile(tty.slavePath());
        // Read the terminal as it is written, as a terminal would.
        reader = std::thread([&] {
            while (!done)
                shown += tty.receive(65536, 50);
            for (QByteArray got; !(got = tty.receive(65536, 50)).isEmpty();)
                shown += got;
        });
    } else {
        args << "--quiet";
    }
    QElapsedTimer clock;
    clock.start();
    p.start(QStringLiteral(DNCCTL_PATH), args + QStringList{"send", path});
    p.waitForFinished(300000);
    CtlRun r;
    r.seconds = double(clock.nsecsElapsed()) / 1e9;
    if (terminal) {
        done = true;
        reader.join();
        r.draws = int(shown.count('\r'));
    }
    r.complete = p.exitCode() == 0 && control.arrived(wire);
    return r;
}

double startUp(const QString &home) {
    // The process alone: refused before any port is touched.
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_CONFIG_HOME", home);
    p.setProcessEnvironment(env);
    QElapsedTimer clock;
    clock.start();
    p.start(QStringLiteral(DNCCTL_PATH), {"--cnc", "XonXoff", "--port", "/dev/null", "list"});
    p.waitForFinished();
    return double(clock.nsecsElapsed()) / 1e9;
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    useBuiltVControl();
    const QStringList a = app.arguments();
    const int rounds = a.size() > 1 ? a[1].toInt() : 3;
    const int baud = a.size() > 2 ? a[2].toInt() : 4000000;

    QTemporaryDir dir;
    const QByteArray p = program(0, 1 << 20);
    // What the control keeps: the lines with their CRs; the opening X-on is no part of it.
    const QByteArray wire = QByteArray(p).replace("\r\n", "\r");
    const QString path = dir.filePath("big.LCC");
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(p) != p.size())
        qFatal("cannot write %s", qPrintable(path));
    f.close();

    std::printf("%lld bytes to \"XonXoff\" at %d baud (the port lets out %d characters/s), "
                "%d rounds taken in turn\n",
                qint64(p.size()), baud, baud / 10, rounds);
    std::printf("dncctl start-up and exit alone: %.3f s\n", startUp(dir.path()));
    for (int r = 1; r <= rounds; ++r) {
        bool complete = false;
        const double window = sendData(path, baud, wire, &complete);
        const CtlRun quiet = dncctl(path, baud, wire, false, dir.path());
        const CtlRun shown = dncctl(path, baud, wire, true, dir.path());
        std::printf("round %d: SendData %.2f s (%s) | dncctl --quiet %.2f s (%s) | dncctl with "
                    "its progress line on a terminal %.2f s (%s), %d lines drawn, %.1f a second\n",
                    r, window, complete ? "complete" : "INCOMPLETE", quiet.seconds,
                    quiet.complete ? "complete" : "INCOMPLETE", shown.seconds,
                    shown.complete ? "complete" : "INCOMPLETE", shown.draws,
                    shown.draws / shown.seconds);
    }
    return 0;
}
