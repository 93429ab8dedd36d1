// What the program's tests and benchmarks take on trust from the virtual control: X-on/X-off
// pacing at the machine's rate with every overrun counted, and answers at the line's speed.
#include "files.h"
#include "vcontrol_process.h"
#include "wire_chars.h"

#include <QtTest>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

// The program's side of the cable, opened by path; the control has set the line raw.
struct Line {
    const int fd;
    explicit Line(const QString &path)
        : fd(::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY)) {}
    ~Line() { ::close(fd); }
    bool send(const QByteArray &b) {
        return ::write(fd, b.constData(), size_t(b.size())) == b.size();
    }
    QByteArray read(int waitMs) { // what comes first within waitMs
        pollfd p{fd, POLLIN, 0};
        char buf[4096];
        const ssize_t n = ::poll(&p, 1, waitMs) > 0 ? ::read(fd, buf, sizeof buf) : 0;
        return QByteArray(buf, qMax<ssize_t>(n, 0));
    }
};

// The CPU time a process has used, in clock ticks (user and system).
qint64 cpuTicks(qint64 pid) {
    QFile f(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    // Behind the name in parentheses: state is the first field, utime the 12th, stime the 13th.
    const QByteArray text = f.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 12 ? fields[11].toLongLong() + fields[12].toLongLong() : -1;
}

} // namespace

class TstVControl : public QObject {
    Q_OBJECT
private slots:
    void xonxoffPacing_data() {
        QTest::addColumn<bool>("obey");
        QTest::newRow("a sender that obeys X-off") << true;
        QTest::newRow("a sender that ignores it") << false;
    }
    void xonxoffPacing() {
        QFETCH(bool, obey);
        QTemporaryDir store;
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "XonXoff", "--dir", store.path(), "--buffer", "1024", "--rate",
                           "4000", "--xoff-at", "512", "--xon-at", "128", "--end-gap", "300"}),
                 qPrintable(vc.errorString()));
        Line line(vc.device());
        QByteArray program;
        for (int i = 1000; i < 1100; ++i)
            program += "N" + QByteArray::number(i) + " G1 X12.345 Y67.890\r"; // 24 a line
        QElapsedTimer clock;
        clock.start();
        if (!obey)
            QVERIFY(line.send(program));
        bool held = false;
        for (qsizetype at = 0; obey && at < program.size(); at += 24) {
            for (QByteArray got; !(got = line.read(held ? 3000 : 0)).isEmpty() || held;) {
                QVERIFY2(!got.isEmpty(), "no X-on after an X-off");
                for (const char c : got)
                    held = c == WireChar::XOFF || (held && c != WireChar::XON);
            }
            QVERIFY(line.send(program.mid(at, 24)));
            QThread::msleep(1); // faster than the machine, but it has time to say X-off
        }
        QVERIFY(vc.waitForEvent("STORED", 1, 10000));
        const QByteArray stored = readFile(store.filePath("PROG1.LCC"));
        const QStringList overruns = vc.eventTexts("OVERRUN");
        QCOMPARE(overruns.isEmpty(), obey);
        QCOMPARE(stored.size() + (obey ? 0 : overruns.last().section(' ', 2, 2).toInt()),
                 program.size());
        QVERIFY(program.startsWith(stored.left(1024)));
        QVERIFY(!obey || (stored == program && !vc.eventTexts("XOFF").isEmpty() &&
                          vc.eventTexts("XON").size() == vc.eventTexts("XOFF").size()));
        // The machine cannot have taken it faster than 4000 characters a second.
        QVERIFY2(clock.elapsed() >= stored.size() * 225 / 1000,
                 qPrintable(QString::number(clock.elapsed())));
    }

    // While it holds the sender the control sleeps, and SIGTERM ends it at once: the end gap
    // of a held program runs out long before the hold does.
    void holdSleeps_data() {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("X-off at the high-water mark")
            << QStringList{"--buffer", "64", "--rate", "10", "--xoff-at", "48", "--xon-at", "16"};
        QTest::newRow("halt after a line")
            << QStringList{"--halt-after-line", "1", "--halt-ms", "10000"};
    }
    void holdSleeps() {
        QFETCH(QStringList, args);
        VControlProcess vc;
        QVERIFY2(vc.start(QStringList{"--type", "XonXoff", "--end-gap", "100"} + args),
                 qPrintable(vc.errorString()));
        Line line(vc.device());
        QVERIFY(line.send(QByteArray(1, WireChar::XON) + QByteArray("N1000 G1 X1\r").repeated(5)));
        QCOMPARE(line.read(3000), QByteArray(1, WireChar::XOFF));
        QThread::msleep(300); // the end gap is past, the hold goes on for seconds
        const qint64 before = cpuTicks(vc.pid());
        QThread::msleep(1000);
        const qint64 used = cpuTicks(vc.pid()) - before;
        QVERIFY(before >= 0);
        QVERIFY2(used <= ::sysconf(_SC_CLK_TCK) / 20, // 5% of a core
                 qPrintable(QStringLiteral("%1 ticks in a second").arg(used)));
        QElapsedTimer clock;
        clock.start();
        QVERIFY2(vc.stop(1000), "still running a second after SIGTERM");
        QVERIFY2(clock.elapsed() < 500, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(vc.waitForEvent("EXIT", 1, 0));
    }

    // A go-ahead comes once the line has carried the CR of its line, and then takes its own two
    // character times: a sender cannot seem faster than the line.
    void answersAtLineSpeed() {
        const int baud = 9600;
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "303", "--baud", QString::number(baud)}),
                 qPrintable(vc.errorString()));
        Line line(vc.device());
        QElapsedTimer clock;
        clock.start();
        QVERIFY(line.send("R\r" + QByteArray(97, 'N') + "\r")); // 100 characters
        QByteArray got;
        while (got.size() < 4 && clock.elapsed() < 3000)
            got += line.read(3000);
        const qint64 us = clock.nsecsElapsed() / 1000;
        QCOMPARE(got, PromptSeq + PromptSeq);
        const qint64 needs = qint64((100 + 2) * 1e7 / baud); // the go-ahead of "R" came meanwhile
        QVERIFY2(us >= needs,
                 qPrintable(QStringLiteral("%1 us, the line needs %2").arg(us).arg(needs)));
    }
};

QTEST_GUILESS_MAIN(TstVControl)
#include "tst_vcontrol.moc"
