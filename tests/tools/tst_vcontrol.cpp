// The virtual control, driven through its pseudo-terminal as the program would, with the wire
// log read back through VControlProcess.

#include "vcontrol_process.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

const QByteArray GoAhead("\x10\x37", 2);
const QByteArray Eot("\x04", 1);
const char XON = 0x11, XOFF = 0x13;

// The program's side of the cable, opened by path as a serial port is.
class Line {
public:
    explicit Line(const QString &path) {
        m_fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        termios t{};
        if (m_fd >= 0 && tcgetattr(m_fd, &t) == 0) {
            cfmakeraw(&t);
            tcsetattr(m_fd, TCSANOW, &t);
        }
    }
    ~Line() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    bool ok() const { return m_fd >= 0; }
    // Writes in pieces of `piece` bytes (0: at once), with a short pause between pieces.
    void send(const QByteArray &bytes, int piece = 0) {
        int step = piece > 0 ? piece : int(bytes.size());
        for (qsizetype at = 0; at < bytes.size(); at += step) {
            if (at > 0)
                QThread::msleep(2);
            QByteArray part = bytes.mid(at, step);
            for (qsizetype done = 0; done < part.size();) {
                ssize_t n = ::write(m_fd, part.constData() + done, size_t(part.size() - done));
                if (n <= 0)
                    return;
                done += n;
            }
        }
    }
    // One read: what is there, or what comes first within waitMs.
    QByteArray readSome(int waitMs) {
        pollfd p{m_fd, POLLIN, 0};
        if (poll(&p, 1, waitMs) <= 0)
            return {};
        char buf[65536];
        ssize_t n = ::read(m_fd, buf, sizeof buf);
        return n > 0 ? QByteArray(buf, n) : QByteArray();
    }
    QByteArray readCount(int count, int timeoutMs = 3000) {
        QByteArray got;
        QDeadlineTimer deadline(timeoutMs);
        while (got.size() < count && !deadline.hasExpired())
            got += readSome(int(qMax<qint64>(deadline.remainingTime(), 0)));
        return got;
    }
    QByteArray readFor(int ms) {
        QByteArray got;
        QDeadlineTimer deadline(ms);
        while (!deadline.hasExpired())
            got += readSome(int(qMax<qint64>(deadline.remainingTime(), 0)));
        return got;
    }

private:
    int m_fd = -1;
};

QByteArray readFile(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString &path, const QByteArray &data) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(data);
}

// A store folder in the control's temporary folder, filled with name -> content.
QString makeStore(const VControlProcess &vc, const QMap<QString, QByteArray> &files) {
    QString dir = QDir(vc.workDir()).filePath("store");
    QDir().mkpath(dir);
    for (auto it = files.begin(); it != files.end(); ++it)
        writeFile(dir + "/" + it.key(), it.value());
    return dir;
}

using Chunks = QList<QByteArray>;

} // namespace

class TestVControl : public QObject {
    Q_OBJECT
private slots:
    void receive_data();
    void receive();
    void listing_data();
    void listing();
    void sendProgram_data();
    void sendProgram();
    void deleteAndOneWayCommands();
    void faults_data();
    void faults();
    void crashAfterLine();
    void lifecycle();
    void xonxoffPacing_data();
    void xonxoffPacing();
    void xonxoffHalt();
};

#define START(vc, ...) QVERIFY2((vc).start(__VA_ARGS__), qPrintable((vc).errorString()))

void TestVControl::receive_data() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("piece");
    QTest::addColumn<QList<QByteArray>>("lines");
    QByteArray every;
    for (int c = 0; c < 256; ++c)
        if (c != '\r')
            every += char(c);
    QTest::newRow("303, whole lines")
        << "303" << 0 << Chunks{"%\r", "O1000\r", "N10 G0 X0\r", "M30\r"};
    QTest::newRow("504, a byte at a time") << "504" << 1 << Chunks{"O1\r", "N2 \n G1\r"};
    QTest::newRow("303, every byte value but CR") << "303" << 7 << Chunks{every + '\r', "N2\r"};
}

