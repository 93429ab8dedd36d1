#include "ini_file.h"
#include "setup_dialog.h"
#include "text_table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

class TstSetupDialog : public QObject {
    Q_OBJECT
private slots:
    void form();
    void buttonWritesAllAndCloses();
    void closingWritesNothing();
};

// In German, the longest texts: no caption is cut by its box.
void TstSetupDialog::form() {
    IniFile ini;
    ini.g.Language = 3;
    InitTexts(ini.g);
    SetupDialog d(ini.g);
    QList<QWidget *> captions = {d.Check1, d.Check2};
    for (int i = 0; i < 7; ++i) {
        QVERIFY(!d.Combo[i]->isEditable());
        captions << d.Label[i];
    }
    for (const QWidget *w : captions)
        QVERIFY2(!w->property("text").toString().isEmpty() && w->sizeHint().width() <= w->width(),
                 qPrintable(w->property("text").toString()));
    QList<QWidget *> order;
    for (QWidget *w = d.Command1; order.isEmpty() || w != d.Command1; w = w->nextInFocusChain())
        if (w->focusPolicy() & Qt::TabFocus)
            order << w;
    QCOMPARE(order, (QList<QWidget *>{d.Command1, d.Combo[0], d.Combo[1], d.Combo[2], d.Combo[3],
                                      d.Combo[4], d.Combo[5], d.Combo[6], d.Check1, d.Check2}));
}

void TstSetupDialog::buttonWritesAllAndCloses() {
    IniFile ini;
    auto press = [&](SetupDialog &d) {
        d.show();
        QVERIFY(QTest::qWaitForWindowExposed(&d));
        QTest::mouseClick(d.Command1, Qt::LeftButton);
        QVERIFY(!d.isVisible());
    };
    SetupDialog first(ini.g);
    press(first);
    QCOMPARE(ini.read(), QByteArray("[Default]\nPort=COM1:\nBaud=300\nParity=E\nData=7\nStop=1\n"
                                    "CNC=303\nSoft=04\nWait-Xon=0\nSpace=0\n"));

    // The lists show what the file holds, or their first entry for a value they do not offer;
    // the button writes that back with the operator's change.
    ini.write("[Default]\nPort=COM1:\nBaud=19200\nParity=N\nData=8\nStop=2\nCNC=xonxoff\n"
              "Soft=10\nWait-Xon=70000\nSpace=0.4\n");
    SetupDialog d(ini.g);
    d.Combo[0]->setCurrentIndex(1);
    press(d);
    QCOMPARE(ini.read(), QByteArray("[Default]\nPort=COM2:\nBaud=300\nParity=N\nData=8\nStop=2\n"
                                    "CNC=303\nSoft=10\nWait-Xon=1\nSpace=0\n"));
    ReadSettings(ini.g); // read in full
    QCOMPARE(ini.g.ComSettings, QStringLiteral("COM2:300,N,8,2"));
    QCOMPARE(ini.g.CncType, qint16(1));
    QCOMPARE(ini.g.WaitXon, qint16(1));
}

// Decided: closing the dialog by its frame or Escape writes nothing.
void TstSetupDialog::closingWritesNothing() {
    IniFile ini;
    SetupDialog d(ini.g);
    d.show();
    d.Combo[1]->setCurrentIndex(3);
    QTest::keyClick(&d, Qt::Key_Escape);
    QVERIFY(!d.isVisible());
    QVERIFY(!QFile::exists(ini.path));
}

QTEST_MAIN(TstSetupDialog)
#include "tst_setup_dialog.moc"
