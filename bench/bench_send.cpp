// Figures of the transmit path on this machine, in one run (not a test: it prints, it does not
// judge):
//   1. line turnaround of SendData against the virtual control answering at once, beside a
//      minimal blocking loop over the same kind of pseudo-terminal and control;
//   2. CPU used while a wait runs through 5 seconds of silence;
//   3. a 1 MB program on "XonXoff" against a control that drains 20 000 characters a second:
//      complete and byte for byte, overruns, the most sent after an X-off, peak memory.
#include "bench_support.h"
#include "event_loop_yield.h"
#include "qt_link_timer.h"
#include "serial_comm.h"
#include "transfer.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {

// The screen of a run nobody watches: keeps nothing, so it does not weigh on memory.
class QuietScreen : public Screen {
public:
    int boxes = 0;
    void setLabel1Caption(const QString &) override {}
    void setLabel1Visible(bool) override {}
    void setText1Text(const QString &) override {}
    void setText1Visible(bool) override {}
    void setList1Visible(bool) override {}
    void list1Clear() override {}
    void list1AddItem(const QString &) override {}
    void list1Refresh() override {}
    int list1Count() const override { return 0; }
    int list1ListIndex() const override { return -1; }
    QString list1List(int) const override { return {}; }
    void repaint() override {}
    void setMousePointer(int) override {}
    void msgBox(const QString &, BoxIcon, const QString &) override { ++boxes; }
    QString inputBox(const QString &, const QString &, const QString &) override { return {}; }
    QString showOpen(const FileDialogRequest &) override { return {}; }
    QString showSave(const FileDialogRequest &) override { return {}; }
};

struct Sender {
    Globals g;
    SerialComm comm;
    QtLinkTimer timer{g};
    EventLoopYield yield;
    QuietScreen screen;
    CmDialog dialog;
    OperationState state;
    OperationState::Run run{state};
    Link link{g, comm, timer, yield, screen, dialog, state};
    Sender(const QString &device, qint16 type) : comm(device) {
        g.ComSettings = QStringLiteral("COM1:9600,N,8,1");
        g.CncType = type;
    }
};

// A program of `lines` lines, or of at least `bytes` bytes, CR LF line ends.
QByteArray numberedProgram(int lines, qint64 bytes = 0) {
    QByteArray p;
    for (int i = 1; i <= lines || p.size() < bytes; ++i)
        p += QStringLiteral("N%1 G01 X%2.%3 Y-12.5 F300\r\n")
                 .arg(i)
                 .arg(i % 500)
                 .arg(i % 1000, 3, 10, QLatin1Char('0'))
                 .toLatin1();
    return p;
}

// What a plain program would do: write, then block in read until the go-ahead.
bool readGoAhead(int fd) {
    QByteArray got;
    char buf[256];
    for (;;) {
        const ssize_t n = ::read(fd, buf, sizeof buf);
        if (n <= 0)
            return false;
        got.append(buf, n);
        const qsizetype dle = got.indexOf('\x10');
        if (dle >= 0 && got.indexOf('7', dle) >= 0)
            return true;
    }
}

struct Rate {
    double linesPerS = -1;
    double cpuUsPerLine = -1; // of this process
};

Rate blockingLoop(const QString &device, const QList<QByteArray> &lines) {
    const int fd = ::open(qPrintable(device), O_RDWR | O_NOCTTY);
    if (fd < 0)
        return {};
    termios t{};
    tcgetattr(fd, &t);
    cfmakeraw(&t);
    tcsetattr(fd, TCSANOW, &t);
    QElapsedTimer clock;
    clock.start();
    const double cpu0 = cpuSeconds();
    bool ok = ::write(fd, "R\r", 2) == 2 && readGoAhead(fd);
    for (const QByteArray &line : lines) {
        const QByteArray out = line + '\r';
        ok = ok && ::write(fd, out.data(), out.size()) == out.size() && readGoAhead(fd);
    }
    ok = ok && ::write(fd, "\x04\r", 2) == 2 && tcdrain(fd) == 0;
    const double s = double(clock.nsecsElapsed()) / 1e9;
    const double cpu = cpuSeconds() - cpu0;
    ::close(fd);
    if (!ok)
        return {};
    return {double(lines.size()) / s, cpu * 1e6 / double(lines.size())};
}

Rate sendDataRate(const QString &device, const QString &path, int n) {
    Sender s(device, 1);
    // Like the blocking loop, no line speed: what is measured is the program's own overhead.
    s.comm.setPacePseudoTerminal(false);
    QElapsedTimer clock;
    clock.start();
    const double cpu0 = cpuSeconds();
    SendData(s.link, path);
    const double secs = double(clock.nsecsElapsed()) / 1e9;
    const double cpu = cpuSeconds() - cpu0;
    return s.screen.boxes == 0 ? Rate{n / secs, cpu * 1e6 / n} : Rate{};
}

