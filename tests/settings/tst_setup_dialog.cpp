#include "ini_file.h"
#include "setup_dialog.h"
#include "text_table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

class TestSetupDialog : public QObject {
    Q_OBJECT
private slots:
    void form();
    void buttonWritesAllAndCloses();
    void baudKeptOrReplaced_data();
    void baudKeptOrReplaced();
    void closingWritesNothing();
};

void TestSetupDialog::form() {
    IniFile ini;
    ini.g.Language = 3;
    InitTexts(ini.g);
    SetupDialog d(ini.g);
    QCOMPARE(d.windowTitle(), ini.g.Text(10));
    QCOMPARE(d.Command1->text(), ini.g.Text(5));
    QCOMPARE(d.Check1->text(), ini.g.Text(18));
    QCOMPARE(d.Check2->text(), ini.g.Text(19));
    QList<QWidget *> captions = {d.Check1, d.Check2};
    for (int i = 0; i < 7; ++i) {
        QCOMPARE(d.Label[i]->text(), ini.g.Text(11 + i));
        QVERIFY(!d.Combo[i]->isEditable());
        captions << d.Label[i];
    }
    for (const QWidget *w : captions) // none cut by its box
        QVERIFY2(w->sizeHint().width() <= w->width(), qPrintable(w->property("text").toString()));
    QList<QWidget *> order;
    for (QWidget *w = d.Command1; order.isEmpty() || w != d.Command1; w = w->nextInFocusChain())
        if (w->focusPolicy() & Qt::TabFocus)
            order << w;
    QCOMPARE(order, (QList<QWidget *>{d.Command1, d.Combo[0], d.Combo[1], d.Combo[2], d.Combo[3],
                                      d.Combo[4], d.Combo[5], d.Combo[6], d.Check1, d.Check2}));
}

void TestSetupDialog::buttonWritesAllAndCloses() {
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
    ini.write("[Default]\nPort=COM1:\nBaud=14400\nParity=N\nData=8\nStop=2\nCNC=xonxoff\n"
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

void TestSetupDialog::baudKeptOrReplaced_data() {
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("first entry") << QByteArray("300") << QByteArray("300");
    QTest::newRow("last of the older values") << QByteArray("9600") << QByteArray("9600");
    QTest::newRow("first of the faster ones") << QByteArray("19200") << QByteArray("19200");
    QTest::newRow("fastest") << QByteArray("115200") << QByteArray("115200");
    QTest::newRow("not offered") << QByteArray("14400") << QByteArray("300");
    QTest::newRow("not offered beyond") << QByteArray("230400") << QByteArray("300");
}

// The faster speeds come after the older ones, so the first entry and every index already in
// use keep their meaning.
void TestSetupDialog::baudKeptOrReplaced() {
    QFETCH(QByteArray, stored);
    QFETCH(QByteArray, written);
    IniFile ini;
    ini.write("[Default]\nBaud=" + stored + "\n");
    SetupDialog d(ini.g);
    QStringList offered;
    for (int i = 0; i < d.Combo[1]->count(); ++i)
        offered << d.Combo[1]->itemText(i);
    QCOMPARE(offered, (QStringList{"300", "600", "1200", "2400", "4800", "9600", "19200", "38400",
                                   "57600", "115200"}));
    d.show();
    QTest::mouseClick(d.Command1, Qt::LeftButton);
    QVERIFY2(ini.read().contains("\nBaud=" + written + "\n"), ini.read().constData());
}

// Decided: closing the dialog by its frame or Escape writes nothing.
void TestSetupDialog::closingWritesNothing() {
    IniFile ini;
    SetupDialog d(ini.g);
    d.show();
    d.Combo[1]->setCurrentIndex(3);
    QTest::keyClick(&d, Qt::Key_Escape);
    QVERIFY(!d.isVisible());
    QVERIFY(!QFile::exists(ini.path));
}

QTEST_MAIN(TestSetupDialog)
#include "tst_setup_dialog.moc"
