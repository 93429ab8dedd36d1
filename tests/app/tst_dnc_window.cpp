// The main window over fakes; Map on a silent control stands for any operation that waits.

#include "command_line.h"
#include "rows.h"
#include "setup_dialog.h"
#include "throttled_text.h"
#include "tool_db_fixture.h"
#include "tool_grid.h"
#include "window_rig.h"

class TstDncWindow : public QObject {
    Q_OBJECT
private slots:
    void startUp_data();
    void startUp();
    void setupInTheFrame();
    void helpAndClosing();
    void textsAtAReadableRate();
};

// Two captions show that the texts follow the language of the command line; an accent spelled
// by code point, so that a wrong source encoding cannot hide on both sides.
void TstDncWindow::startUp_data() {
    QTest::addColumn<QString>("cnc");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("enabled");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QString>("captions"); // Receive and Delete
    row("303, English", "303", "", "0123457Q", 5000, "&Reveive DC");
    row("504, French", "504", "-c 033", "012367Q", 2000, "&Reception Effacer");
    row("XonXoff, German", "XonXoff", "-c 049", "0127Q", 50000, "&Empfangen L\u00f6schen");
    row("no settings file, 039", QString(), "-c 039", "0127Q", 10000, "&Receive DC");
}

void TstDncWindow::startUp() {
    QFETCH(QString, cnc);
    QFETCH(QString, line);
    WindowRig r(cnc);
    r.open(line);
    QTEST(r.enabled(), "enabled");
    QTEST(r.f.timer.interval(), "interval");
    QTEST(r.w->Command1[2]->text() + ' ' + r.w->Command1[6]->text(), "captions");
    for (const QPushButton *b : r.w->findChildren<QPushButton *>()) // none empty or cut
        QVERIFY2(!b->text().isEmpty() && b->sizeHint().width() <= b->width(),
                 qPrintable(b->text()));
    QCOMPARE(r.w->windowTitle(),
             QStringLiteral("DNC VELDA - V2.6.0 - ") + (cnc.isNull() ? "" : "COM1:9600,E,7,2"));
    QVERIFY(!r.w->Text1->isVisible() && !r.w->List1->isVisible() && !r.w->Label1->isVisible());
    QVERIFY(!r.f.timer.enabled() && r.f.comm.opens == 0); // the port is not touched at start-up
    QVERIFY(!r.w->DBGrid1 && QSqlDatabase::connectionNames().isEmpty()); // nor SQL without -d
}

// Setup with a database: the frame hides and disables while the dialog is open; after it the
// caption, the buttons and the re-read grid follow at once, the timer's interval does not.
void TstDncWindow::setupInTheFrame() {
    ToolDbFixture db;
    QVERIFY(db.exec("INSERT INTO tool_list VALUES ('drill 8.5', 12, '2026-11-01 10:00:00')"));
    QTemporaryDir dir(QDir::tempPath() + "/dncXXXXXX"); // a "-s" in the path would be an option
    QVERIFY(QFile::link(db.path(), dir.filePath("tools.db")));
    WindowRig r("303");
    r.open("-d " + dir.filePath("tools.db"));
    QVERIFY(r.w->DBGrid1 && r.w->DBGrid1->isVisible());
    r.w->Text1->show();
    r.w->List1->show();
    QString during;
    r.guard.expect<SetupDialog>([&](SetupDialog *setup) {
        during = r.enabled() + (r.w->Text1->isVisible() || r.w->List1->isVisible() ? " text" : "") +
                 (r.w->DBGrid1->isVisible() ? " grid" : "");
        db.exec("INSERT INTO tool_list VALUES ('endmill 20', 40, '2026-11-02')");
        setup->Combo[0]->setCurrentText(QStringLiteral("COM3:"));
        setup->Combo[5]->setCurrentText(QStringLiteral("504"));
        QTest::mouseClick(setup->Command1, Qt::LeftButton);
    });
    QTest::mouseClick(r.w->Command1[0], Qt::LeftButton);
    QCOMPARE(during, QStringLiteral("7")); // Text1, List1 and the grid hidden too
    QCOMPARE(r.w->windowTitle(), QStringLiteral("DNC VELDA - V2.6.0 - COM3:9600,E,7,2"));
    QCOMPARE(r.enabled(), QStringLiteral("012367Q")); // Map stays, CC and CE go, DC comes
    QCOMPARE(r.f.timer.interval(), 5000);
    QVERIFY(r.w->DBGrid1->isVisible());
    QCOMPARE(r.w->DBGrid1->model()->index(0, 0).data(), QVariant("endmill 20")); // re-read
}

