// The whole program as an operator uses it: the window, the real port on a pseudo-terminal, the
// real clock and event loop, against the virtual control, with a tool database.

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
    void sendByQuickChoiceCountsToolsAndReceiveSaves();
};

void TstWindowVControl::sendByQuickChoiceCountsToolsAndReceiveSaves() {
    ToolDbFixture db;
    const QString folder = QFileInfo(db.path()).absolutePath();
    const QByteArray program = "(PART)\r\n/T4 DRILL 8.5\r\n%\r\nN10 G0 X0\r\nN20 M30\r\n";
    QVERIFY(writeFile(folder + QStringLiteral("/PART.tap"), program));
    QTemporaryDir store;
    QVERIFY(writeFile(store.filePath(QStringLiteral("O1")), program));
    VControlProcess vc;
    QVERIFY2(vc.start({"--type", "303", "--dir", store.path()}), qPrintable(vc.errorString()));
    qputenv("DNC_COM1", vc.device().toLocal8Bit());

    Globals g;
    g.iniPath = folder + QStringLiteral("/dnc.ini");
    QVERIFY(writeFile(g.iniPath, "[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=1\n"
                                 "CNC=303\nTapeDir=" +
                                     folder.toUtf8() + "\nCNCDir=" + folder.toUtf8() + "\n"));
    OperationState state;
    SerialComm comm;
    comm.setOperationState(&state);
    QtLinkTimer timer(g);
    EventLoopYield yield(comm, timer);
    // The database is named from its own folder: its path may hold an option's two letters.
    QDir::setCurrent(folder);
    DncWindow w(g, state, comm, timer, yield, QStringLiteral("-b -d tools.db"));
    w.show();
    WindowGuard guard; // checked before the window goes

    // Send: the quick choice finds PART.tap without a dialog.
    guard.expect<QInputDialog>([](QInputDialog *box) {
        box->setTextValue(QStringLiteral("PART"));
        box->accept();
    });
    QTest::mouseClick(w.Command1[1], Qt::LeftButton);
    QVERIFY(vc.waitForEvent(QStringLiteral("STORED")));
    QCOMPARE(vc.rx(), "R\r" + QByteArray(program).replace("\r\n", "\r") + "\x04\r");
    QVERIFY(!comm.portOpen());
    QVERIFY(!w.Label1->isVisible());
    QCOMPARE(w.DBGrid1->toolModel()->index(0, 0).data().toString(), QStringLiteral("drill 8.5"));

    // Receive: the control sends its program, the window shows it and saves it.
    const QString saved = folder + QStringLiteral("/GOT.tap");
    guard.expect<QFileDialog>([&](QFileDialog *dialog) {
        dialog->selectFile(saved);
        static_cast<QDialog *>(dialog)->accept();
    });
    QTest::mouseClick(w.Command1[2], Qt::LeftButton);
    QCOMPARE(readFile(saved), program + "\r\n");
    QVERIFY(w.Command1[1]->isEnabled());
    QVERIFY(!comm.portOpen());
}

QTEST_MAIN(TstWindowVControl)
#include "tst_window_vcontrol.moc"
