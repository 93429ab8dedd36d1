// Faults that hit the directory commands, through the real port on a pseudo-terminal against
// the virtual control: the far end gone mid-listing or while the operator chooses, a silent
// control, the window closed in the listing wait and in the choice. Each case checks what the
// control was sent, the one message, what is shown, and the end state.

#include "directory.h"
#include "fault_support.h"
#include "real_link.h"
#include "vcontrol_process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <utility>

using B = QByteArray;

namespace {
const QStringList C303{"--type", "303"}, C504{"--type", "504"};
const B Go("\x10\x37"), Mc = "MC\r" + Go, McIso = "MC,/ISO\r" + Go;
const QStringList Programs{"A.NC", "B.NC", "C.NC", "D.NC"};
} // namespace

class TestDirectoryFaults : public QObject {
    Q_OBJECT
private slots:
    void directory_data();
    void directory();
};

void TestDirectoryFaults::directory_data() {
    QTest::addColumn<QString>("command"); // "map" or "delete"
    QTest::addColumn<QStringList>("control");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<B>("arrived");         // at the control, exactly
    QTest::addColumn<QStringList>("shown"); // Text1's lines (map 303); none if empty
    QTest::addColumn<QString>("deleted");   // the program gone from the control
    QTest::addColumn<QString>("told");      // words of the one critical box; none if empty
    const QStringList quietFrom3 = QStringList{"--silent-from-line", "3"};
    const QStringList none;
    row("map: far end closed mid-listing", "map", C303 + quietFrom3, "stop at SILENT", Mc + Go + Go,
        none, "", "unplugged");
    row("map: USB adapter pulled mid-listing", "map", C303 + quietFrom3, "pull at SILENT",
        Mc + Go + Go, none, "", "unplugged");
    row("map: control silent", "map", C303 + QStringList{"--silent"}, "", Mc, none, "", "");
    row("map: window closed in the listing wait", "map",
        C303 + QStringList{"--stall-mid-line", "2"}, "close at STALLED", Mc + Go,
        QStringList{"A.NC", "B."}, "", "");
    row("delete: far end closed mid-listing", "delete", C504 + quietFrom3, "stop at SILENT",
        McIso + Go + Go, none, "", "unplugged");
    row("delete: USB adapter pulled in the choice", "delete", C504, "pull at list, then pick",
        McIso + Go.repeated(4), none, "", "unplugged");
    row("delete: window closed in the choice", "delete", C504, "close at list",
        McIso + Go.repeated(4), none, "", "");
    row("delete: control silent", "delete", C504 + QStringList{"--silent"}, "", McIso, none, "",
        "");
    row("delete: the choice made", "delete", C504, "pick",
        McIso + Go.repeated(4) + "DC,/ISO/B.NC\r" + Go, none, "B.NC", "");
}

void TestDirectoryFaults::directory() {
    QTemporaryDir store, cfg;
    for (const QString &name : Programs)
        QVERIFY(QFile(store.filePath(name)).open(QIODevice::WriteOnly));
    QFETCH(QStringList, control);
    const QString link = cfg.filePath(QStringLiteral("ttyUSB0"));
    VControlProcess vc;
    QVERIFY2(vc.start(control + QStringList{"--dir", store.path(), "--link", link}),
             qPrintable(vc.errorString()));
    RealLink r(link, control.startsWith("--type") && control[1] == "504" ? 2 : 1, 5);
    r.g.ComSettings = QStringLiteral("COM1:115200,N,8,1");

    QFETCH(QString, fault);
    const bool picks = fault.endsWith(u"pick");
    r.screen.pick = fault == u"pick" ? 1 : -1;
    if (const QString why = hangUpUnavailable(); fault.startsWith(u"pull at") && !why.isEmpty())
        QSKIP(qPrintable(why));
    Trigger trigger;
    const QString event = fault.section(u' ', 2, 2).remove(u',');
    auto when = [&] {
        if (event == u"list")
            return r.screen.list1Visible && r.screen.list1Count() > 0;
        vc.refresh();
        // A stalled control: once the program has taken what came, so that it counts.
        return !vc.eventTexts(event).isEmpty() && (event != u"STALLED" || waitingAt(link) == 0);
    };
    if (fault.startsWith(u"stop"))
        trigger.onceWhen(when, [&] { vc.stop(); });
    else if (fault.startsWith(u"pull"))
        trigger.onceWhen(when, [&] {
            const QString why = hangUp(link);
            QVERIFY2(why.isEmpty(), qPrintable(why));
            QFile::remove(link);
            if (picks) // the operator chooses after the adapter is gone
                r.screen.pick = 1;
        });
    else if (fault.startsWith(u"close"))
        trigger.onceWhen(when, [&] { r.state.requestEnd(); });

    QFETCH(QString, command);
    QElapsedTimer clock;
    clock.start();
    if (command == u"map")
        MapContext(r.link);
    else
        DeleteContext(r.link);
    const qint64 ms = clock.elapsed();

    QFETCH(B, arrived);
    vc.waitUntil([&] { return vc.rx().size() >= arrived.size(); }, 3000);
    QTest::qWait(50);
    vc.refresh();
    QCOMPARE(vc.rx(), arrived);

    QFETCH(QStringList, shown);
    QCOMPARE(r.screen.text1Visible, !shown.isEmpty());
    if (!shown.isEmpty())
        QCOMPARE(r.screen.text1, shown.join(QStringLiteral("\r\n")));
    QFETCH(QString, deleted);
    QStringList left = Programs;
    left.removeAll(deleted);
    QCOMPARE(QDir(store.path()).entryList(QDir::Files), left);

    QFETCH(QString, told);
    const auto boxes = std::exchange(r.screen.boxes, {}); // taken: checked here
    QCOMPARE(boxes.size(), told.isEmpty() ? 0 : 1);
    if (!told.isEmpty()) {
        QVERIFY2(boxes[0].text.contains(told), qPrintable(boxes[0].text));
        QCOMPARE(boxes[0].icon, BoxIcon::Critical);
    }
    QVERIFY(!r.comm.portOpen() && !r.timer.enabled() && !r.screen.list1Visible);
    QCOMPARE(r.screen.pointer, 0);
    QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

    recordFault(QStringLiteral("directory: ") + QTest::currentDataTag(),
                told.isEmpty() ? QStringLiteral("no box") : "critical: " + told,
                bytesLost(arrived, vc.rx()), ms);
}

QTEST_GUILESS_MAIN(TestDirectoryFaults)
#include "tst_directory_faults.moc"