void turnaround(const QTemporaryDir &dir) {
    const int n = 20000, rounds = 3;
    const QByteArray program = numberedProgram(n);
    const QString path = writeFile(dir.filePath(QStringLiteral("turn.tap")), program);
    const QByteArray wire = "R\r" + QByteArray(program).replace("\r\n", "\r") + "\x04\r";
    QList<QByteArray> lines = program.split('\n');
    lines.removeLast();
    for (QByteArray &l : lines)
        l.chop(1); // the CR

    VControlProcess vc, plain;
    if (!startControl(vc, {"--type", "303"}) || !startControl(plain, {"--type", "303"}))
        return;
    std::printf("1. Line turnaround, %d lines to the control \"303\" answering at once, "
                "%d rounds taken in turn\n",
                n, rounds);
    double best = 0, bestPlain = 0;
    for (int r = 1; r <= rounds; ++r) {
        const Rate send = sendDataRate(vc.device(), path, n);
        vc.waitUntil([&] { return vc.rx().size() >= r * wire.size(); }, 10000);
        const bool complete = vc.rx() == wire.repeated(r);
        const Rate loop = blockingLoop(plain.device(), lines);
        std::printf("   round %d: SendData %7.0f lines/s (%5.1f us CPU a line, %s), "
                    "blocking loop %7.0f lines/s (%5.1f us CPU a line), ratio %.2f\n",
                    r, send.linesPerS, send.cpuUsPerLine,
                    complete ? "arrived complete" : "INCOMPLETE", loop.linesPerS, loop.cpuUsPerLine,
                    send.linesPerS / loop.linesPerS);
        best = std::max(best, send.linesPerS);
        bestPlain = std::max(bestPlain, loop.linesPerS);
    }
    std::printf("   best of each: %.0f against %.0f lines/s, ratio %.2f (goal: at least 0.8)\n\n",
                best, bestPlain, best / bestPlain);
}

void silentWait(const QTemporaryDir &dir) {
    const QString path = writeFile(dir.filePath(QStringLiteral("one.tap")), "G1 X1\r\n");
    VControlProcess vc;
    if (!startControl(vc, {"--type", "303", "--silent"}))
        return;
    Sender s(vc.device(), 1);
    QElapsedTimer clock;
    clock.start();
    const double cpu0 = cpuSeconds();
    SendData(s.link, path); // "R" CR, then 5 s without an answer
    const double cpu = cpuSeconds() - cpu0;
    const double wall = double(clock.nsecsElapsed()) / 1e9;
    std::printf("2. A wait through silence (time-out at 5000 ms, %d message box)\n",
                s.screen.boxes);
    std::printf("   wall %.2f s, CPU %.3f s: %.2f%% of one core (goal: under 5%%)\n\n", wall, cpu,
                100.0 * cpu / wall);
}

struct StreamResult {
    bool complete = false;
    QString summary; // the control's own count of overruns and the most after a hold
    long rssKb = 0, hwmKb = 0;
    double seconds = 0;
};

// Sends `program` on "XonXoff" at `baud`; the port lets it out at that line speed.
StreamResult stream(const QTemporaryDir &dir, const QByteArray &program, const QStringList &args,
                    int baud) {
    StreamResult r;
    const QString path = writeFile(dir.filePath(QStringLiteral("big.LCC")), program);
    QTemporaryDir store;
    VControlProcess vc;
    if (!startControl(vc, QStringList{"--type", "XonXoff", "--dir", store.path()} + args))
        return r;
    {
        Sender s(vc.device(), 3);
        s.g.ComSettings = QStringLiteral("COM1:%1,N,8,1").arg(baud);
        // The peak is measured from here: reset it (Linux), note where it starts.
        resetPeak();
        r.rssKb = statusKiB("VmRSS");
        QElapsedTimer clock;
        clock.start();
        SendData(s.link, path);
        r.seconds = double(clock.nsecsElapsed()) / 1e9;
        r.hwmKb = statusKiB("VmHWM"); // before the log of the run is read into this process
    }
    vc.waitForEvent(QStringLiteral("STORED"), 1, 120000);
    vc.stop();
    vc.refresh();
    const QStringList exit = vc.eventTexts(QStringLiteral("EXIT"));
    r.summary = exit.isEmpty() ? QStringLiteral("no summary") : exit.last();
    const QStringList stored = QDir(store.path()).entryList(QDir::Files);
    QFile got(store.filePath(stored.value(0)));
    r.complete = stored.size() == 1 && got.open(QIODevice::ReadOnly) &&
                 got.readAll() == QByteArray(program).replace("\r\n", "\r");
    return r;
}

void paced(const QTemporaryDir &dir) {
    const QByteArray mb = numberedProgram(0, 1 << 20);
    const QStringList control{"--buffer", "4096", "--xoff-at", "3072",
                              "--xon-at", "1024", "--rate",    "20000"};
    std::printf("3. \"XonXoff\", %lld bytes, control buffer 4096, X-off at 3072, X-on at 1024, "
                "draining 20 000 characters/s (goal: most after hold at most 512 + one line "
                "of %d)\n",
                qint64(mb.size()), int(mb.indexOf('\n') + 1));
    {
        const StreamResult r = stream(dir, mb, control, 230400);
        std::printf("   at 230 400 baud (23 040 characters/s, above the drain rate):\n");
        std::printf("     %.1f s, %s; control: %s; peak memory %ld kB from %ld kB\n", r.seconds,
                    r.complete ? "arrived complete, byte for byte" : "NOT COMPLETE",
                    qPrintable(r.summary), r.hwmKb, r.rssKb);
    }
    // Four times the program, drained fast: the peak must not follow the size of the file.
    const QByteArray big = numberedProgram(0, 4 << 20);
    const StreamResult four =
        stream(dir, big, {"--buffer", QString::number(1 << 20), "--rate", "10000000"}, 4000000);
    std::printf("   %lld bytes drained fast: %.1f s, %s; peak memory %ld kB from %ld kB\n",
                qint64(big.size()), four.seconds,
                four.complete ? "arrived complete" : "NOT COMPLETE", four.hwmKb, four.rssKb);
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    useBuiltVControl();
    // Parts by number ("bench_send 1 3"); all of them without arguments.
    const QStringList parts = app.arguments().mid(1);
    const auto wanted = [&](const char *n) { return parts.isEmpty() || parts.contains(n); };
    QTemporaryDir dir;
    if (wanted("1"))
        turnaround(dir);
    if (wanted("2"))
        silentWait(dir);
    if (wanted("3"))
        paced(dir);
    return 0;
}
