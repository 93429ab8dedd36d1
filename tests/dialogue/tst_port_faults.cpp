// A port that fails at any step of an operation ends it the same way: the port closed, the
// clock stopped, Label1 hidden, the pointer back, one critical box that names the device. A
// clean run counts the port calls of an operation; then the port fails at each in turn.
#include "chunk_script.h"
#include "directory.h"
#include "files.h"
#include "rows.h"
#include "transfer.h"

#include <QTemporaryDir>

using Operation = std::function<void(Link &)>;
using Script = std::function<void(FakeLink &)>; // the far end and the operator
Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(Script)

class TstPortFaults : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_program = m_dir.filePath(QStringLiteral("P.tap"));

private slots:
    void initTestCase() { QVERIFY(writeFile(m_program, numberedLines(3))); }

    void eachStep_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("type");
        QTest::addColumn<Script>("script");
        const Script goAheads = [](FakeLink &f) {
            f.comm.onOutput = [&f](const B &) { f.comm.inbox += Go; };
        };
        const Script program = [](FakeLink &f) {
            answerCommands(f, {{"PC", {"N1\r", "N2\r"}}});
            f.yield.idle = [&f] { f.timer.fire(); };
        };
        const Script listing = [](FakeLink &f) {
            answerCommands(f, {{"MC", {"A.NC\r", "B.NC\r"}}, {"PC", {"N1\r"}}});
            pickWhenShown(f, 1);
        };
        row("send, 303", Operation([this](Link &l) { SendData(l, m_program); }), 1, goAheads);
        row("receive, 303", Operation(ReceiveFile), 1, program);
        row("receive, 504", Operation(ReceiveFile), 2, listing);
        row("map, 303", Operation(MapContext), 1, listing);
        row("delete, 504", Operation(DeleteContext), 2, listing);
    }
    void eachStep() {
        QFETCH(Operation, operation);
        QFETCH(int, type);
        QFETCH(Script, script);
        const auto run = [&](int faultAt, FakeLink &f) {
            f.g.ComSettings = QStringLiteral("COM2:9600,E,7,2");
            f.g.CncType = qint16(type);
            script(f);
            f.comm.faultAt = faultAt;
            operation(f.link);
        };
        int steps = 0;
        {
            FakeLink f;
            run(0, f);
            QCOMPARE(leftOver(f), QString());
            steps = f.comm.calls;
        }
        QVERIFY(steps >= 3);
        for (int k = 1; k <= steps && !QTest::currentTestFailed(); ++k) {
            FakeLink f;
            run(k, f);
            const QString at = QStringLiteral("a fault at step %1 of %2").arg(k).arg(steps);
            QVERIFY2(leftOver(f).isEmpty(), qPrintable(at + " leaves " + leftOver(f)));
            const RecordingScreen::Box box = f.screen.takeBox();
            QVERIFY2(box.icon == BoxIcon::Critical && box.text.contains(f.comm.fault.device),
                     qPrintable(at + " tells: " + box.text));
            // What came before the fault is offered for saving, and only that.
            QVERIFY2(f.screen.saveRequests.isEmpty() == f.screen.text1.isEmpty(),
                     qPrintable(at + (f.screen.text1.isEmpty() ? " offers a save"
                                                               : " does not offer what came")));
        }
    }
};

QTEST_GUILESS_MAIN(TstPortFaults)
#include "tst_port_faults.moc"
