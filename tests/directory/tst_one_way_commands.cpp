#include "directory.h"
#include "fake_link.h"

#include <QTest>
#include <functional>

using Operation = std::function<void(Link &)>;
Q_DECLARE_METATYPE(Operation)

class TestOneWayCommands : public QObject {
    Q_OBJECT

private slots:
    void twoLetters_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("cncType");
        QTest::addColumn<QByteArray>("written"); // empty: the port is not opened

        const Operation cc = ChangeContext;
        const Operation ce = ChangeExecute;
        QTest::newRow("CC on 303") << cc << 1 << QByteArray("CC");
        QTest::newRow("CE on 303") << ce << 1 << QByteArray("CE");
        QTest::newRow("CC with no control read yet") << cc << 0 << QByteArray("CC");
        QTest::newRow("CC on 504: nothing") << cc << 2 << QByteArray();
        QTest::newRow("CE on XonXoff: nothing") << ce << 3 << QByteArray();
    }
    void twoLetters() {
        QFETCH(Operation, operation);
        QFETCH(int, cncType);
        QFETCH(QByteArray, written);

        FakeLink f;
        f.g.ComSettings = QStringLiteral("COM3:9600,E,7,2");
        f.g.CncType = qint16(cncType);
        // Two commands in a row: each opens, writes its two letters alone, and closes.
        for (int round = 1; round <= 2; ++round) {
            operation(f.link);
            QVERIFY(!f.comm.open);
            if (written.isEmpty()) {
                QCOMPARE(f.comm.opens, 0);
                QVERIFY(f.comm.writes.isEmpty());
                QVERIFY(f.screen.pointers.isEmpty());
                continue;
            }
            QCOMPARE(f.comm.port, 3);
            QCOMPARE(f.comm.opens, round);
            QCOMPARE(f.comm.closes, round);
            QCOMPARE(f.comm.writes.size(), round);
            QCOMPARE(f.comm.writes.last(), written);
            QCOMPARE(f.screen.pointer, 0);
        }
        QCOMPARE(f.yield.passes, 0);
    }

    // Only the 504 has a delete command; the others do not open the port.
    void deleteOnOtherControls_data() {
        QTest::addColumn<int>("cncType");
        QTest::addColumn<QList<int>>("pointers");
        QTest::newRow("303") << 1 << QList<int>{11, 0};
        QTest::newRow("none read") << 0 << QList<int>{11, 0};
        QTest::newRow("XonXoff") << 3 << QList<int>{};
    }
    void deleteOnOtherControls() {
        QFETCH(int, cncType);
        QFETCH(QList<int>, pointers);
        FakeLink f;
        f.g.ComSettings = QStringLiteral("COM1:9600,E,7,2");
        f.g.CncType = qint16(cncType);
        DeleteContext(f.link);
        QCOMPARE(f.comm.opens, 0);
        QVERIFY(f.comm.writes.isEmpty());
        QCOMPARE(f.screen.pointers, pointers);
        QVERIFY(f.screen.boxes.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestOneWayCommands)
#include "tst_one_way_commands.moc"
