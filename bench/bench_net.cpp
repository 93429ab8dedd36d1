// Figures of the port on a device server (Debian's ser2net on loopback, in front of the virtual
// control's pseudo-terminal) beside the local pseudo-terminal, in the same run. Not a test: it
// prints, it does not judge. Needs ser2net.
//   1. line capacity: SendData on "303" at 9600 and 115 200 baud against a control that reads and
//      answers at the line's speed: the time the line needs for every character each way against
//      the time taken, median of 3; locally, over raw TCP and over RFC 2217, with ser2net's
//      packing delay off (as the README sets the box) and on (as ser2net comes);
//   2. "XonXoff", 200 kB at 230 400 baud against a control that drains 15 000 characters a
//      second: the most characters that reached it after an X-off, with the program pacing and
//      with the box applying X-on/X-off itself;
//   3. the time an opening takes, median of 20.
// "bench_net 1 3" runs parts 1 and 3; no argument runs all.
#include "bench_support.h"
#include "event_loop_yield.h"
#include "net_comm.h"
#include "qt_link_timer.h"
#include "ser2net_process.h"
#include "serial_comm.h"
#include "transfer.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

// A pseudo-terminal's path, or a device server's name.
std::unique_ptr<PolledPort> portFor(const QString &device, OperationState &state) {
    if (isNetDeviceName(device)) {
        auto net = std::make_unique<NetComm>();
        net->setTarget(*parseNetDevice(device), device);
        net->setOperationState(&state);
        return net;
    }
    auto serial = std::make_unique<SerialComm>(device);
    serial->setOperationState(&state);
    return serial;
}

struct Sender {
    Globals g;
    OperationState state;
    std::unique_ptr<PolledPort> comm;
    QtLinkTimer timer{g};
    EventLoopYield yield;
    QuietScreen screen;
    CmDialog dialog;
    OperationState::Run run{state};
    Link link;
    Sender(const QString &device, qint16 type, int baud)
        : comm(portFor(device, state)),
          yield(*comm, timer), link{g, *comm, timer, yield, screen, dialog, state} {
        g.ComSettings = QStringLiteral("COM1:%1,N,8,1").arg(baud);
        g.CncType = type;
        timer.setInterval(5000);
    }
};

// Where the program is pointed: the control's pseudo-terminal, or ser2net in front of it.
struct Carrier {
    const char *label;
    const char *scheme; // nullptr: the pseudo-terminal itself
    bool chardelay = false;
    bool xonxoff = false;
};

struct Served {
    VControlProcess vc;
    Ser2netProcess box;
    QString device;
    bool start(const Carrier &c, const QStringList &control, int baud) {
        if (!startControl(vc, control))
            return false;
        if (!c.scheme) {
            device = vc.device();
            return true;
        }
        Ser2netProcess::Options o;
        o.rfc2217 = QByteArray(c.scheme) == "rfc2217";
        o.line = QStringLiteral("%1n81").arg(baud);
        o.chardelay = c.chardelay;
        o.xonxoff = c.xonxoff;
        if (!box.start(vc.device(), o)) {
            std::fprintf(stderr, "ser2net: %s\n", qPrintable(box.errorString()));
            return false;
        }
        device = box.name();
        return true;
    }
};

void capacity(const QTemporaryDir &dir) {
    std::printf("1. Line capacity, \"303\": the time the line needs for every character each way "
                "(8N1) against the time SendData takes; median of 3 (goal over the network: "
                "within 5%% of the pseudo-terminal with the packing delay off)\n");
    const Carrier carriers[] = {{"pseudo-terminal", nullptr},
                                {"raw TCP, chardelay off", "tcp"},
                                {"RFC 2217, chardelay off", "rfc2217"},
                                {"raw TCP, chardelay on", "tcp", true},
                                {"RFC 2217, chardelay on", "rfc2217", true}};
    const struct { int baud, lines; } speeds[] = {{9600, 100}, {115200, 1200}};
    for (const auto &speed : speeds) {
        const QByteArray text = program(speed.lines);
        const QString path = writeFile(dir.filePath(QStringLiteral("cap.tap")), text);
        qint64 characters = 2 + 2 + 2;
        for (const QByteArray &l : text.split('\n'))
            if (!l.isEmpty())
                characters += l.size() - 1 + 1 + 2;
        const double needs = double(characters) * 10 / speed.baud;
        std::printf("   %d baud, %d lines, the line needs %.2f s\n", speed.baud, speed.lines,
                    needs);
        for (const Carrier &c : carriers) {
            Served s;
            if (!s.start(c, {"--type", "303", "--baud", QString::number(speed.baud), "--realtime"},
                         speed.baud))
                return;
            QList<double> seconds;
            for (int r = 1; r <= 3; ++r) {
                Sender snd(s.device, 1, speed.baud);
                QElapsedTimer clock;
                clock.start();
                SendData(snd.link, path);
                if (snd.screen.boxes == 0)
                    seconds << double(clock.nsecsElapsed()) / 1e9;
            }
            const double sec = median(seconds);
            std::printf("     %-26s %.2f s, capacity used %.3f%s\n", c.label, sec,
                        sec > 0 ? needs / sec : 0.0,
                        seconds.size() == 3 ? "" : "  (A ROUND FAILED)");
        }
    }
    std::printf("\n");
}

