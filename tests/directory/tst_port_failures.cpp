#include "chunk_script.h"
#include "directory.h"
#include "transfer.h"

#include <QTest>
#include <functional>

using Operation = std::function<void(Link &)>;
Q_DECLARE_METATYPE(Operation)

// A port that cannot be opened, or fails during the wait, ends every operation of the
// control's programs with the end state and one message naming the device and the reason.
class TestPortFailures : public QObject {
    Q_OBJECT

private slots:
    void endState_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("cncType");
        QTest::addColumn<bool>("failsWhileOpen");

        const Operation map = MapContext, receive = ReceiveFile, del = DeleteContext;
        for (bool whileOpen : {false, true}) {
            const char *when = whileOpen ? "fails in the wait" : "cannot open";
            QTest::addRow("map 303, %s", when) << map << 1 << whileOpen;
            QTest::addRow("map 504, %s", when) << map << 2 << whileOpen;
            QTest::addRow("receive 303, %s", when) << receive << 1 << whileOpen;
            QTest::addRow("receive 504, %s", when) << receive << 2 << whileOpen;
            QTest::addRow("delete 504, %s", when) << del << 2 << whileOpen;
        }
        QTest::addRow("CC, cannot open") << Operation(ChangeContext) << 1 << false;
        QTest::addRow("CE, cannot open") << Operation(ChangeExecute) << 1 << false;
    }
    void endState() {
        QFETCH(Operation, operation);
        QFETCH(int, cncType);
        QFETCH(bool, failsWhileOpen);

        FakeLink f;
        f.g.ComSettings = QStringLiteral("COM1:9600,E,7,2");
        f.g.CncType = qint16(cncType);
        const CommError error{QStringLiteral("COM1: (/dev/ttyS0)"),
                              QStringLiteral("No such file or directory")};
        if (failsWhileOpen) {
            // A first line comes, then the adapter is pulled out.
            deliverChunks(f, {"P1\r"});
            f.yield.then([&] { f.comm.deviceError = error; });
        } else {
            f.comm.openError = error;
        }
        operation(f.link);

        QVERIFY(!f.comm.open);
        QVERIFY(!f.timer.on);
        QVERIFY(!f.screen.label1Visible);
        QCOMPARE(f.screen.pointer, 0);
        QCOMPARE(f.screen.boxes.size(), 1);
        QCOMPARE(f.screen.boxes[0].icon, BoxIcon::Critical);
        QVERIFY(f.screen.boxes[0].text.contains(error.device));
        QVERIFY(f.screen.boxes[0].text.contains(error.reason));
        QVERIFY(f.screen.saveRequests.isEmpty());
    }

    // Without a port named in the settings nothing is opened and the operator is told.
    void noPortSetUp() {
        FakeLink f;
        f.g.CncType = 1;
        ReceiveFile(f.link);
        QCOMPARE(f.comm.opens, 0);
        QCOMPARE(f.screen.boxes.size(), 1);
        QCOMPARE(f.screen.pointer, 0);
        QVERIFY(!f.screen.label1Visible);
    }
};

QTEST_GUILESS_MAIN(TestPortFailures)
#include "tst_port_failures.moc"