// R, lines and EOT CR: each line answered with the go-ahead, the program stored as it came.
void TestVControl::receive() {
    QFETCH(QString, type);
    QFETCH(int, piece);
    QFETCH(QList<QByteArray>, lines);
    VControlProcess vc;
    QString store = makeStore(vc, {});
    START(vc, (QStringList{"--type", type, "--dir", store}));
    Line line(vc.device());
    QVERIFY(line.ok());

    line.send("R\r", piece);
    QCOMPARE(line.readCount(2), GoAhead);
    QByteArray program;
    for (const QByteArray &l : lines) {
        line.send(l, piece);
        QCOMPARE(line.readCount(2), GoAhead);
        program += l;
    }
    line.send("\x04\r", piece);
    QVERIFY(vc.waitForEvent("STORED"));
    QCOMPARE(vc.eventTexts("STORED").first(), QString("%1 PROG1.NC").arg(program.size()));
    QCOMPARE(readFile(store + "/PROG1.NC"), program);
    QCOMPARE(vc.rx(), "R\r" + program + "\x04\r");
    QCOMPARE(vc.tx(), GoAhead.repeated(lines.size() + 1));
    QCOMPARE(line.readFor(50), QByteArray()); // EOT is not answered

    // The next program takes the next running name.
    line.send("R\r");
    QCOMPARE(line.readCount(2), GoAhead);
    line.send("X\r\x04\r");
    QVERIFY(vc.waitForEvent("STORED", 2));
    QCOMPARE(vc.eventTexts("STORED").last(), QString("2 PROG2.NC"));
}

void TestVControl::listing_data() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("piece");
    QTest::addColumn<bool>("understood");
    QTest::newRow("303 MC") << "303" << QByteArray("MC\r\x10\x37") << 0 << true;
    QTest::newRow("504 MC,/ISO, a byte at a time")
        << "504" << QByteArray("MC,/ISO\r\x10\x37") << 1 << true;
    QTest::newRow("303 does not take MC,/ISO")
        << "303" << QByteArray("MC,/ISO\r\x10\x37") << 0 << false;
    QTest::newRow("504 does not take MC") << "504" << QByteArray("MC\r\x10\x37") << 0 << false;
}

// The store's programs by name, hidden files and folders left out, one line per go-ahead.
void TestVControl::listing() {
    QFETCH(QString, type);
    QFETCH(QByteArray, command);
    QFETCH(int, piece);
    QFETCH(bool, understood);
    VControlProcess vc;
    QString store = makeStore(vc, {{"B1", "x"}, {"A 1 ", "y"}, {"C.NC", ""}, {".hidden", ""}});
    QDir().mkpath(store + "/sub");
    START(vc, (QStringList{"--type", type, "--dir", store}));
    Line line(vc.device());

    line.send(command, piece);
    if (!understood) {
        QCOMPARE(line.readFor(150), QByteArray());
        QVERIFY(vc.waitForEvent("UNKNOWN"));
        return;
    }
    const Chunks expected{"A 1 \r", "B1\r", "C.NC\r"};
    for (const QByteArray &l : expected) {
        QCOMPARE(line.readCount(int(l.size())), l);
        // The next line waits for the whole go-ahead, which may come in pieces.
        line.send("\x10");
        QCOMPARE(line.readFor(60), QByteArray());
        line.send("7");
    }
    QCOMPARE(line.readCount(1), Eot);
    QCOMPARE(line.readFor(60), QByteArray());
    QVERIFY(vc.waitForTx(expected.join().size() + 1));
    QCOMPARE(vc.txChunks(), expected + Chunks{Eot});
    QCOMPARE(vc.eventTexts("CMD"), QStringList{QString::fromLatin1(command.chopped(3))});
}

void TestVControl::sendProgram_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QList<QByteArray>>("lines");
    QStringList t303{"--type", "303"}, t504{"--type", "504"};
    Chunks p2{"G0\r", "G1\nX\r\n", "M30\r"};
    QTest::newRow("303 PC, the program named by --pc-program")
        << t303 + QStringList{"--pc-program", "P 2"} << QByteArray("PC\r\x10\x37") << p2;
    QTest::newRow("303 PC, the first program by name")
        << t303 << QByteArray("PC\r\x10\x37") << Chunks{"X\r"};
    QTest::newRow("504 PC,/ISO/ a name with a space")
        << t504 << QByteArray("PC,/ISO/P 2\r\x10\x37") << p2;
    QTest::newRow("504 PC,/ISO/ a missing program")
        << t504 << QByteArray("PC,/ISO/NONE\r\x10\x37") << Chunks{};
}