void xoff(const QTemporaryDir &dir) {
    const QByteArray text = program(0, 200000);
    int longest = 0;
    for (const QByteArray &l : text.split('\n'))
        longest = std::max(longest, int(l.size()));
    const QString path = writeFile(dir.filePath(QStringLiteral("x.LCC")), text);
    std::printf("2. \"XonXoff\", %lld bytes at 230 400 baud; the control takes them at that speed "
                "into 4096, X-off at 3072, X-on at 1024, drains 15 000/s (bound: 512 and the "
                "longest line, %d)\n",
                qint64(text.size()), longest);
    const Carrier carriers[] = {{"pseudo-terminal", nullptr},
                                {"raw TCP", "tcp"},
                                {"RFC 2217", "rfc2217"},
                                {"raw TCP, box X-on/X-off", "tcp", false, true},
                                {"RFC 2217, box X-on/X-off", "rfc2217", false, true}};
    for (const Carrier &c : carriers) {
        QTemporaryDir store;
        Served s;
        if (!s.start(c,
                     {"--type", "XonXoff", "--dir", store.path(), "--buffer", "4096", "--xoff-at",
                      "3072", "--xon-at", "1024", "--rate", "15000", "--baud", "230400",
                      "--end-gap", "300", "--realtime"},
                     230400))
            return;
        QElapsedTimer clock;
        clock.start();
        {
            Sender snd(s.device, 3, 230400);
            SendData(snd.link, path);
        }
        const double sec = double(clock.nsecsElapsed()) / 1e9;
        s.vc.waitForEvent(QStringLiteral("STORED"), 1, 30000);
        s.vc.stop();
        s.vc.refresh();
        QList<double> after;
        for (const QString &x : s.vc.eventTexts(QStringLiteral("XON")))
            after << x.section(' ', 0, 0).toDouble();
        const QStringList stored = QDir(store.path()).entryList(QDir::Files);
        QFile got(store.filePath(stored.value(0)));
        const bool complete = stored.size() == 1 && got.open(QIODevice::ReadOnly) &&
                              got.readAll() == QByteArray(text).replace("\r\n", "\r");
        const QStringList exit = s.vc.eventTexts(QStringLiteral("EXIT"));
        std::printf("   %-26s %.1f s, %s; %lld X-offs, after one: most %.0f, median %.0f; "
                    "control: %s\n",
                    c.label, sec, complete ? "complete" : "NOT COMPLETE", qint64(after.size()),
                    after.isEmpty() ? 0.0 : *std::max_element(after.begin(), after.end()),
                    median(after), qPrintable(exit.value(0)));
    }
    std::printf("\n");
}

void openTime() {
    std::printf("3. Opening and closing the port, 20 times, 115 200 baud: median and most\n");
    const Carrier carriers[] = {
        {"pseudo-terminal", nullptr}, {"raw TCP", "tcp"}, {"RFC 2217", "rfc2217"}};
    for (const Carrier &c : carriers) {
        Served s;
        if (!s.start(c, {"--type", "303"}, 115200))
            return;
        QList<double> open, close;
        for (int i = 0; i < 20; ++i) {
            OperationState state;
            std::unique_ptr<PolledPort> port = portFor(s.device, state);
            port->setSettings(QStringLiteral("115200,N,8,1"));
            port->setDTREnable(true);
            QElapsedTimer clock;
            clock.start();
            port->setPortOpen(true);
            open << double(clock.nsecsElapsed()) / 1e6;
            clock.restart();
            port->setPortOpen(false);
            close << double(clock.nsecsElapsed()) / 1e6;
        }
        std::printf("   %-16s open %.2f ms (most %.2f), close %.2f ms\n", c.label, median(open),
                    *std::max_element(open.begin(), open.end()), median(close));
    }
    std::printf("\n");
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    useBuiltVControl();
    if (const QString why = Ser2netProcess::missing(); !why.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(why));
        return 1;
    }
    const QStringList parts = app.arguments().mid(1);
    const auto wanted = [&](const char *n) { return parts.isEmpty() || parts.contains(n); };
    QTemporaryDir dir;
    if (wanted("1"))
        capacity(dir);
    if (wanted("2"))
        xoff(dir);
    if (wanted("3"))
        openTime();
    return 0;
}