// Decided: during an operation help shows its box and nothing else, so the buttons stay
// disabled; closing the window ends the operation at its next pass, then the window.
void TstDncWindow::helpAndClosing() {
    WindowRig r("303");
    r.open();
    QString help;
    r.guard.expect<QMessageBox>([&](QMessageBox *box) {
        help = box->icon() == QMessageBox::NoIcon ? box->windowTitle() + ": " + box->text() : "";
        box->accept();
    });
    QTest::mouseClick(r.w->Command1[7], Qt::LeftButton);
    // Six rows: one break for each of the five LF CR line ends, no empty row between.
    const QString sixRows = helpText(1).replace(QStringLiteral("\n\r"), QStringLiteral("\n"));
    QCOMPARE(sixRows.split(u'\n').size(), 6);
    QCOMPARE(help, "DNC VELDA: " + sixRows);

    QString afterHelp;
    r.f.yield.then([&] {
        QTest::mouseClick(r.w->Command1[7], Qt::LeftButton);
        afterHelp = r.enabled();
    });
    r.f.yield.then([&] {
        auto *box = r.w->findChild<QMessageBox *>();
        help = box && box->isVisible() ? box->text() : QString();
        if (box)
            box->close();
        r.w->close();
    });
    QTest::mouseClick(r.w->Command1[3], Qt::LeftButton);
    QCOMPARE(afterHelp, QStringLiteral("7"));
    QCOMPARE(help, sixRows);
    QVERIFY(r.state.ending() && !r.w->isVisible());
    QVERIFY(!r.f.comm.open && r.f.comm.closes == 1); // port closed; the guard sees the pointer
}

// A count that changes thousands of times a second reaches the label at most 30 times a second,
// and its last value always does; hiding a control shows at once what was waiting for it.
void TstDncWindow::textsAtAReadableRate() {
    WindowRig r("303");
    r.open();
    Screen &s = r.w->screen();
    s.setLabel1Visible(true);
    QStringList shown;
    QString last;
    QElapsedTimer clock;
    clock.start();
    for (int i = 1; clock.elapsed() < 300; ++i) {
        last = QString::number(i);
        s.setLabel1Caption(last);
        QCoreApplication::processEvents();
        if (shown.isEmpty() || shown.last() != r.w->Label1->text())
            shown << r.w->Label1->text();
    }
    QVERIFY2(shown.size() >= 2 && shown.size() <= 300 / ThrottledText::IntervalMs + 2,
             qPrintable(shown.join(' ')));
    QTRY_COMPARE(r.w->Label1->text(), last);

    QTest::qWait(ThrottledText::IntervalMs);
    s.setText1Text(QStringLiteral("first"));
    s.setLabel1Caption(QStringLiteral("first"));
    QCOMPARE(r.w->Text1->toPlainText(), QStringLiteral("first")); // after a pause: at once
    s.setText1Text(QStringLiteral("last"));
    s.setLabel1Caption(QStringLiteral("last"));
    QCOMPARE(r.w->Label1->text(), QStringLiteral("first"));
    s.setText1Visible(false);
    s.setLabel1Visible(false);
    QCOMPARE(r.w->Text1->toPlainText(), QStringLiteral("last"));
    QCOMPARE(r.w->Label1->text(), QStringLiteral("last"));
}

QTEST_MAIN(TstDncWindow)
#include "tst_dnc_window.moc"
