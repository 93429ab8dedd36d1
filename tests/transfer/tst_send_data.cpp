// SendData over the scripted port: the exact bytes per control type, the waits it makes, what
// the operator sees, and every way it can end.
#include "fake_link.h"
#include "send_cases.h"
#include "transfer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QByteArray Eot("\x04\r");
const QByteArray Xon("\x11");

// A fresh link, a program file, and a control that answers the first `answers` writes with
// DLE "7" (types 1 and 2: every one).
struct Run {
    FakeLink f;
    QTemporaryDir dir;
    QString path;
    int answers = 0;

    Run(qint16 type, const QByteArray &content) {
        f.g.ComSettings = QStringLiteral("COM2:9600,E,7,1");
        f.g.CncType = type;
        f.g.TextTable[6 * 5 + 1] = QStringLiteral("Send file : ");
        f.g.TextTable[7 * 5 + 1] = QStringLiteral("Timeout - No answer from CNC");
        f.timer.ms = 2000; // as start-up leaves it for "504"
        f.yield.limit = 1000;
        path = dir.filePath(QStringLiteral("P.tap"));
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
        answers = type == 1 || type == 2 ? 1 << 30 : 0;
        f.comm.onOutput = [this](const QByteArray &) {
            if (f.comm.writes.size() <= answers)
                f.comm.inbox += "\x10\x37";
        };
    }
    void send() { SendData(f.link, path); }
    // After every way out: the port and the clock stopped, the screen back at rest.
    void checkEndState() const {
        QVERIFY(!f.comm.open);
        QVERIFY(!f.timer.on);
        QVERIFY(!f.screen.label1Visible);
        QCOMPARE(f.screen.pointer, 0);
    }
};
} // namespace

class TestSendData : public QObject {
    Q_OBJECT
private slots:
    void wire_data();
    void wire();
    void stream_data();
    void stream();
    void caption_data();
    void caption();
    void toolListFirst();
    void ending_data();
    void ending();
};

void TestSendData::wire_data() {
    QTest::addColumn<qint16>("type");
    QTest::addColumn<qint16>("noSpace");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("wire");

    for (const WireCase &c : WireCases())
        QTest::newRow(c.name.constData()) << c.type << c.noSpace << c.file << c.wire;
    QTest::newRow("unknown control") << qint16(0) << qint16(0) << Lines(3) << QByteArray();
    QTest::newRow("empty file") << qint16(1) << qint16(0) << QByteArray() << QByteArray();
}

void TestSendData::wire() {
    QFETCH(qint16, type);
    QFETCH(QByteArray, file);
    Run r(type, file);
    QFETCH(qint16, noSpace);
    r.f.g.NoSpace = noSpace;
    // Each line must find the queue drained by the one before (types 1 and 2; nothing
    // drains behind "R").
    r.f.comm.stallOutput = 2;
    r.f.comm.drainPerPoll = 1;
    bool drainedFirst = true;
    QByteArray previous;
    auto answer = r.f.comm.onOutput;
    r.f.comm.onOutput = [&](const QByteArray &b) {
        if (type != 3 && !previous.isEmpty() && previous != "R\r")
            drainedFirst = drainedFirst && r.f.comm.queued == 2;
        previous = b;
        answer(b);
    };
    r.send();

    QTEST(r.f.comm.written(), "wire");
    QVERIFY(drainedFirst);
    QVERIFY(r.f.screen.boxes.isEmpty());
    QCOMPARE(r.f.comm.opens, file.isEmpty() ? 0 : 1);
    QCOMPARE(r.f.comm.closes, r.f.comm.opens);
    QCOMPARE(r.f.comm.port, 2);
    QCOMPARE(r.f.comm.settings, QStringLiteral("9600,E,7,1"));
    QCOMPARE(r.f.comm.dtr, !file.isEmpty());
    QCOMPARE(r.f.screen.pointers, (QList<int>{11, 0}));
    QCOMPARE(r.f.timer.interval(), (type == 0 || file.isEmpty()) ? 2000 : 5000);
    r.checkEndState();
}

