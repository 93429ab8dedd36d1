// The directory commands through the real port against the virtual control: every byte that
// reaches the control, what the operator is shown, and what the control holds afterwards.
#include "directory.h"
#include "real_link.h"
#include "vcontrol_process.h"

#include <QDir>
#include <QTest>

using Operation = std::function<void(Link &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QByteArray Go("\x10\x37");
const Operation TwoCC = [](Link &l) { ChangeContext(l), ChangeContext(l); };
void row(const char *name, const Operation &op, qint16 type, const QByteArray &rx,
         const QString &shown, const QStringList &left = {"A1.NC", "B 2.NC"}) {
    QTest::newRow(name) << op << type << rx << shown << left;
}
} // namespace

class TestDirectoryVControl : public QObject {
    Q_OBJECT
private slots:
    void wire_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<qint16>("type");
        QTest::addColumn<QByteArray>("rx");    // all that the control read
        QTest::addColumn<QString>("shown");    // Text1 on a 303, List1's entries on a 504
        QTest::addColumn<QStringList>("left"); // the control's programs afterwards
        row("map 303", MapContext, 1, "MC\r" + Go.repeated(3), "A1.NC\r\nB 2.NC\r\n");
        row("map 504", MapContext, 2, "MC,/ISO\r" + Go.repeated(3), "A1.NC|B 2.NC");
        row("delete 504, second entry picked", DeleteContext, 2,
            "MC,/ISO\r" + Go.repeated(3) + "DC,/ISO/B 2.NC\r" + Go, "A1.NC|B 2.NC", {"A1.NC"});
        row("delete 303: nothing", DeleteContext, 1, "", "");
        row("CC twice: two letters alone each time", TwoCC, 1, "CCCC", "");
        row("CE", ChangeExecute, 1, "CE", "");
        row("CC, no control read", ChangeContext, 0, "CC", "");
        row("CC on 504: nothing", ChangeContext, 2, "", "");
        row("CE on XonXoff: nothing", ChangeExecute, 3, "", "");
        row("map on XonXoff: nothing", MapContext, 3, "", "");
        row("map, no control read: nothing", MapContext, 0, "", "");
        row("delete on XonXoff: nothing", DeleteContext, 3, "", "");
    }
    void wire() {
        QFETCH(Operation, operation);
        QFETCH(qint16, type);
        QFETCH(QByteArray, rx);
        QFETCH(QStringList, left);
        VControlProcess vc;
        QTemporaryDir store;
        for (const char *name : {"A1.NC", "B 2.NC"}) {
            QFile program(store.filePath(QString::fromLatin1(name)));
            QVERIFY(program.open(QIODevice::WriteOnly) && program.write("N1 M30\r") == 7);
        }
        QVERIFY2(vc.start({"--type", type == 1 ? "303" : "504", "--dir", store.path()}),
                 qPrintable(vc.errorString()));
        RealLink r(vc.device(), type);
        r.screen.pick = 1;
        operation(r.link);
        QVERIFY(!r.comm.portOpen()); // closed right behind the write, no byte lost
        QVERIFY(vc.waitUntil([&] { return vc.rx().size() >= rx.size(); }, 3000));
        QTRY_COMPARE(QDir(store.path()).entryList(QDir::Files), left);
        QTest::qWait(50); // nothing more may follow
        vc.refresh();
        QCOMPARE(vc.rx(), rx);
        QTEST(type == 1 ? r.screen.text1 : r.screen.list1.join(u'|'), "shown");
        QVERIFY(!r.g.TimedOut); // a listing ends by the control's EOT
        QCOMPARE(r.screen.pointer, 0);
        QVERIFY(r.screen.boxes.isEmpty());
        QCOMPARE(r.screen.list1Visible, rx.startsWith("MC,") && !rx.contains("DC")); // after a map
    }
};

QTEST_GUILESS_MAIN(TestDirectoryVControl)
#include "tst_directory_vcontrol.moc"
