// The whole program as an operator uses it: the window, the real port on a pseudo-terminal, the
// real clock and event loop, against the virtual control, with a tool database.

#include "dnc_window.h"
#include "event_loop_yield.h"
#include "qt_link_timer.h"
#include "serial_comm.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "tool_list_model.h"
#include "vcontrol_process.h"

#include <QTest>
#include <QtWidgets>

// Acts on the modal dialog of type T as soon as the window opens one.
template <class T> void whenModal(std::function<void(T *)> act) {
    auto *poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, [poll, act] {
        if (auto *modal = qobject_cast<T *>(QApplication::activeModalWidget())) {
            poll->stop();
            poll->deleteLater();
            act(modal);
        }
    });
    poll->start(10);
}

class TestWindowVControl : public QObject {
    Q_OBJECT
private slots:
    void sendByQuickChoiceCountsToolsAndReceiveSaves();
};

void TestWindowVControl::sendByQuickChoiceCountsToolsAndReceiveSaves() {
    ToolDbFixture db;
    const QString folder = QFileInfo(db.path()).absolutePath();
    const QByteArray program = "(PART)\r\n/T4 DRILL 8.5\r\n%\r\nN10 G0 X0\r\nN20 M30\r\n";
    QFile part(folder + QStringLiteral("/PART.tap"));
    QVERIFY(part.open(QIODevice::WriteOnly) && part.write(program) == program.size());
    part.close();

    QTemporaryDir store;
    QVERIFY(QFile::copy(part.fileName(), store.filePath(QStringLiteral("O1"))));
    VControlProcess vc;
    QVERIFY2(vc.start({"--type", "303", "--dir", store.path()}), qPrintable(vc.errorString()));
    qputenv("DNC_COM1", vc.device().toLocal8Bit());

    Globals g;
    g.iniPath = folder + QStringLiteral("/dnc.ini");
    QFile ini(g.iniPath);
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=1\nCNC=303\nTapeDir=" +
              folder.toUtf8() + "\nCNCDir=" + folder.toUtf8() + "\n");
    ini.close();
    OperationState state;
    SerialComm comm;
    comm.setOperationState(&state);
    QtLinkTimer timer(g);
    EventLoopYield yield(comm, timer);
    // The database is named from its own folder: its path may hold an option's two letters.
    QDir::setCurrent(folder);
    DncWindow w(g, state, comm, timer, yield, QStringLiteral("-b -d tools.db"));
    w.show();

    // Send: the quick choice finds PART.tap without a dialog.
    whenModal<QInputDialog>([](QInputDialog *box) {
        box->setTextValue(QStringLiteral("PART"));
        box->accept();
    });
    QTest::mouseClick(w.Command1[1], Qt::LeftButton);
    QVERIFY(vc.waitForEvent(QStringLiteral("STORED")));
    QCOMPARE(vc.rx(), "R\r" + QByteArray(program).replace("\r\n", "\r") + "\x04\r");
    QVERIFY(!comm.portOpen());
    QVERIFY(!w.Label1->isVisible());
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    QCOMPARE(w.DBGrid1->toolModel()->index(0, 0).data().toString(), QStringLiteral("drill 8.5"));

    // Receive: the control sends its program, the window shows it and saves it.
    const QString saved = folder + QStringLiteral("/GOT.tap");
    whenModal<QFileDialog>([&](QFileDialog *dialog) {
        dialog->selectFile(saved);
        static_cast<QDialog *>(dialog)->accept();
    });
    QTest::mouseClick(w.Command1[2], Qt::LeftButton);
    QFile got(saved);
    QVERIFY(got.open(QIODevice::ReadOnly));
    QCOMPARE(got.readAll(), program + "\r\n");
    QVERIFY(w.Command1[1]->isEnabled());
    QVERIFY(!comm.portOpen());
}

QTEST_MAIN(TestWindowVControl)
#include "tst_window_vcontrol.moc"