void TestSendData::stream_data() {
    QTest::addColumn<qint16>("waitXon");
    QTest::addColumn<QByteArray>("haltWith"); // what the control says when line 2 comes
    QTest::addColumn<bool>("resume");         // an X-on comes while the sender waits
    QTest::addColumn<QByteArray>("wire");
    QTest::addColumn<int>("boxes");
    QTest::addColumn<int>("writesWhileWaiting");
    QTest::addColumn<int>("waitInterval");

    const QByteArray all = Xon + Lines(4, "\r");
    QTest::newRow("no opening wait") << qint16(0) << QByteArray() << false << all << 0 << -1 << -1;
    QTest::newRow("opening X-on comes")
        << qint16(1) << QByteArray() << true << all << 0 << 1 << 60000;
    QTest::newRow("no opening X-on")
        << qint16(1) << QByteArray() << false << Xon << 1 << 1 << 60000;
    QTest::newRow("halted, resumed by X-on")
        << qint16(0) << QByteArray("\x13") << true << all << 0 << 3 << 5000;
    QTest::newRow("halted, no X-on")
        << qint16(0) << QByteArray("?") << false << Xon + Lines(2, "\r") << 1 << 3 << 5000;
    QTest::newRow("X-off and X-on together")
        << qint16(0) << QByteArray("\x13\x11") << false << all << 0 << -1 << 5000;
}

void TestSendData::stream() {
    QFETCH(qint16, waitXon);
    QFETCH(QByteArray, haltWith);
    QFETCH(bool, resume);
    Run r(3, Lines(4));
    r.f.g.WaitXon = waitXon;
    r.f.comm.onOutput = [&](const QByteArray &b) {
        if (b == "L2\r")
            r.f.comm.inbox += haltWith; // any character halts the sender
    };
    // The third pass of a wait sees what has been written, then the X-on or the tick comes.
    int waited = 0, writesWhileWaiting = -1, waitInterval = -1;
    r.f.yield.idle = [&] {
        if (!r.f.timer.on)
            return;
        waitInterval = r.f.timer.interval();
        if (++waited < 3)
            return;
        writesWhileWaiting = int(r.f.comm.writes.size());
        if (resume)
            r.f.comm.inbox += Xon;
        else
            r.f.timer.fire();
    };
    r.send();

    QTEST(r.f.comm.written(), "wire");
    QTEST(int(r.f.screen.boxes.size()), "boxes");
    QTEST(writesWhileWaiting, "writesWhileWaiting");
    QTEST(waitInterval, "waitInterval");
    QCOMPARE(r.f.timer.interval(), 5000);
    r.checkEndState();
}

void TestSendData::caption_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("percents");
    QTest::newRow("three lines") << QByteArray("AAAA\r\nBB\r\nCCCC")
                                 << QStringList{"29%", "43%", "71%"};
    QTest::newRow("rounds to 0: no digits")
        << QByteArray("A\r\n") + QByteArray(297, 'B') << QStringList{"%", "99%"};
    QTest::newRow("a half rounds up") << QByteArray("A\r\nBBBBB") << QStringList{"13%", "75%"};
    QTest::newRow("one line without end") << QByteArray("ABC") << QStringList{"100%"};
}

void TestSendData::caption() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, percents);
    Run r(1, file);
    r.send();
    const QString prefix = "Send file : " + r.path + " - ";
    QStringList expected{prefix};
    for (const QString &p : percents)
        expected << prefix + p;
    QCOMPARE(r.f.screen.captions, expected);
}

