#include "chunk_script.h"
#include "directory.h"

#include <QTest>

using Chunks = QList<QByteArray>;

class TestMapContext : public QObject {
    Q_OBJECT

    static void prepare(FakeLink &f, int cncType, const Chunks &chunks) {
        f.g.ComSettings = QStringLiteral("COM2:9600,E,7,2");
        f.g.CncType = qint16(cncType);
        f.g.TimedOut = true; // left by an earlier wait that ran out
        deliverChunks(f, chunks);
    }

    // Port closed, pointer back, clock off, whatever the answer was.
    static void checkEndState(const FakeLink &f, const QByteArray &command) {
        QCOMPARE(f.comm.port, 2);
        QCOMPARE(f.comm.opens, 1);
        QVERIFY(!f.comm.open);
        QVERIFY(!f.timer.on);
        QCOMPARE(f.screen.pointers, (QList<int>{11, 0}));
        QVERIFY(!f.comm.writes.isEmpty());
        QCOMPARE(f.comm.writes.first(), command);
        QCOMPARE(promptsWritten(f), f.comm.writes.size() - 1);
    }

private slots:
    // The listing's rule: EOT counts only in a chunk without CR.
    void replyInText1_data() {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<QByteArray>("shown");
        QTest::addColumn<int>("prompts");
        QTest::addColumn<bool>("endedByEot");

        QTest::newRow("line and EOT in one chunk: line kept, wait runs on")
            << Chunks{"N1\r", "N2\r\x04"} << QByteArray("N1\r\nN2\r\n") << 2 << false;
        QTest::newRow("EOT after the CR is lost, a lone EOT ends it")
            << Chunks{"N1\r\x04", "\x04"} << QByteArray("N1\r\n") << 1 << true;
        QTest::newRow("line in two chunks is joined, one go-ahead")
            << Chunks{"PROG", "1\r", "\x04"} << QByteArray("PROG1\r\n") << 1 << true;
        QTest::newRow("CR LF split: LF goes ahead of the next line")
            << Chunks{"A\r", "\nB\r", "\x04"} << QByteArray("A\r\n\nB\r\n") << 2 << true;
        QTest::newRow("EOT first: nothing shown, no time-out")
            << Chunks{"\x04", "A\r"} << QByteArray() << 0 << true;
        QTest::newRow("time-out in the middle of a line shows it")
            << Chunks{"A\r", "BC"} << QByteArray("A\r\nBC") << 1 << false;
        QTest::newRow("bytes above 127 shown as Latin-1")
            << Chunks{"\xC4\xE9\xFF\r", "\x04"} << QByteArray("\xC4\xE9\xFF\r\n") << 1 << true;
    }
    void replyInText1() {
        QFETCH(Chunks, chunks);
        QFETCH(QByteArray, shown);
        QFETCH(int, prompts);
        QFETCH(bool, endedByEot);

        FakeLink f;
        prepare(f, 1, chunks);
        MapContext(f.link);

        checkEndState(f, QByteArray("MC\r\x10\x37"));
        QCOMPARE(promptsWritten(f), prompts);
        QCOMPARE(f.g.TimedOut, !endedByEot);
        if (endedByEot)
            QCOMPARE(f.yield.idlePasses, 0);
        QCOMPARE(f.screen.text1Visible, !shown.isEmpty());
        QCOMPARE(f.screen.text1, QString::fromLatin1(shown));
        QVERIFY(!f.screen.list1Visible);
    }

    void replyInList1_data() {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<bool>("listShown");
        QTest::addColumn<QStringList>("entries");

        QTest::newRow("entries in order, empty and spaced ones kept")
            << Chunks{"P1\r", "\r", " P 3 \r", "\x04"} << true << QStringList{"P1", "", " P 3 "};
        QTest::newRow("LF late from the control starts the next entry")
            << Chunks{"P1\r", "\nP2\r", "\x04"} << true << QStringList{"P1", "\nP2"};
        QTest::newRow("time-out mid line: only whole lines listed")
            << Chunks{"P1\r", "P2"} << true << QStringList{"P1"};
        QTest::newRow("answer without CR: list shown empty")
            << Chunks{"ABC"} << true << QStringList{};
        QTest::newRow("line and EOT in one chunk")
            << Chunks{"P1\r\x04"} << true << QStringList{"P1"};
        QTest::newRow("Latin-1 entry") << Chunks{"\xC4\xE9\xFF\r", "\x04"} << true
                                       << QStringList{QStringLiteral("\u00C4\u00E9\u00FF")};
        QTest::newRow("EOT first: earlier list kept, not shown")
            << Chunks{"\x04"} << false << QStringList{"OLD"};
    }
    void replyInList1() {
        QFETCH(Chunks, chunks);
        QFETCH(bool, listShown);
        QFETCH(QStringList, entries);

        FakeLink f;
        prepare(f, 2, chunks);
        f.screen.list1 = QStringList{"OLD"};
        f.screen.text1Visible = true;
        MapContext(f.link);

        checkEndState(f, QByteArray("MC,/ISO\r\x10\x37"));
        QCOMPARE(f.screen.list1Visible, listShown);
        QCOMPARE(f.screen.text1Visible, !listShown);
        QCOMPARE(f.screen.list1, entries);
    }

    void otherControlsDoNothing_data() {
        QTest::addColumn<int>("cncType");
        QTest::newRow("XonXoff") << 3;
        QTest::newRow("none read") << 0;
    }
    void otherControlsDoNothing() {
        QFETCH(int, cncType);
        FakeLink f;
        prepare(f, cncType, {"A\r"});
        MapContext(f.link);
        QCOMPARE(f.comm.opens, 0);
        QVERIFY(f.comm.writes.isEmpty());
        QVERIFY(f.screen.pointers.isEmpty());
        QCOMPARE(f.yield.passes, 0);
    }
};

QTEST_GUILESS_MAIN(TestMapContext)
#include "tst_map_context.moc"