// Each line waits for the go-ahead; a last line without CR is given one; then EOT alone.
void TestVControl::sendProgram() {
    QFETCH(QStringList, options);
    QFETCH(QByteArray, command);
    QFETCH(QList<QByteArray>, lines);
    VControlProcess vc;
    QString store = makeStore(vc, {{"A", "X\r"}, {"P 2", "G0\rG1\nX\r\nM30"}});
    START(vc, options + QStringList{"--dir", store});
    Line line(vc.device());

    line.send(command);
    for (const QByteArray &l : lines) {
        QCOMPARE(line.readCount(int(l.size())), l);
        QCOMPARE(line.readFor(30), QByteArray());
        line.send(GoAhead);
    }
    QCOMPARE(line.readCount(1), Eot);
    QVERIFY(vc.waitForTx(lines.join().size() + 1));
    QCOMPARE(vc.txChunks(), lines + Chunks{Eot});
    QCOMPARE(vc.eventTexts("MISSING").size(), lines.isEmpty() ? 1 : 0);
}

// DC deletes and answers nothing; CC and CE have no terminator yet do not swallow what follows.
void TestVControl::deleteAndOneWayCommands() {
    {
        VControlProcess vc;
        QString store = makeStore(vc, {{"A", "1\r"}, {"B 1", "2\r"}});
        START(vc, (QStringList{"--type", "504", "--dir", store}));
        Line line(vc.device());
        line.send("DC,/ISO/B 1\r\x10\x37");
        QVERIFY(vc.waitForEvent("DELETED"));
        QCOMPARE(vc.eventTexts("DELETED"), QStringList{"B 1"});
        QCOMPARE(QDir(store).entryList(QDir::Files), QStringList{"A"});
        line.send("DC,/ISO/../store/A\r\x10"
                  "7CC");
        QVERIFY(vc.waitForEvent("UNKNOWN"));
        QCOMPARE(vc.eventTexts("MISSING"), QStringList{"../store/A"});
        QCOMPARE(vc.eventTexts("UNKNOWN"), QStringList{"CC"}); // not a 504 command
        QVERIFY(QFile::exists(store + "/A"));
        QCOMPARE(vc.tx(), QByteArray());
    }
    VControlProcess vc;
    QString store = makeStore(vc, {{"A", "1\r"}});
    START(vc, (QStringList{"--type", "303", "--dir", store}));
    Line line(vc.device());
    line.send("C");
    QCOMPARE(line.readFor(50), QByteArray());
    line.send("CCEMC\r\x10\x37");
    QCOMPARE(line.readCount(2), QByteArray("A\r"));
    vc.refresh();
    QCOMPARE(vc.eventTexts("CMD"), (QStringList{"CC", "CE", "MC"}));
    QCOMPARE(vc.eventTexts("IGNORED"), QStringList());
}

void TestVControl::faults_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("listing"); // else a reception of two lines
    QTest::addColumn<QList<QByteArray>>("tx");
    // This TX chunk comes at least minGapMs after the TX chunk before it (or, for the first,
    // after what the program sent); -1: no timing.
    QTest::addColumn<int>("timedChunk");
    QTest::addColumn<int>("minGapMs");
    const QByteArray a("AAAA\r"), b("BBBB\r"), c("CCCC\r");
    QTest::newRow("noise and split answer")
        << QStringList{"--noise", "2a", "--split-answer", "60"} << false
        << Chunks{"*\x10", "7", "*\x10", "7", "*\x10", "7"} << 1 << 60;
    QTest::newRow("answer delayed")
        << QStringList{"--delay", "120"} << false << Chunks{GoAhead, GoAhead, GoAhead} << 0 << 120;
    QTest::newRow("silent from line 2")
        << QStringList{"--silent-from-line", "2"} << false << Chunks{GoAhead, GoAhead} << -1 << 0;
    QTest::newRow("silent") << QStringList{"--silent"} << false << Chunks{} << -1 << 0;
    QTest::newRow("listing, two lines a write")
        << QStringList{"--two-lines"} << true << Chunks{a + b, c, Eot} << -1 << 0;
    QTest::newRow("listing, last line and EOT together")
        << QStringList{"--line-and-eot"} << true << Chunks{a, b, c + Eot} << -1 << 0;
    QTest::newRow("listing, CR LF")
        << QStringList{"--crlf"} << true << Chunks{a + '\n', b + '\n', c + '\n', Eot} << -1 << 0;
    QTest::newRow("listing, LF late") << QStringList{"--lf-late", "50"} << true
                                      << Chunks{a, "\n", b, "\n", c, "\n", Eot} << 1 << 50;
    QTest::newRow("listing, stalled in line 2")
        << QStringList{"--stall-mid-line", "2"} << true << Chunks{a, "BB"} << -1 << 0;
    QTest::newRow("listing, line 2 stalled, then resumed")
        << QStringList{"--stall-mid-line", "2", "--stall-resume", "80"} << true
        << Chunks{a, "BB", "BB\r", c, Eot} << 2 << 80;
    QTest::newRow("listing, silent from line 2")
        << QStringList{"--silent-from-line", "2"} << true << Chunks{a} << -1 << 0;
}

