// The whole program as an operator uses it: the window, the real port on a pseudo-terminal, the
// real clock and event loop, against the virtual control, with a tool database. The window's
// receive over the real port, and its faults, are in tst_window_faults.

#include "dnc_window.h"
#include "event_loop_yield.h"
#include "files.h"
#include "qt_link_timer.h"
#include "serial_comm.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "tool_list_model.h"
#include "vcontrol_process.h"
#include "window_guard.h"

#include <QtWidgets>

class TstWindowVControl : public QObject {
    Q_OBJECT
private slots:
    void sendByQuickChoiceCountsTools();
};

void TstWindowVControl::sendByQuickChoiceCountsTools() {
    ToolDbFixture db;
    const QByteArray program = "(PART)\r\n/T4 DRILL 8.5\r\n%\r\nN10 G0 X0\r\nN20 M30\r\n";
    db.program(program, QStringLiteral("PART.tap"));
    VControlProcess vc;
    QVERIFY2(vc.start({"--type", "303"}), qPrintable(vc.errorString()));
    qputenv("DNC_COM1", vc.device().toLocal8Bit());

    Globals g;
    g.iniPath = db.folder() + QStringLiteral("/dnc.ini");
    QVERIFY(writeFile(g.iniPath, "[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=1\n"
                                 "CNC=303\nTapeDir=" +
                                     db.folder().toUtf8() + "\n"));
    OperationState state;
    SerialComm comm;
    comm.setOperationState(&state);
    QtLinkTimer timer(g);
    EventLoopYield yield(comm, timer);
    DncWindow w(g, state, comm, timer, yield, "-b -d " + db.path());
    w.show();
    WindowGuard guard; // checked before the window goes

    guard.expect<QInputDialog>([](QInputDialog *box) {
        box->setTextValue(QStringLiteral("PART"));
        box->accept();
    });
    QTest::mouseClick(w.Command1[1], Qt::LeftButton);
    QVERIFY(vc.waitForEvent(QStringLiteral("RECEIVED")));
    QCOMPARE(vc.rx(), "R\r" + QByteArray(program).replace("\r\n", "\r") + "\x04\r");
    QVERIFY(!comm.portOpen() && !w.Label1->isVisible() && w.Command1[1]->isEnabled());
    QCOMPARE(w.DBGrid1->toolModel()->index(0, 0).data().toString(), QStringLiteral("drill 8.5"));
}

QTEST_MAIN(TstWindowVControl)
#include "tst_window_vcontrol.moc"
