#include "chunk_script.h"
#include "directory.h"

#include <QTest>

using Lines = QList<QByteArray>;

namespace {
const QByteArray ListCommand("MC,/ISO\r\x10\x37");
const QByteArray Prompt("\x10\x37");
} // namespace

class TestSelectCncFile : public QObject {
    Q_OBJECT

    static void prepare(FakeLink &f) {
        f.g.ComSettings = QStringLiteral("COM1:9600,E,7,2");
        f.g.CncType = 2;
        f.g.TimedOut = true; // left by an earlier wait that ran out
    }

private slots:
    // DeleteContext drives the choice, so the wire shows what was chosen.
    void choiceAndDelete_data() {
        QTest::addColumn<Lines>("listing"); // empty: the control does not answer
        QTest::addColumn<int>("pick");      // -1: the window is closed instead
        QTest::addColumn<QByteArray>("name");

        QTest::newRow("entry picked") << Lines{"P1\r", "P2\r", "P3\r"} << 1 << QByteArray("P2");
        QTest::newRow("one entry, picked") << Lines{"ONLY\r"} << 0 << QByteArray("ONLY");
        QTest::newRow("one entry, never picked: window closed")
            << Lines{"ONLY\r"} << -1 << QByteArray();
        QTest::newRow("window closed during the choice")
            << Lines{"P1\r", "P2\r"} << -1 << QByteArray();
        QTest::newRow("empty entry chosen is nothing chosen")
            << Lines{"\r", "P2\r"} << 0 << QByteArray();
        QTest::newRow("spaces kept in the name") << Lines{" P 3 \r"} << 0 << QByteArray(" P 3 ");
        QTest::newRow("name of bytes above 127 goes back unchanged")
            << Lines{"\xE9T\xFF\r"} << 0 << QByteArray("\xE9T\xFF");
        QTest::newRow("no answer: nothing to choose") << Lines{} << 0 << QByteArray();
    }
    void choiceAndDelete() {
        QFETCH(Lines, listing);
        QFETCH(int, pick);
        QFETCH(QByteArray, name);

        FakeLink f;
        prepare(f);
        if (!listing.isEmpty())
            answerCommands(f, {{"MC,/ISO", listing}});
        int pointerWhileChoosing = -1;
        f.yield.idle = [&] {
            if (!f.screen.list1Visible || f.screen.listIndex >= 0) {
                f.timer.fire();
                return;
            }
            pointerWhileChoosing = f.screen.pointer;
            if (pick < 0)
                f.g.Closing = true;
            else
                f.screen.listIndex = pick;
        };
        DeleteContext(f.link);

        QByteArray expected = ListCommand + Prompt.repeated(listing.size());
        if (!name.isEmpty())
            expected += "DC,/ISO/" + name + "\r\x10\x37";
        QCOMPARE(f.comm.written(), expected);
        QCOMPARE(f.comm.opens, 1);
        QVERIFY(!f.comm.open);
        QVERIFY(!f.screen.list1Visible);
        QCOMPARE(f.screen.pointer, 0);
        if (!listing.isEmpty()) {
            QCOMPARE(pointerWhileChoosing, 0);
            QCOMPARE(f.screen.repaints, 1);
        }
    }

    // An answer without a whole line leaves nothing to choose: no wait for the operator.
    void noWholeLine() {
        FakeLink f;
        prepare(f);
        f.comm.setPortOpen(true);
        deliverChunks(f, {"ABC"});
        QCOMPARE(SelectCNCFile(f.link), QByteArray());
        QVERIFY(!f.screen.list1Visible);
        QCOMPARE(f.screen.pointer, 0);
        QVERIFY(f.comm.open); // the caller's to close
    }

    void staleSelectionDoesNotCount() {
        FakeLink f;
        prepare(f);
        f.comm.setPortOpen(true);
        f.screen.list1 = QStringList{"OLD1", "OLD2"};
        f.screen.listIndex = 1;
        answerCommands(f, {{"MC,/ISO", {"A\r", "B\r"}}});
        long passesAtShow = -1;
        f.yield.idle = [&] {
            if (f.screen.list1Visible && passesAtShow < 0)
                passesAtShow = f.yield.passes;
            // The operator takes a while before clicking the first entry.
            if (passesAtShow >= 0 && f.yield.passes - passesAtShow == 3)
                f.screen.listIndex = 0;
            else
                f.timer.fire();
        };
        QCOMPARE(SelectCNCFile(f.link), QByteArray("A"));
        QCOMPARE(f.screen.list1, (QStringList{"A", "B"}));
    }
};

QTEST_GUILESS_MAIN(TestSelectCncFile)
#include "tst_select_cnc_file.moc"
