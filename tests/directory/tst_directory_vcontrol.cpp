// The directory commands through the real port against the virtual control: the exact bytes
// that reach the control, and what the operator is shown.
#include "directory.h"
#include "real_link.h"
#include "vcontrol_process.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using Operation = std::function<void(Link &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QByteArray Prompt("\x10\x37");

// A control holding the given programs; each holds one line.
bool startControl(VControlProcess &vc, const QTemporaryDir &store, const QString &type,
                  const QStringList &programs) {
    for (const QString &name : programs) {
        QFile f(store.filePath(name));
        if (!f.open(QIODevice::WriteOnly) || f.write("N1 M30\r") != 7)
            return false;
    }
    return vc.start({"--type", type, "--dir", store.path()});
}

// What the control has read once the program has closed the port.
QByteArray rxAfterClose(VControlProcess &vc, qsizetype expected) {
    vc.waitUntil([&] { return vc.rx().size() >= expected; }, 3000);
    QTest::qWait(50); // nothing more may follow
    vc.refresh();
    return vc.rx();
}
} // namespace

class TestDirectoryVControl : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (VControlProcess::program().isEmpty())
            QFAIL("DNC_VCONTROL is not set");
    }

    void map_data() {
        QTest::addColumn<qint16>("type");
        QTest::addColumn<QStringList>("programs");
        QTest::addColumn<QByteArray>("rx");

        const QStringList three{"A1.NC", "B 2.NC", "C3.NC"};
        QTest::newRow("303") << qint16(1) << three << "MC\r" + Prompt + Prompt.repeated(3);
        QTest::newRow("504") << qint16(2) << three << "MC,/ISO\r" + Prompt + Prompt.repeated(3);
        QTest::newRow("504, empty store") << qint16(2) << QStringList{} << "MC,/ISO\r" + Prompt;
    }
    void map() {
        QFETCH(qint16, type);
        QFETCH(QStringList, programs);
        QFETCH(QByteArray, rx);

        VControlProcess vc;
        QTemporaryDir store;
        QVERIFY2(startControl(vc, store, type == 1 ? "303" : "504", programs),
                 qPrintable(vc.errorString()));
        RealLink r(vc.device(), type);
        MapContext(r.link);

        QCOMPARE(rxAfterClose(vc, rx.size()), rx);
        QVERIFY(!r.g.TimedOut); // ended by the control's EOT
        if (type == 1) {
            QCOMPARE(r.screen.text1, programs.join("\r\n") + (programs.isEmpty() ? "" : "\r\n"));
        } else {
            QCOMPARE(r.screen.list1Visible, !programs.isEmpty());
            QCOMPARE(r.screen.list1, programs);
        }
        QVERIFY(!r.comm.portOpen());
        QCOMPARE(r.screen.pointer, 0);
        QVERIFY(r.screen.boxes.isEmpty());
    }

    void deleteChosen() {
        VControlProcess vc;
        QTemporaryDir store;
        QVERIFY2(startControl(vc, store, "504", {"A1.NC", "B 2.NC"}), qPrintable(vc.errorString()));
        RealLink r(vc.device(), 2);
        r.screen.pick = 1;
        DeleteContext(r.link);

        const QByteArray rx = "MC,/ISO\r" + Prompt + Prompt + Prompt + "DC,/ISO/B 2.NC\r" + Prompt;
        QCOMPARE(rxAfterClose(vc, rx.size()), rx);
        QVERIFY(vc.waitForEvent("DELETED"));
        QCOMPARE(vc.eventTexts("DELETED"), QStringList{"B 2.NC"});
        QCOMPARE(QDir(store.path()).entryList(QDir::Files), QStringList{"A1.NC"});
        QVERIFY(!r.comm.portOpen());
        QVERIFY(!r.screen.list1Visible);
        QCOMPARE(r.screen.pointer, 0);
    }

    // The port closes right behind the write; both letters still reach the control.
    void twoLetters_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QByteArray>("rx");
        QTest::newRow("CC") << Operation(ChangeContext) << QByteArray("CC");
        QTest::newRow("CE") << Operation(ChangeExecute) << QByteArray("CE");
    }
    void twoLetters() {
        QFETCH(Operation, operation);
        QFETCH(QByteArray, rx);

        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "303"}), qPrintable(vc.errorString()));
        RealLink r(vc.device(), 1);
        operation(r.link);
        QVERIFY(!r.comm.portOpen());
        QCOMPARE(rxAfterClose(vc, rx.size()), rx);
        QVERIFY(vc.waitForEvent("CMD"));
        QCOMPARE(vc.eventTexts("CMD"), QStringList{QString::fromLatin1(rx)});
    }
};

QTEST_GUILESS_MAIN(TestDirectoryVControl)
#include "tst_directory_vcontrol.moc"
