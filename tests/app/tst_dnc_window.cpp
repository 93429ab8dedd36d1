// The main window over fakes; Map on a silent control stands for any operation that waits.

#include "rows.h"
#include "window_rig.h"

#include <QSqlDatabase>

class TstDncWindow : public QObject {
    Q_OBJECT
private slots:
    // Two captions show that the texts follow the language of the command line; an accent
    // spelled by code point, so that a wrong source encoding cannot hide on both sides.
    void startUp_data() {
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
    void startUp() {
        QFETCH(QString, cnc);
        QFETCH(QString, line);
        WindowRig r(cnc);
        r.open(line);
        QTEST(r.enabled(), "enabled");
        QTEST(r.f.timer.interval(), "interval");
        QTEST(r.w->Command1[2]->text() + ' ' + r.w->Command1[6]->text(), "captions");
        QCOMPARE(r.w->windowTitle(),
                 QStringLiteral("DNC VELDA - V2.6.0 - ") + (cnc.isNull() ? "" : "COM1:9600,E,7,2"));
        QVERIFY(!r.w->Text1->isVisible() && !r.w->List1->isVisible() && !r.w->Label1->isVisible());
        QVERIFY(!r.w->DBGrid1 && QSqlDatabase::connectionNames().isEmpty()); // nor SQL without -d
    }

    // Decided: during an operation help shows its box and nothing else, so the buttons stay
    // disabled; closing the window ends the operation at its next pass, then the window.
    void helpAndClosing() {
        WindowRig r("303");
        r.open();
        r.w->Text1->show();
        r.w->List1->show();
        QString during, help;
        r.f.yield.then([&] {
            QTest::mouseClick(r.w->Command1[7], Qt::LeftButton);
            during = r.enabled() + (r.w->Text1->isVisible() || r.w->List1->isVisible() ? "+" : "");
        });
        r.f.yield.then([&] {
            auto *box = r.w->findChild<QMessageBox *>();
            help = box && box->isVisible() ? box->text() : QString();
            if (box)
                box->close();
            r.w->close();
        });
        QTest::mouseClick(r.w->Command1[3], Qt::LeftButton);
        QCOMPARE(during, QStringLiteral("7")); // Text1 and List1 hidden too
        // One break for each of the five LF CR line ends, no empty row between.
        QVERIFY2(help.startsWith("Command line option :\n-c 033") && help.count(u'\n') == 5 &&
                     !help.contains(u'\r'),
                 qPrintable(help));
        QVERIFY(r.state.ending() && !r.w->isVisible());
    }

    // A text that changes faster than the eye can follow waits its turn, and its last value
    // is always shown; hiding a control shows at once what waited.
    void textsAtAReadableRate() {
        WindowRig r("303");
        r.open();
        Screen &s = r.w->screen();
        s.setLabel1Visible(true);
        s.setLabel1Caption(QStringLiteral("first"));
        QCOMPARE(r.w->Label1->text(), QStringLiteral("first")); // the first at once
        s.setLabel1Caption(QStringLiteral("last"));
        QCOMPARE(r.w->Label1->text(), QStringLiteral("first"));
        QTRY_COMPARE(r.w->Label1->text(), QStringLiteral("last"));

        s.setText1Text(QStringLiteral("first"));
        s.setText1Text(QStringLiteral("last"));
        QCOMPARE(r.w->Text1->toPlainText(), QStringLiteral("first"));
        s.setText1Visible(false);
        QCOMPARE(r.w->Text1->toPlainText(), QStringLiteral("last"));
    }
};

QTEST_MAIN(TstDncWindow)
#include "tst_dnc_window.moc"
