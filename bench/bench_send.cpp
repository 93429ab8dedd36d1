// Figures of the send path as the program ships: its port, clock and yield, with the port set up
// as the program sets it up (on a pseudo-terminal it lets characters out at the configured baud
// rate, as a line would). Not a test: it prints, it does not judge.
//   1. turnaround: SendData and a raw blocking loop (write the line and CR, block until DLE "7")
//      take turns for 5 rounds against the same control "303", on a pseudo-terminal at the
//      fastest speed one takes; medians and their ratio;
//   2. line capacity: SendData on "303" and "504" at 9600 and 115 200 baud, against a control
//      that reads and answers at that speed, as the far end of a cable would: the time the line
//      needs for every line, its CR and the two-character answer, against the time it took;
//   3. CPU and wake-ups of a wait through 5 seconds of silence;
//   4. "XonXoff", 1 MB, against a control that takes the characters at the line's speed and
//      drains 20 000 a second: complete, overruns, the most characters that reached it after an
//      X-off, peak memory; then 4 MB drained fast, for the memory.
// "bench_send 1 4" runs parts 1 and 4; no argument runs all.
#include "bench_support.h"
#include "journal_writer.h"
#include "real_link_parts.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

namespace {

// The fastest speed a pseudo-terminal takes: QSerialPort's baud rate is a 32-bit number, and
// Linux keeps any such speed on one. Pacing then costs nothing, and what is measured is the
// program's own turnaround.
constexpr int FastestBaud = 2147483647;
constexpr int Rounds = 5;

// The parts the window wires together, wired the same way.
struct Sender {
    Globals g;
    OperationState state;
    RealLinkParts parts;
    QuietScreen screen;
    CmDialog dialog;
    OperationState::Run run{state};
    Link link{g, parts.comm, parts.timer, parts.yield, screen, dialog, state};
    Sender(const QString &device, qint16 type, int baud) : parts(g, state, device) {
        g.ComSettings = QStringLiteral("COM1:%1,N,8,1").arg(baud);
        g.CncType = type;
    }
};

long wakeUps() {
    rusage u{};
    getrusage(RUSAGE_THREAD, &u);
    return u.ru_nvcsw;
}

QList<QByteArray> linesOf(const QByteArray &program) {
    QList<QByteArray> lines = program.split('\n');
    lines.removeLast();
    for (QByteArray &l : lines)
        l.chop(1); // the CR
    return lines;
}

// What a control "303" receives of the program: "R" CR, the lines with CR, EOT CR.
QByteArray wireOf(const QByteArray &program) {
    return "R\r" + QByteArray(program).replace("\r\n", "\r") + "\x04\r";
}

// The control has received `bytes` more since `from`, and they are `expected`.
bool arrived(VControlProcess &vc, qsizetype from, const QByteArray &expected) {
    vc.waitUntil([&] { return vc.rx().size() >= from + expected.size(); }, 10000);
    return vc.rx().mid(from) == expected;
}

struct Run {
    double seconds = -1; // -1: it failed
    double cpu = 0;      // seconds of this process's CPU
};

// With DNC_BENCH_JOURNAL naming a database, each send's journal row is written as the front
// ends write it, and its time is counted with the send's. Made in main, gone before the
// application is.
std::unique_ptr<JournalWriter> journal;

// SendData of the file; it failed when it showed a box (a time-out).
Run sendRun(const QString &device, qint16 type, int baud, const QString &path) {
    Sender s(device, type, baud);
    QElapsedTimer clock;
    clock.start();
    const double cpu = cpuSeconds();
    SendData(s.link, path);
    if (journal)
        journal->add(journalRow(s.link.outcome, journalContext(s.g, device), s.g));
    const Run r{double(clock.nsecsElapsed()) / 1e9, cpuSeconds() - cpu};
    return s.screen.boxes == 0 ? r : Run{};
}

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

// The same dialogue as a plain program would write it.
Run rawLoopRun(const QString &device, const QList<QByteArray> &lines) {
    const int fd = ::open(qPrintable(device), O_RDWR | O_NOCTTY);
    if (fd < 0)
        return {};
    termios t{};
    tcgetattr(fd, &t);
    cfmakeraw(&t);
    tcsetattr(fd, TCSANOW, &t);
    QElapsedTimer clock;
    clock.start();
    const double cpu = cpuSeconds();
    bool ok = ::write(fd, "R\r", 2) == 2 && readGoAhead(fd);
    for (const QByteArray &line : lines) {
        const QByteArray out = line + '\r';
        ok = ok && ::write(fd, out.data(), size_t(out.size())) == out.size() && readGoAhead(fd);
    }
    ok = ok && ::write(fd, "\x04\r", 2) == 2 && tcdrain(fd) == 0;
    const Run r{double(clock.nsecsElapsed()) / 1e9, cpuSeconds() - cpu};
    ::close(fd);
    return ok ? r : Run{};
}

struct Summary {
    QList<std::pair<QString, QString>> rows; // what, figure
    void add(const QString &what, const QString &figure) { rows.append({what, figure}); }
};

void turnaround(const QTemporaryDir &dir, Summary &summary) {
    // Each round takes turns in short stretches, so that both sides see the same load of the
    // machine: 10 programs of 2000 lines each way.
    const int n = 2000, turns = 10;
    const QByteArray text = program(n);
    const QString path = writeFile(dir.filePath(QStringLiteral("turn.tap")), text);
    const QByteArray wire = wireOf(text);
    const QList<QByteArray> lines = linesOf(text);

    VControlProcess vc;
    if (!startControl(vc, {"--type", "303"}))
        return;
    std::printf("1. Turnaround: %d lines to the control \"303\" answering at once, %d baud; "
                "in each round SendData and the raw loop take %d turns of %d lines\n",
                n * turns, FastestBaud, turns, n);
    QList<double> program, raw;
    for (int r = 1; r <= Rounds; ++r) {
        Run s{0, 0}, l{0, 0};
        bool complete = true;
        for (int t = 0; t < turns && complete; ++t) {
            qsizetype from = vc.rx().size();
            const Run one = sendRun(vc.device(), 1, FastestBaud, path);
            complete = one.seconds > 0 && arrived(vc, from, wire);
            from = vc.rx().size();
            const Run other = rawLoopRun(vc.device(), lines);
            complete = complete && other.seconds > 0 && arrived(vc, from, wire);
            s = {s.seconds + one.seconds, s.cpu + one.cpu};
            l = {l.seconds + other.seconds, l.cpu + other.cpu};
        }
        const int all = n * turns;
        std::printf("   round %d: SendData %7.0f lines/s (%5.1f us CPU a line), raw loop %7.0f "
                    "lines/s (%5.1f us CPU a line)%s\n",
                    r, all / s.seconds, s.cpu * 1e6 / all, all / l.seconds, l.cpu * 1e6 / all,
                    complete ? "" : " NOT COMPLETE");
        if (complete) {
            program << all / s.seconds;
            raw << all / l.seconds;
        }
    }
    const double ratio = median(program) / median(raw);
    std::printf("   medians: SendData %.0f, raw loop %.0f lines/s; ratio %.2f "
                "(goal: at least 0.8)\n\n",
                median(program), median(raw), ratio);
    summary.add(QStringLiteral("turnaround at %1 baud, SendData / raw loop (medians of %2)")
                    .arg(FastestBaud)
                    .arg(Rounds),
                QStringLiteral("%1 / %2 lines/s = %3")
                    .arg(median(program), 0, 'f', 0)
                    .arg(median(raw), 0, 'f', 0)
                    .arg(ratio, 0, 'f', 2));
}

void capacity(const QTemporaryDir &dir, Summary &summary) {
    std::printf("2. Line capacity: the time the line needs for every character each way (the "
                "line, its CR, the answer; \"R\" CR and its answer, EOT CR), 8N1, against the "
                "time SendData takes (goal: at least 0.97 at 9600, 0.9 at 115 200)\n");
    const struct { int baud, lines; } speeds[] = {{9600, 100}, {115200, 1000}};
    for (const auto &speed : speeds) {
        const QByteArray text = program(speed.lines);
        const QString path = writeFile(dir.filePath(QStringLiteral("cap.tap")), text);
        qint64 characters = 2 + 2 + 2; // "R" CR and its answer, EOT CR
        for (const QByteArray &l : linesOf(text))
            characters += l.size() + 1 + 2;
        const double needs = double(characters) * 10 / speed.baud;
        for (const qint16 type : {1, 2}) {
            VControlProcess vc;
            // The control takes the line and lets its answer out at the line's speed.
            if (!startControl(vc, {"--type", type == 1 ? "303" : "504", "--baud",
                                   QString::number(speed.baud), "--realtime"}))
                return;
            QList<double> ratios;
            QString each;
            for (int r = 1; r <= 3; ++r) {
                const qsizetype from = vc.rx().size();
                const double s = sendRun(vc.device(), type, speed.baud, path).seconds;
                const bool ok = s > 0 && arrived(vc, from, wireOf(text));
                each += ok ? QStringLiteral(" %1").arg(needs / s, 0, 'f', 3)
                           : QStringLiteral(" FAILED");
                if (ok)
                    ratios << needs / s;
            }
            const QString what = QStringLiteral("line capacity at %1 baud, \"%2\" (median of 3)")
                                     .arg(speed.baud)
                                     .arg(type == 1 ? "303" : "504");
            std::printf("   %d baud, \"%s\", %d lines, the line needs %.2f s: rounds%s, "
                        "median %.3f\n",
                        speed.baud, type == 1 ? "303" : "504", speed.lines, needs, qPrintable(each),
                        median(ratios));
            summary.add(what, QString::number(median(ratios), 'f', 3));
        }
    }
    std::printf("\n");
}

void silentWait(const QTemporaryDir &dir, Summary &summary) {
    const QString path = writeFile(dir.filePath(QStringLiteral("one.tap")), "G1 X1\r\n");
    VControlProcess vc;
    if (!startControl(vc, {"--type", "303", "--silent"}))
        return;
    Sender s(vc.device(), 1, 9600);
    QElapsedTimer clock;
    clock.start();
    const double cpu0 = cpuSeconds(RUSAGE_THREAD);
    const long wakes0 = wakeUps();
    SendData(s.link, path); // "R" CR, then 5 s without an answer
    const double cpu = cpuSeconds(RUSAGE_THREAD) - cpu0;
    const long wakes = wakeUps() - wakes0;
    const double wall = double(clock.nsecsElapsed()) / 1e9;
    std::printf("3. A wait through silence (time-out at 5000 ms, %d message box)\n",
                s.screen.boxes);
    std::printf("   wall %.2f s, CPU %.3f s: %.2f%% of one core (goal: under 5%%); "
                "%ld wake-ups\n\n",
                wall, cpu, 100.0 * cpu / wall, wakes);
    summary.add(QStringLiteral("silent wait of 5 s: CPU, wake-ups"),
                QStringLiteral("%1% of a core, %2").arg(100.0 * cpu / wall, 0, 'f', 2).arg(wakes));
}

struct StreamResult {
    bool complete = false;
    QString summary; // the control's own count of overruns and the most after a hold
    int holds = 0;
    double medianAfterHold = 0;
    // Handed to the port by the program after the X-off reached it, of each X-off: all, and
    // beyond the line in progress.
    QList<double> writtenAfter, beyondLine;
    QList<double> onLine; // on the line when the X-off went out, as the control counts it
    long rssKb = 0, hwmKb = 0;
    double seconds = 0;
};

// Sends `text` on "XonXoff" at `baud`.
StreamResult stream(const QTemporaryDir &dir, const QByteArray &text, const QStringList &args,
                    int baud) {
    StreamResult r;
    const QString path = writeFile(dir.filePath(QStringLiteral("big.LCC")), text);
    QTemporaryDir store;
    VControlProcess vc;
    if (!startControl(vc, QStringList{"--type", "XonXoff", "--dir", store.path()} + args))
        return r;
    {
        Sender s(vc.device(), 3, baud);
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
    // Of each X-off: "<n> after hold, fill <m>, written after <w>, beyond the line <b>".
    QList<double> afterHold;
    for (const QString &xon : vc.eventTexts(QStringLiteral("XON"))) {
        afterHold << xon.section(' ', 0, 0).toDouble();
        r.writtenAfter << xon.section(' ', -5, -5).remove(',').toDouble();
        r.beyondLine << xon.section(' ', -1).toDouble();
        r.onLine << afterHold.last() - r.writtenAfter.last();
    }
    r.holds = int(afterHold.size());
    r.medianAfterHold = median(afterHold);
    const QStringList stored = QDir(store.path()).entryList(QDir::Files);
    QFile got(store.filePath(stored.value(0)));
    r.complete = stored.size() == 1 && got.open(QIODevice::ReadOnly) &&
                 got.readAll() == QByteArray(text).replace("\r\n", "\r");
    return r;
}

void paced(const QTemporaryDir &dir, Summary &summary) {
    const QByteArray mb = program(0, 1 << 20);
    // The longest line: any may be the one in progress when an X-off comes.
    int line = 0;
    for (const QByteArray &l : linesOf(mb))
        line = std::max(line, int(l.size()) + 1);
    const QStringList control{"--buffer", "4096",  "--xoff-at", "3072",   "--xon-at",  "1024",
                              "--rate",   "20000", "--baud",    "230400", "--realtime"};
    std::printf(
        "4. \"XonXoff\" at 230 400 baud (23 040 characters/s), %lld bytes; the control "
        "takes them at that speed into a buffer of 4096, X-off at 3072, X-on at 1024, "
        "drained at 20 000 characters/s (goal: at most 512 in flight + the longest line, %d, "
        "reach it after an X-off)\n",
        qint64(mb.size()), line);
    const StreamResult r = stream(dir, mb, control, 230400);
    std::printf("   %.1f s, %s; control: %s; after each of %d X-offs a median of %.0f; "
                "peak memory %ld kB from %ld kB\n",
                r.seconds, r.complete ? "arrived complete, byte for byte" : "NOT COMPLETE",
                qPrintable(r.summary), r.holds, r.medianAfterHold, r.hwmKb, r.rssKb);
    const auto most = [](const QList<double> &v) {
        return v.isEmpty() ? 0.0 : *std::max_element(v.begin(), v.end());
    };
    std::printf("   on the line when the X-off went out: most %.0f, median %.0f (the program's "
                "bound: 512)\n",
                most(r.onLine), median(r.onLine));
    std::printf("   handed to the port after the X-off reached the program's driver: most %.0f, "
                "median %.0f; beyond the line in progress: most %.0f, median %.0f (goal: 0)\n",
                most(r.writtenAfter), median(r.writtenAfter), most(r.beyondLine),
                median(r.beyondLine));
    summary.add(QStringLiteral("XonXoff at 230 400 baud: characters on the line after an X-off, "
                               "most (median)"),
                QStringLiteral("%1 (%2)%3")
                    .arg(r.summary.section(QStringLiteral("most after hold "), 1))
                    .arg(r.medianAfterHold, 0, 'f', 0)
                    .arg(r.complete ? QString() : QStringLiteral(" NOT COMPLETE")));
    summary.add(QStringLiteral("XonXoff: handed to the port after the X-off reached it, beyond "
                               "the line in progress, most"),
                QString::number(most(r.beyondLine), 'f', 0));
    // Four times the program, drained fast: the peak must not follow the size of the file.
    const QByteArray big = program(0, 4 << 20);
    const StreamResult four =
        stream(dir, big, {"--buffer", QString::number(1 << 20), "--rate", "10000000"}, 4000000);
    std::printf("   %lld bytes drained fast: %.1f s, %s; peak memory %ld kB from %ld kB\n\n",
                qint64(big.size()), four.seconds,
                four.complete ? "arrived complete" : "NOT COMPLETE", four.hwmKb, four.rssKb);
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    useBuiltVControl();
    if (const QString name = qEnvironmentVariable("DNC_BENCH_JOURNAL"); !name.isEmpty())
        journal = std::make_unique<JournalWriter>(
            JournalTarget{name, !name.startsWith(QLatin1String("postgres"))},
            [](const QString &text) { std::fprintf(stderr, "%s\n", qPrintable(text)); });
    const QStringList parts = app.arguments().mid(1);
    const auto wanted = [&](const char *n) { return parts.isEmpty() || parts.contains(n); };
    QTemporaryDir dir;
    Summary summary;
    if (wanted("1"))
        turnaround(dir, summary);
    if (wanted("2"))
        capacity(dir, summary);
    if (wanted("3"))
        silentWait(dir, summary);
    if (wanted("4"))
        paced(dir, summary);
    std::printf("Summary\n");
    for (const auto &[what, figure] : summary.rows)
        std::printf("   %-78s %s\n", qPrintable(what), qPrintable(figure));
    if (journal)
        std::printf("   journal: %lld rows kept unwritten\n", qint64(journal->kept()));
    journal.reset();
    return 0;
}
