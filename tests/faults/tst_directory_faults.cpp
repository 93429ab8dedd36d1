// The directory commands through the real port on a pseudo-terminal against the virtual
// control, with and without a fault. Each case checks what the control was sent and still holds,
// what is shown, the record and the end state. A port failure at each step of map and delete:
// tests/dialogue.

#include "directory.h"
#include "fault_support.h"
#include "real_link.h"

#include <QDir>

namespace {
const QStringList C303{"--type", "303"}, C504{"--type", "504"};
const QStringList Programs{"A.NC", "B.NC", "C.NC", "D.NC"};
} // namespace

class TstDirectoryFaults : public QObject {
    Q_OBJECT
private slots:
    void directory_data() {
        QTest::addColumn<QStringList>("control"); // a 303 maps, changes, executes; a 504 deletes
        QTest::addColumn<QString>("fault");       // see armFault
        QTest::addColumn<B>("arrived");           // at the control, exactly
        QTest::addColumn<QString>("shown");       // Text1 (map 303); none if empty
        QTest::addColumn<QString>("outcome");     // the kind the record is left with
        QTest::addColumn<QString>("event");       // the control's log of the command; none if empty
        row("map: window closed in the listing wait", C303 + QStringList{"--stall-mid-line", "2"},
            "close at STALLED", "MC\r" + Go + Go, "A.NC\r\nB.", "interrupted", "");
        row("delete: window closed in the choice", C504, "close at list",
            "MC,/ISO\r" + Go.repeated(5), "", "interrupted", "");
        row("change", C303, "CC", B("CC"), "", "done", "CMD CC");
        row("execute", C303, "CE", B("CE"), "", "done", "CMD CE");
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
        const bool is303 = control[1] == u"303";
        RealLink r(link, is303 ? 1 : 2, 5);
        QFETCH(QString, fault);
        Trigger trigger;
        const bool twoLetters = fault.startsWith(u'C'); // no fault: the command itself
        if (!twoLetters)
            armFault(
                trigger, fault, vc, link, [&] { r.state.requestEnd(); },
                [&] { return r.screen.list1Visible && r.screen.list1Count() > 0; });
        const qint64 ms = msTaken([&] {
            if (fault == u"CC")
                ChangeContext(r.link);
            else if (fault == u"CE")
                ChangeExecute(r.link);
            else
                is303 ? MapContext(r.link) : DeleteContext(r.link);
        });

        QFETCH(B, arrived);
        const B got = vc.rxSettled(arrived.size());
        QCOMPARE(got, arrived);
        QTEST(outcomeWord(r.link.outcome.kind), "outcome");
        QFETCH(QString, event);
        if (!event.isEmpty()) {
            QVERIFY(vc.waitForEvent(event.section(u' ', 0, 0)));
            QCOMPARE(vc.eventTexts(event.section(u' ', 0, 0)), QStringList{event.section(u' ', 1)});
            QCOMPARE(r.link.outcome.bytes, arrived.size());
        }
        QTEST(r.screen.text1Visible ? r.screen.text1 : QString(), "shown");
        QCOMPARE(QDir(store.path()).entryList(QDir::Files), Programs);
        QCOMPARE(leftOver(r), QString());
        QVERIFY(!r.screen.list1Visible);
        QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

        if (!twoLetters)
            recordFault(QStringLiteral("directory: ") + QTest::currentDataTag(),
                        QStringLiteral("no box"), bytesLost(arrived, got), ms);
    }
};

QTEST_GUILESS_MAIN(TstDirectoryFaults)
#include "tst_directory_faults.moc"