void TestVControl::faults() {
    QFETCH(QStringList, options);
    QFETCH(bool, listing);
    QFETCH(QList<QByteArray>, tx);
    QFETCH(int, timedChunk);
    QFETCH(int, minGapMs);
    VControlProcess vc;
    QString store = makeStore(vc, {{"AAAA", ""}, {"BBBB", ""}, {"CCCC", ""}});
    START(vc, options + QStringList{"--type", "303", "--dir", store});
    Line line(vc.device());
    const int settle = 250;

    if (listing) {
        // As the program maps: a go-ahead for each read that holds a CR, until EOT or silence.
        line.send("MC\r\x10\x37");
        for (QByteArray got; !(got = line.readSome(settle)).isEmpty();) {
            if (got.contains('\r'))
                line.send(GoAhead);
            else if (got.contains('\x04'))
                break;
        }
    } else {
        for (const QByteArray &step : Chunks{"R\r", "N1\r", "N2\r", "\x04\r"}) {
            line.send(step);
            line.readFor(settle);
        }
    }
    vc.waitForTx(tx.join().size(), 1000);
    QCOMPARE(vc.txChunks(), tx);
    if (timedChunk >= 0) {
        const auto &all = vc.chunks();
        int seen = -1;
        qint64 lastTx = -1;
        for (int i = 1; i < all.size(); ++i) {
            if (all[i].rx)
                continue;
            if (++seen == timedChunk) {
                qint64 gap = all[i].us - (lastTx >= 0 ? lastTx : all[i - 1].us);
                QVERIFY2(gap >= minGapMs * 1000, qPrintable(QString("gap %1 us").arg(gap)));
                break;
            }
            lastTx = all[i].us;
        }
        QCOMPARE(seen, timedChunk);
    }
}

// A pulled cable: the control vanishes without an answer, and its link with it.
void TestVControl::crashAfterLine() {
    VControlProcess vc;
    QString link = QDir(vc.workDir()).filePath("ttyCNC");
    START(vc, (QStringList{"--type", "303", "--crash-after-line", "2", "--link", link}));
    Line line(link);
    QVERIFY(line.ok());
    line.send("R\r");
    QCOMPARE(line.readCount(2), GoAhead);
    line.send("N1\r");
    QCOMPARE(line.readCount(2), GoAhead);
    line.send("N2\r");
    QVERIFY(vc.waitForExit());
    QCOMPARE(vc.exitCode(), 3);
    QVERIFY(!QFileInfo::exists(link));
    vc.refresh();
    QCOMPARE(vc.tx(), GoAhead + GoAhead);
    QCOMPARE(vc.eventTexts("CRASH").size(), 1);
}

void TestVControl::lifecycle() {
    VControlProcess vc;
    QString link = QDir(vc.workDir()).filePath("ttyCNC");
    START(vc, (QStringList{"--link", link}));
    QVERIFY(vc.device().startsWith("/dev/pts/"));
    QCOMPARE(QFileInfo(link).symLinkTarget(), vc.device());
    {
        // The program's side opens and closes the port between operations: no hang-up.
        Line first(link);
        QVERIFY(first.ok());
    }
    Line again(link);
    again.send("R\r");
    QCOMPARE(again.readCount(2), GoAhead);
    QVERIFY(vc.stop());
    QCOMPARE(vc.exitCode(), 0);
    QVERIFY(!QFileInfo(link).isSymLink());
    vc.refresh();
    QCOMPARE(vc.events().last().word, QString("EXIT"));

    VControlProcess idle;
    START(idle, (QStringList{"--exit-after-idle", "150"}));
    QVERIFY(idle.waitForExit(3000));
    QCOMPARE(idle.exitCode(), 0);
    idle.refresh();
    QCOMPARE(idle.eventTexts("IDLE").size(), 1);
}

