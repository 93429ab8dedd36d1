// What the program's tests and benchmarks take on trust from the virtual control: X-on/X-off
// pacing at the machine's rate with every overrun counted, and a line's speed.
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
        QVERIFY(vc.events().last().us - vc.chunks().first().us >= stored.size() * 225);
    }

    // At a line's speed the control takes one character per character time, however fast they
    // were written, and counts as after the X-off what the line brought after it went out.
    void lineSpeed() {
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "XonXoff", "--buffer", "4096", "--xoff-at", "1000", "--xon-at",
                           "100", "--rate", "1", "--baud", "19200"}),
                 qPrintable(vc.errorString()));
        Line line(vc.device());
        QVERIFY(line.send(QByteArray(1500, 'N')));
        QVERIFY(line.read(3000).contains(WireChar::XOFF));
        // 1000 characters at 1920 a second, from the control's first read on.
        QVERIFY(vc.waitForEvent("XOFF"));
        const auto xoff = std::find_if(vc.events().begin(), vc.events().end(),
                                       [](const auto &e) { return e.word == "XOFF"; });
        const qint64 us = xoff->us - vc.chunks().first().us;
        QVERIFY2(us >= 520000, qPrintable(QString::number(us)));
        QThread::msleep(600); // the other 500 need 260 ms
        QVERIFY(vc.stop());
        vc.refresh();
        // Those still on the line when the X-off went out; a control that was late to look
        // has let a few arrive before it.
        const QString exit = vc.eventTexts("EXIT").value(0);
        const int after = exit.section(' ', -1).toInt();
        QVERIFY2(exit.startsWith("overruns 0,") && after > 450 && after <= 500, qPrintable(exit));
    }

    // What the program wrote after the X-off reached it is counted apart, and what of it came
    // after the line in progress.
    void writtenAfterTheXoff() {
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "XonXoff", "--buffer", "4096", "--xoff-at", "100", "--xon-at",
                           "50", "--rate", "2000"}),
                 qPrintable(vc.errorString()));
        Line line(vc.device());
        const QByteArray l24 = "N1000 G1 X12.345 Y67.89\r";
        QCOMPARE(l24.size(), 24);
        QVERIFY(line.send(l24.repeated(5))); // the X-off comes within the fifth line
        QVERIFY(line.read(3000).contains(WireChar::XOFF));
        QVERIFY(line.send(l24.repeated(2))); // the rest of a line, and one more
        QVERIFY(vc.waitForEvent("XON", 1, 3000));
        QCOMPARE(vc.eventTexts("XON").value(0).section(", ", -2),
                 QStringLiteral("written after 48, beyond the line 24"));
    }

    // A go-ahead comes once the line has carried the CR of its line, and then takes its own two
    // character times: a sender cannot seem faster than the line.
    void answersAtLineSpeed() {
        const int baud = 9600;
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "303", "--baud", QString::number(baud)}),
                 qPrintable(vc.errorString()));
        Line line(vc.device());
        const QByteArray written = "R\r" + QByteArray(97, 'N') + "\r"; // 100 characters
        QElapsedTimer clock;
        clock.start();
        QVERIFY(line.send(written));
        QByteArray got;
        while (got.size() < 4 && clock.elapsed() < 3000)
            got += line.read(3000);
        const qint64 us = clock.nsecsElapsed() / 1000;
        QCOMPARE(got, QByteArray("\x10"
                                 "7\x10"
                                 "7"));
        const qint64 needs = qint64((100 + 2) * 1e7 / baud); // the go-ahead of "R" came meanwhile
        QVERIFY2(us >= needs,
                 qPrintable(QStringLiteral("%1 us, the line needs %2").arg(us).arg(needs)));
        // The control logs a write just after it: wait for the log to show all four.
        QVERIFY(vc.waitUntil([&] { return vc.tx().size() == 4; }, 3000));
        int written1 = 0; // the control's writes of one character each
        for (const VControlProcess::Chunk &c : vc.chunks())
            written1 += !c.rx && c.bytes.size() == 1;
        QCOMPARE(written1, 4);
    }
};

QTEST_GUILESS_MAIN(TstVControl)
#include "tst_vcontrol.moc"
