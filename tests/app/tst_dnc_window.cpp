// The main window over fakes; Map on a silent control stands for any operation that waits.

#include "rows.h"
#include "throttled_text.h"
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
        for (const QPushButton *b : r.w->findChildren<QPushButton *>()) // none empty or cut
            QVERIFY2(!b->text().isEmpty() && b->sizeHint().width() <= b->width(),
                     qPrintable(b->text()));
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
        QString help;
        r.guard.expect<QMessageBox>([&](QMessageBox *box) {
            help =
                box->icon() == QMessageBox::NoIcon ? box->windowTitle() + ": " + box->text() : "";
            box->accept();
        });
        QTest::mouseClick(r.w->Command1[7], Qt::LeftButton);
        // Six rows: one break for each of the five LF CR line ends, no empty row between.
        QVERIFY2(help.startsWith("DNC VELDA: Command line option :\n-c 033") &&
                     help.count(u'\n') == 5 && !help.contains(u'\r'),
                 qPrintable(help));
        const QString first = help;

        r.w->Text1->show();
        r.w->List1->show();
        QString during;
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
        QCOMPARE("DNC VELDA: " + help, first);
        QVERIFY(r.state.ending() && !r.w->isVisible());
    }

    // A count that changes thousands of times a second reaches the label at most 30 times a
    // second, and its last value always does; hiding a control shows at once what waited.
    void textsAtAReadableRate() {
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
};

QTEST_MAIN(TstDncWindow)
#include "tst_dnc_window.moc"