void TestVControl::xonxoffPacing_data() {
    QTest::addColumn<bool>("obey");
    QTest::newRow("a sender that obeys X-off") << true;
    QTest::newRow("a sender that ignores it") << false;
}

// A sender that stops at X-off and goes on at X-on loses nothing; one that ignores it overruns.
void TestVControl::xonxoffPacing() {
    QFETCH(bool, obey);
    const int rate = 4000, xoffAt = 512, xonAt = 128;
    VControlProcess vc;
    QString store = makeStore(vc, {});
    START(vc, (QStringList{"--type", "XonXoff", "--dir", store, "--buffer", "1024", "--rate",
                           QString::number(rate), "--xoff-at", QString::number(xoffAt), "--xon-at",
                           QString::number(xonAt), "--xon-at-start", "--end-gap", "300"}));
    Line line(vc.device());
    Chunks lines;
    for (int i = 1; i <= 100; ++i)
        lines << QString("N%1 G1 X12.345 Y67.890\r").arg(i, 4, 10, QChar('0')).toLatin1();
    QByteArray program = lines.join();

    line.send(QByteArray(1, XON));
    QCOMPARE(line.readCount(1), QByteArray(1, XON));
    if (obey) {
        bool held = false;
        for (const QByteArray &l : lines) {
            for (QByteArray got = line.readSome(0); !got.isEmpty() || held;
                 got = line.readSome(held ? 3000 : 0)) {
                QVERIFY2(!got.isEmpty(), "no X-on after an X-off");
                for (char c : got)
                    held = c == XOFF ? true : c == XON ? false : held;
            }
            line.send(l);
            QThread::msleep(1); // faster than the machine, but gives it time to say X-off
        }
    } else {
        line.send(program);
    }
    QVERIFY(vc.waitForEvent("STORED", 1, 10000));
    QByteArray stored = readFile(store + "/PROG1.LCC");
    const auto &ev = vc.events();
    if (obey) {
        QCOMPARE(stored, program);
        QCOMPARE(vc.eventTexts("OVERRUN"), QStringList());
        QVERIFY(!vc.eventTexts("XOFF").isEmpty());
        QCOMPARE(vc.eventTexts("XON").size(), vc.eventTexts("XOFF").size());
        // From the high-water mark to the low one takes (xoffAt - xonAt) / rate.
        auto at = [&](const QString &w) {
            return std::find_if(ev.begin(), ev.end(), [&](auto &e) { return e.word == w; })->us;
        };
        QVERIFY(at("XON") - at("XOFF") >= qint64(xoffAt - xonAt) * 1000000 / rate * 8 / 10);
    } else {
        QVERIFY(!vc.eventTexts("OVERRUN").isEmpty());
        qint64 lost = vc.eventTexts("OVERRUN").last().section(' ', 2, 2).toLongLong();
        QVERIFY(lost > 0);
        QCOMPARE(stored.size() + lost, program.size());
        QVERIFY(program.startsWith(stored.left(1024)));
    }
    // The machine cannot have taken the program faster than its rate.
    qint64 firstRx = vc.chunks().first().us;
    QVERIFY(ev.last().us - firstRx >= qint64(stored.size()) * 1000000 / rate * 9 / 10);
}

// After line 2 the control halts the sender with its own character and resumes with X-on.
void TestVControl::xonxoffHalt() {
    VControlProcess vc;
    QString store = makeStore(vc, {});
    START(vc, (QStringList{"--type", "XonXoff", "--dir", store, "--halt-after-line", "2",
                           "--halt-char", "21", "--halt-ms", "150", "--end-gap", "200"}));
    Line line(vc.device());
    line.send(QByteArray(1, XON) + "N1\rN2\r");
    QCOMPARE(line.readCount(1), QByteArray("!"));
    QCOMPARE(line.readFor(100), QByteArray());
    QCOMPARE(line.readCount(1), QByteArray(1, XON));
    line.send("N3\r");
    QVERIFY(vc.waitForEvent("STORED"));
    QCOMPARE(readFile(store + "/PROG1.LCC"), QByteArray("N1\rN2\rN3\r"));
    const auto &c = vc.chunks();
    QCOMPARE(c[c.size() - 2].bytes, QByteArray(1, XON));
    QVERIFY(c[c.size() - 2].us - c[c.size() - 3].us >= 150000);
}

QTEST_MAIN(TestVControl)
#include "tst_vcontrol.moc"
