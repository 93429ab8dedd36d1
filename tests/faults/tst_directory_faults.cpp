// Faults that hit the directory commands, through the real port on a pseudo-terminal against
// the virtual control. Each case checks what the control was sent and holds, the one message,
// what is shown, and the end state.

#include "directory.h"
#include "fault_support.h"
#include "real_link.h"

#include <QDir>

namespace {
const QStringList C303{"--type", "303"}, C504{"--type", "504"};
const B Mc = "MC\r" + Go, McIso = "MC,/ISO\r" + Go;
const QStringList Programs{"A.NC", "B.NC", "C.NC", "D.NC"};
} // namespace

class TstDirectoryFaults : public QObject {
    Q_OBJECT
private slots:
    void directory_data() {
        QTest::addColumn<QStringList>("control"); // a 303 maps, a 504 deletes
        QTest::addColumn<QString>("fault");       // see armFault; "pick": B.NC is chosen
        QTest::addColumn<B>("arrived");           // at the control, exactly
        QTest::addColumn<QString>("shown");       // Text1 (map 303); none if empty
        QTest::addColumn<QString>("told");        // words of the one critical box; none if empty
        const QStringList quietFrom3{"--silent-from-line", "3"}, silent{"--silent"};
        row("map: far end closed mid-listing", C303 + quietFrom3, "stop at SILENT", Mc + Go + Go,
            "", "unplugged");
        row("map: USB adapter pulled mid-listing", C303 + quietFrom3, "pull at SILENT",
            Mc + Go + Go, "", "unplugged");
        row("map: control silent", C303 + silent, "", Mc, "", "");
        row("map: window closed in the listing wait", C303 + QStringList{"--stall-mid-line", "2"},
            "close at STALLED", Mc + Go, "A.NC\r\nB.", "");
        row("delete: far end closed mid-listing", C504 + quietFrom3, "stop at SILENT",
            McIso + Go + Go, "", "unplugged");
        row("delete: USB adapter pulled in the choice", C504, "pull at list, then pick",
            McIso + Go.repeated(4), "", "unplugged");
        row("delete: window closed in the choice", C504, "close at list", McIso + Go.repeated(4),
            "", "");
        row("delete: control silent", C504 + silent, "", McIso, "", "");
        row("delete: the choice made", C504, "pick", McIso + Go.repeated(4) + "DC,/ISO/B.NC\r" + Go,
            "", "");
    }
    void directory() {
        QTemporaryDir store, cfg;
        for (const QString &name : Programs)
            QVERIFY(writeFile(store.filePath(name), B()));
        QFETCH(QStringList, control);
        const QString link = cfg.filePath(QStringLiteral("ttyUSB0"));
        VControlProcess vc;
        QVERIFY2(vc.start(control + QStringList{"--dir", store.path(), "--link", link}),
                 qPrintable(vc.errorString()));
        const bool map = control[1] == u"303";
        RealLink r(link, map ? 1 : 2, 5);
        QFETCH(QString, fault);
        r.screen.pick = fault == u"pick" ? 1 : -1;
        Trigger trigger;
        const QString why = armFault(
            trigger, fault, vc, link, [&] { r.state.requestEnd(); },
            [&] { return r.screen.list1Visible && r.screen.list1Count() > 0; },
            [&] { // the operator chooses after the adapter is gone
                if (fault.endsWith(u"pick"))
                    r.screen.pick = 1;
            });
        if (!why.isEmpty())
            QSKIP(qPrintable(why));
        const qint64 ms = msTaken([&] { map ? MapContext(r.link) : DeleteContext(r.link); });

        QFETCH(B, arrived);
        const B got = vc.rxSettled(arrived.size());
        QCOMPARE(got, arrived);
        QTEST(r.screen.text1Visible ? r.screen.text1 : QString(), "shown");
        QStringList left = Programs;
        left.removeAll(fault == u"pick" ? QStringLiteral("B.NC") : QString());
        QCOMPARE(QDir(store.path()).entryList(QDir::Files), left);
        QFETCH(QString, told);
        QCOMPARE(takeBoxes(r.screen, told), QString());
        QCOMPARE(leftOver(r), QString());
        QVERIFY(!r.screen.list1Visible);
        QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

        recordFault(QStringLiteral("directory: ") + QTest::currentDataTag(),
                    told.isEmpty() ? QStringLiteral("no box") : "critical: " + told,
                    bytesLost(arrived, got), ms);
    }
};

QTEST_GUILESS_MAIN(TstDirectoryFaults)
#include "tst_directory_faults.moc"
