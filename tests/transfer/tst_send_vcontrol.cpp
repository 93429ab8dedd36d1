// SendData through the real port on a pseudo-terminal against the virtual control: the exact
// bytes that reach the control, per control type and fault. The clock runs 20 times faster
// than its nominal intervals, so no case waits out a real time-out.
#include "event_loop_yield.h"
#include "fake_link.h"
#include "qt_link_timer.h"
#include "send_cases.h"
#include "serial_comm.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

namespace {
// A busy window: each pass takes a while, so a halt from the control finds lines unsent.
struct SlowYield : EventLoopYield {
    unsigned long us = 0;
    void DoEvents() override {
        QThread::usleep(us);
        EventLoopYield::DoEvents();
    }
};

} // namespace

class TestSendVControl : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void wire_data();
    void wire();
    void absentDevice();
};

void TestSendVControl::initTestCase() {
    if (VControlProcess::program().isEmpty())
        QFAIL("DNC_VCONTROL is not set");
}

void TestSendVControl::wire_data() {
    QTest::addColumn<QStringList>("control");
    QTest::addColumn<qint16>("type");
    QTest::addColumn<qint16>("option"); // 1: NoSpace, 2: WaitXon
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("rx"); // what reaches the control
    QTest::addColumn<QString>("told");  // "", "timeout" or "critical"

    const QStringList c303{"--type", "303"}, c504{"--type", "504"};
    const QStringList cXon{"--type", "XonXoff", "--rate", "200000", "--end-gap", "200"};
    const QByteArray eot("\x04\r"), xon("\x11");
    const QStringList byType[] = {{}, c303, c504, cXon};
    for (const WireCase &c : WireCases())
        QTest::newRow(c.name.constData())
            << byType[c.type] << c.type << c.noSpace << c.file << c.wire << "";
    QTest::newRow("XonXoff waits for X-on") << cXon + QStringList{"--xon-at-start"} << qint16(3)
                                            << qint16(2) << Lines(5) << xon + Lines(5, "\r") << "";
    QTest::newRow("XonXoff, no opening X-on")
        << cXon << qint16(3) << qint16(2) << Lines(5) << xon << "timeout";
    // Kept below the X-off mark: a pseudo-terminal takes in all that is written, whether the
    // control has read it or not, so nothing but a real line bounds what is in flight.
    QTest::newRow("XonXoff halted and resumed")
        << cXon + QStringList{"--halt-after-line", "2", "--halt-char", "3f", "--halt-ms", "150"}
        << qint16(3) << qint16(0) << Lines(600) << xon + Lines(600, "\r") << "";
    QTest::newRow("504 time-out on line 5 of 10")
        << c504 + QStringList{"--silent-from-line", "5"} << qint16(2) << qint16(0) << Lines(10)
        << "R\r" + Lines(5, "\r") + eot << "timeout";
    QTest::newRow("303 control dies after line 3")
        << c303 + QStringList{"--crash-after-line", "3"} << qint16(1) << qint16(0) << Lines(10)
        << "R\r" + Lines(3, "\r") << "critical";
}

void TestSendVControl::wire() {
    QFETCH(QStringList, control);
    QFETCH(qint16, type);
    QFETCH(qint16, option);
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, rx);
    QFETCH(QString, told);

    VControlProcess vc;
    QVERIFY2(vc.start(control), qPrintable(vc.errorString()));
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("P.tap"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly) && out.write(file) == file.size());
    out.close();

    Globals g;
    g.ComSettings = QStringLiteral("COM1:9600,N,8,1");
    g.CncType = type;
    g.NoSpace = option & 1;
    g.WaitXon = option & 2 ? 1 : 0;
    g.CR = "\r";
    SerialComm comm(vc.device());
    QtLinkTimer timer(g, 20);
    SlowYield yield;
    if (control.contains("--halt-after-line"))
        yield.us = 1000;
    RecordingScreen screen;
    CmDialog dialog;
    Link link{g, comm, timer, yield, screen, dialog};
    SendData(link, path);

    // The control logs what it read a moment after the port has closed.
    vc.waitUntil([&] { return vc.rx().size() >= rx.size(); }, 3000);
    QTest::qWait(50);
    vc.refresh();
    QCOMPARE(vc.rx(), rx);
    QCOMPARE(screen.boxes.size(), told.isEmpty() ? 0 : 1);
    if (!told.isEmpty()) {
        QCOMPARE(screen.boxes[0].icon, told == "timeout" ? BoxIcon::None : BoxIcon::Critical);
        if (told == "critical")
            QVERIFY2(screen.boxes[0].text.contains(vc.device()), qPrintable(screen.boxes[0].text));
    }
    QVERIFY(vc.eventTexts("OVERRUN").isEmpty());
    // Halted, the sender puts nothing more on the line until the X-on.
    const QStringList halt = vc.eventTexts("HALT");
    if (!halt.isEmpty()) {
        qint64 haltUs = -1, xonUs = -1;
        for (const auto &e : vc.events()) {
            if (e.word == "HALT" && haltUs < 0)
                haltUs = e.us;
            if (e.word == "XON" && haltUs >= 0 && xonUs < 0)
                xonUs = e.us;
        }
        QVERIFY(xonUs > haltUs);
        for (const auto &c : vc.chunks())
            QVERIFY2(!(c.rx && c.us > haltUs + 50000 && c.us < xonUs), "sent while halted");
    }
    QVERIFY(!comm.portOpen());
    QVERIFY(!timer.enabled());
    QVERIFY(!screen.label1Visible);
    QCOMPARE(screen.pointer, 0);
}

void TestSendVControl::absentDevice() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("P.tap"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly) && out.write("G1\r\n") == 4);
    out.close();
    FakeLink f; // the real port in its place
    f.g.ComSettings = QStringLiteral("COM1:9600,N,8,1");
    f.g.CncType = 1;
    SerialComm comm(QStringLiteral("/dev/dnc-absent"));
    QtLinkTimer timer(f.g, 20);
    Link link{f.g, comm, timer, f.yield, f.screen, f.dialog};
    SendData(link, path);
    QCOMPARE(f.screen.boxes.size(), 1);
    QCOMPARE(f.screen.boxes[0].icon, BoxIcon::Critical);
    QVERIFY(f.screen.boxes[0].text.contains(QStringLiteral("/dev/dnc-absent")));
    QVERIFY(!comm.portOpen());
    QCOMPARE(f.screen.pointer, 0);
    QVERIFY(!f.screen.label1Visible);
}

QTEST_GUILESS_MAIN(TestSendVControl)
#include "tst_send_vcontrol.moc"
