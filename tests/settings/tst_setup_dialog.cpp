#include "ini_file.h"
#include "profile.h"
#include "settings.h"
#include "setup_dialog.h"
#include "text_table.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

class TestSetupDialog : public QObject {
    Q_OBJECT
private slots:
    void captions_data();
    void captions();
    void showsWhatTheFileHolds();
    void buttonWritesAndCloses();
    void escapeWritesNothing();
    void formShape();
};

namespace {

Globals freshGlobals(const IniFile &ini, qint16 language = 1) {
    Globals g;
    ini.useIn(g);
    g.Language = language;
    InitTexts(g);
    InitChoices(g);
    return g;
}

} // namespace

void TestSetupDialog::captions_data() {
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("parityLabel");
    QTest::addColumn<QString>("check1");
    QTest::newRow("English") << 1 << "Setup DNC Communication"
                             << "&Quit"
                             << "Parity"
                             << "Waiting fot X-on before output data";
    QTest::newRow("French") << 2 << "Configuration liaison DNC"
                            << "&Quitter"
                            << "Controlle parité"
                            << "Attentre X-on avant l'envoi";
    QTest::newRow("German") << 3 << "Einstellungen DNC Verbindung"
                            << "&Beenden"
                            << "Paritätskontrolle"
                            << "Wartet auf X-on vor dem senden";
}

void TestSetupDialog::captions() {
    QFETCH(int, language);
    QFETCH(QString, title);
    QFETCH(QString, button);
    QFETCH(QString, parityLabel);
    QFETCH(QString, check1);
    IniFile ini;
    const Globals g = freshGlobals(ini, qint16(language));
    SetupDialog d(g);
    QCOMPARE(d.windowTitle(), title);
    QCOMPARE(d.Command1->text(), button);
    QCOMPARE(d.Label[2]->text(), parityLabel);
    QCOMPARE(d.Check1->text(), check1);
    // Each label takes its own row, in order.
    for (int i = 0; i < 7; ++i)
        QCOMPARE(d.Label[i]->text(), g.Text(11 + i));
    QCOMPARE(d.Check2->text(), g.Text(19));
    // No caption is cut by its box.
    QList<QWidget *> captions = {d.Check1, d.Check2};
    for (QLabel *l : d.Label)
        captions << l;
    for (const QWidget *w : captions)
        QVERIFY2(w->sizeHint().width() <= w->width(), qPrintable(w->property("text").toString()));
}

void TestSetupDialog::showsWhatTheFileHolds() {
    IniFile ini;
    ini.write("[Default]\nPort=COM3:\nBaud=4800\nParity=O\nData=8\nStop=2\nCNC=504\nSoft=05\n"
              "Wait-Xon=1\nSpace=0\n");
    const Globals g = freshGlobals(ini);
    SetupDialog d(g);
    const QStringList shown = {"COM3:", "4800", "Odd", "8", "2", "504", "05"};
    for (int i = 0; i < 7; ++i)
        QCOMPARE(d.Combo[i]->currentText(), shown[i]);
    QCOMPARE(d.Combo[2]->count(), 3);
    QCOMPARE(d.Combo[1]->itemText(5), QStringLiteral("9600"));
    QVERIFY(d.Check1->isChecked());
    QVERIFY(!d.Check2->isChecked());
}

void TestSetupDialog::buttonWritesAndCloses() {
    IniFile ini;
    ini.write("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=1\nCNC=303\n");
    Globals g = freshGlobals(ini);
    SetupDialog d(g);
    d.show();
    QVERIFY(QTest::qWaitForWindowExposed(&d));
    d.Combo[0]->setCurrentIndex(1);
    d.Combo[2]->setCurrentIndex(2);
    d.Combo[5]->setCurrentIndex(2);
    d.Check2->setChecked(true);
    QTest::mouseClick(d.Command1, Qt::LeftButton);

    QVERIFY(!d.isVisible());
    QCOMPARE(d.result(), int(QDialog::Accepted));
    QCOMPARE(ini.read(), QByteArray("[Default]\nPort=COM2:\nBaud=9600\nParity=N\nData=7\nStop=1\n"
                                    "CNC=XonXoff\nSoft=04\nWait-Xon=0\nSpace=1\n"));
    ReadSettings(g);
    QCOMPARE(g.ComSettings, QStringLiteral("COM2:9600,N,7,1"));
    QCOMPARE(g.CncType, qint16(3));
    QCOMPARE(g.NoSpace, qint16(1));
}

void TestSetupDialog::escapeWritesNothing() {
    IniFile ini;
    const Globals g = freshGlobals(ini);
    SetupDialog d(g);
    d.show();
    QVERIFY(QTest::qWaitForWindowExposed(&d));
    d.Combo[1]->setCurrentIndex(3);
    QTest::keyClick(&d, Qt::Key_Escape);
    QVERIFY(!d.isVisible());
    QCOMPARE(d.result(), int(QDialog::Rejected));
    QVERIFY(!ini.exists());
}

void TestSetupDialog::formShape() {
    IniFile ini;
    const Globals g = freshGlobals(ini);
    SetupDialog d(g);
    QCOMPARE(d.minimumSize(), d.maximumSize());
    QVERIFY(!(d.windowFlags() & Qt::WindowMaximizeButtonHint));
    QVERIFY(!(d.windowFlags() & Qt::WindowMinimizeButtonHint));
    QVERIFY(d.windowFlags() & Qt::WindowCloseButtonHint);
    for (QComboBox *c : d.Combo)
        QVERIFY(!c->isEditable());

    // Tab goes through the controls in the form's order, starting at the button.
    QList<QWidget *> order;
    QWidget *w = d.Command1;
    do {
        if (w->focusPolicy() & Qt::TabFocus)
            order << w;
        w = w->nextInFocusChain();
    } while (w != d.Command1);
    const QList<QWidget *> expected = {d.Command1, d.Combo[0], d.Combo[1], d.Combo[2], d.Combo[3],
                                       d.Combo[4], d.Combo[5], d.Combo[6], d.Check1,   d.Check2};
    QCOMPARE(order, expected);

    // Every control lies inside the client area.
    for (QWidget *c : d.findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        QVERIFY2(d.rect().contains(c->geometry()), qPrintable(c->metaObject()->className()));
}

QTEST_MAIN(TestSetupDialog)
#include "tst_setup_dialog.moc"