void TestSendData::toolListFirst() {
    // Before the port, the pointer or the label are touched; also for an empty file.
    struct Hook : ToolListHook {
        Run *r = nullptr;
        QStringList calls;
        void UpdateToolList(const QString &file) override {
            if (r->f.comm.opens == 0 && r->f.screen.pointers.isEmpty())
                calls << file;
        }
    };
    for (const bool enabled : {true, false})
        for (const QByteArray &file : {QByteArray("T1\r\n"), QByteArray()}) {
            Run r(1, file);
            Hook hook;
            hook.r = &r;
            r.f.link.toolList = &hook;
            r.f.g.ToolDbEnabled = enabled;
            r.send();
            QCOMPARE(hook.calls, enabled ? QStringList{r.path} : QStringList());
        }
}

void TestSendData::ending_data() {
    QTest::addColumn<qint16>("type");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QByteArray>("wire");
    QTest::addColumn<QStringList>("told"); // what the one box says; none if empty
    QTest::addColumn<int>("captions");

    const QStringList none, port{"COM2: (/dev/x)", "went away"};
    QTest::newRow("time-out on line 5 of 10")
        << qint16(2) << "silent from line 5"
        << "R\r" + Lines(5, "\r") + Eot << QStringList{"Timeout - No answer from CNC"} << 1 + 5;
    QTest::newRow("window closed, 303") << qint16(1) << "close at line 2"
                                        << "R\r" + Lines(2, "\r") + Eot << none << 1 + 2;
    QTest::newRow("window closed, XonXoff")
        << qint16(3) << "close at line 2" << Xon + Lines(2, "\r") << none << 1 + 2;
    QTest::newRow("missing file") << qint16(1) << "missing" << QByteArray()
                                  << QStringList{"nothere.tap", "No such file"} << 0;
    QTest::newRow("port will not open") << qint16(1) << "open" << QByteArray() << port << 1;
    QTest::newRow("device fails at line 3") << qint16(1) << "fail at line 3"
                                            << "R\r" + Lines(3, "\r") << port << 1 + 3;
    QTest::newRow("no port set up")
        << qint16(1) << "settings" << QByteArray() << QStringList{"Setup"} << 0;
}

void TestSendData::ending() {
    QFETCH(qint16, type);
    QFETCH(QString, fault);
    QFETCH(QStringList, told);
    Run r(type, Lines(10));
    const CommError gone{QStringLiteral("COM2: (/dev/x)"), QStringLiteral("it went away")};
    if (fault == "missing")
        r.path = r.dir.filePath(QStringLiteral("nothere.tap"));
    if (fault == "open")
        r.f.comm.openError = gone;
    if (fault == "settings")
        r.f.g.ComSettings.clear();
    if (fault == "silent from line 5")
        r.answers = 5; // "R" and lines 1 to 4
    r.f.yield.idle = [&] {
        if (r.f.comm.inbox.isEmpty())
            r.f.timer.fire();
    };
    auto answer = r.f.comm.onOutput;
    r.f.comm.onOutput = [&](const QByteArray &b) {
        answer(b);
        if (fault == "close at line 2" && b == "L2\r")
            r.f.g.Closing = true;
        if (fault == "fail at line 3" && b == "L3\r")
            r.f.comm.deviceError = gone;
    };
    r.send();

    QTEST(r.f.comm.written(), "wire");
    QTEST(int(r.f.screen.captions.size()), "captions");
    QCOMPARE(r.f.screen.boxes.size(), told.isEmpty() ? 0 : 1);
    for (const QString &t : told)
        QVERIFY2(r.f.screen.boxes[0].text.contains(t), qPrintable(r.f.screen.boxes[0].text));
    if (!told.isEmpty())
        QCOMPARE(r.f.screen.boxes[0].icon,
                 fault.startsWith("silent") ? BoxIcon::None : BoxIcon::Critical);
    if (fault == "missing" || fault == "settings" || fault == "open")
        QCOMPARE(r.f.comm.opens, 0);
    r.checkEndState();
}

QTEST_GUILESS_MAIN(TestSendData)
#include "tst_send_data.moc"
