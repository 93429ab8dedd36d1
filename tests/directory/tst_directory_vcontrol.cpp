// The directory commands through the real port against the virtual control: every byte that
// reaches the control, what the operator is shown, and what the control holds afterwards.
#include "directory.h"
#include "real_link.h"
#include "rows.h"
#include "vcontrol_process.h"

#include <QDir>

using Operation = std::function<void(Link &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const Operation TwoCC = [](Link &l) { ChangeContext(l), ChangeContext(l); };
const QStringList Both{"A1.NC", "B 2.NC"};
} // namespace

class TstDirectoryVControl : public QObject {
    Q_OBJECT
private slots:
    void wire_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<qint16>("type");
        QTest::addColumn<B>("rx");             // all that the control read
        QTest::addColumn<QString>("shown");    // Text1 on a 303, List1's entries on a 504
        QTest::addColumn<QStringList>("left"); // the control's programs afterwards
        row("map 303", Operation(MapContext), qint16(1), "MC\r" + Go.repeated(3),
            "A1.NC\r\nB 2.NC\r\n", Both);
        row("map 504", Operation(MapContext), qint16(2), "MC,/ISO\r" + Go.repeated(3),
            "A1.NC|B 2.NC", Both);
        row("delete 504, second entry picked", Operation(DeleteContext), qint16(2),
            "MC,/ISO\r" + Go.repeated(3) + "DC,/ISO/B 2.NC\r" + Go, "A1.NC|B 2.NC",
            QStringList{"A1.NC"});
        row("CC twice: two letters alone each time", TwoCC, qint16(1), B("CCCC"), "", Both);
        row("CE", Operation(ChangeExecute), qint16(1), B("CE"), "", Both);
    }
    void wire() {
        QFETCH(Operation, operation);
        QFETCH(qint16, type);
        QFETCH(B, rx);
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
        QCOMPARE(leftOver(r), QString());      // the port closed right behind the write
        QCOMPARE(vc.rxSettled(rx.size()), rx); // no byte lost, nothing more
        QTRY_COMPARE(QDir(store.path()).entryList(QDir::Files), left);
        QTEST(type == 1 ? r.screen.text1 : r.screen.list1.join(u'|'), "shown");
        QVERIFY(!r.g.TimedOut); // a listing ends by the control's EOT, not by the clock
    }
};

QTEST_GUILESS_MAIN(TstDirectoryVControl)
#include "tst_directory_vcontrol.moc"
