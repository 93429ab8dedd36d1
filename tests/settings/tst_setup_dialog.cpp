#include "ini_file.h"
#include "port_devices.h"
#include "setup_dialog.h"
#include "text_table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace {

const QString ById =
    QStringLiteral("/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0");
const SerialDevice Ftdi{ById, "/dev/ttyUSB0", "FT232R USB UART", "FTDI", "A50285BI"};
const SerialDevice Builtin{"/dev/ttyS0", "/dev/ttyS0", "", "", ""};
const QString FtdiEntry = QStringLiteral("FT232R USB UART, FTDI, A50285BI (ttyUSB0)");

// The text as it reads, without the places where a long path may wrap.
QString shown(const QLabel *l) {
    return l->text().remove(QChar(0x200B));
}

QStringList entries(const QComboBox *c) {
    QStringList list;
    for (int i = 0; i < c->count(); ++i)
        list << c->itemText(i);
    return list;
}

// As the operator picks: the keyboard on the list.
void pick(QComboBox *c, int index) {
    c->setFocus();
    while (c->currentIndex() < index)
        QTest::keyClick(c, Qt::Key_Down);
    while (c->currentIndex() > index)
        QTest::keyClick(c, Qt::Key_Up);
}

void press(SetupDialog &d) {
    d.show();
    QVERIFY(QTest::qWaitForWindowExposed(&d));
    QTest::mouseClick(d.Command1, Qt::LeftButton);
    QVERIFY(!d.isVisible());
}

} // namespace

class TstSetupDialog : public QObject {
    Q_OBJECT
private slots:
    void form();
    void buttonWritesAllAndCloses();
    void baudKept_data();
    void baudKept();
    void closingWritesNothing();
    void deviceRoundTrip();
    void deviceShown_data();
    void deviceShown();
};

// In German, the longest texts: no caption is cut by its box.
void TstSetupDialog::form() {
    IniFile ini;
    ini.g.Language = 3;
    InitTexts(ini.g);
    SetupDialog d(ini.g, nullptr, [] { return QList<SerialDevice>{Builtin}; });
    QCOMPARE(entries(d.DeviceCombo), (QStringList{"Standard: /dev/ttyS0", "ttyS0"}));
    QVERIFY(shown(d.DeviceInfo).startsWith(QStringLiteral("Gerät für COM1:\n/dev/ttyS0")));
    QList<QWidget *> captions = {d.Check1, d.Check2, d.DeviceRefresh};
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
    QCOMPARE(order, (QList<QWidget *>{d.Command1, d.Combo[0], d.DeviceCombo, d.DeviceRefresh,
                                      d.Combo[1], d.Combo[2], d.Combo[3], d.Combo[4], d.Combo[5],
                                      d.Combo[6], d.Check1, d.Check2}));
    // The device's column stands beside the form's own controls.
    for (const QWidget *w : QList<QWidget *>{d.DeviceCombo, d.DeviceInfo, d.DeviceRefresh})
        QVERIFY(w->x() > d.Combo[0]->geometry().right() && d.rect().contains(w->geometry()));
}

void TstSetupDialog::buttonWritesAllAndCloses() {
    IniFile ini;
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

// The faster speeds come after the older ones, so the first entry and every index already in
// use keep their meaning; a value not offered is replaced (buttonWritesAllAndCloses).
void TstSetupDialog::baudKept_data() {
    QTest::addColumn<QByteArray>("baud");
    QTest::newRow("last of the older values") << QByteArray("9600");
    QTest::newRow("first of the faster ones") << QByteArray("19200");
    QTest::newRow("fastest") << QByteArray("115200");
}

void TstSetupDialog::baudKept() {
    QFETCH(QByteArray, baud);
    IniFile ini;
    ini.write("[Default]\nBaud=" + baud + "\n");
    SetupDialog d(ini.g);
    QCOMPARE(entries(d.Combo[1]), (QStringList{"300", "600", "1200", "2400", "4800", "9600",
                                               "19200", "38400", "57600", "115200"}));
    d.show();
    QTest::mouseClick(d.Command1, Qt::LeftButton);
    QVERIFY2(ini.read().contains("\nBaud=" + baud + "\n"), ini.read().constData());
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

// A device picked for a port is written to [Ports] by the button and shown at the next opening,
// also while it is unplugged; the default empties the entry again.
void TstSetupDialog::deviceRoundTrip() {
    IniFile ini;
    ini.write("[Default]\nPort=COM1:\n");
    QList<SerialDevice> present{Builtin, Ftdi};
    const SerialDeviceScan scan = [&] { return present; };
    {
        SetupDialog d(ini.g, nullptr, scan);
        d.show();
        pick(d.Combo[0], 1);
        QCOMPARE(entries(d.DeviceCombo), (QStringList{"Default: /dev/ttyS1", "ttyS0", FtdiEntry}));
        pick(d.DeviceCombo, 2);
        QCOMPARE(shown(d.DeviceInfo), "Device of COM2:\n" + ById +
                                          "\n/dev/ttyUSB0\nDescription: FT232R USB UART\n"
                                          "Maker: FTDI\nSerial number: A50285BI");
        pick(d.Combo[0], 0); // the choice belongs to COM2:
        QCOMPARE(d.DeviceCombo->currentIndex(), 0);
        pick(d.Combo[0], 1);
        QCOMPARE(d.DeviceCombo->currentText(), FtdiEntry);
        press(d);
    }
    QVERIFY2(ini.read().endsWith("Space=0\n\n[Ports]\nCOM2=" + ById.toUtf8() + "\n"),
             ini.read().constData());
    QCOMPARE(comDevice(ini.g, 2), ById);

    present.clear(); // unplugged: kept and said so, written back unchanged
    {
        SetupDialog d(ini.g, nullptr, scan);
        QCOMPARE(d.Combo[0]->currentText(), QStringLiteral("COM2:"));
        QCOMPARE(d.DeviceCombo->currentText(), "absent: " + ById);
        QVERIFY(shown(d.DeviceInfo).endsWith("\n\nNot present on this PC now."));
        const QByteArray before = ini.read();
        press(d);
        QCOMPARE(ini.read(), before);
    }
    {
        SetupDialog d(ini.g, nullptr, scan);
        present = {Ftdi}; // plugged in again while the dialog is open
        QTest::mouseClick(d.DeviceRefresh, Qt::LeftButton);
        QCOMPARE(entries(d.DeviceCombo), (QStringList{"Default: /dev/ttyS1", FtdiEntry}));
        QCOMPARE(d.DeviceCombo->currentIndex(), 1);
        pick(d.DeviceCombo, 0);
        press(d);
    }
    QVERIFY(ini.read().endsWith("\n[Ports]\nCOM2=\n"));
    QCOMPARE(comDevice(ini.g, 2), QStringLiteral("/dev/ttyS1"));
}

// COM1: with a device stored in [Ports] (or none), and DNC_COM1 (null: unset).
void TstSetupDialog::deviceShown_data() {
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("env");
    QTest::addColumn<QString>("entry");   // the list's choice
    QTest::addColumn<QString>("info");    // how the text beside ends
    const QString pty = QDir::tempPath(); // stands for any path that is there but not listed
    QTest::newRow("kernel name of a present device")
        << "/dev/ttyUSB0" << QString() << FtdiEntry << "Serial number: A50285BI";
    QTest::newRow("there, not listed") << pty << QString() << pty << "COM1:\n" + pty;
    QTest::newRow("environment first")
        << ById << "/dev/pts/9" << FtdiEntry
        << "\n\nDNC_COM1 is set in the environment and comes first: /dev/pts/9 is opened.";
}

void TstSetupDialog::deviceShown() {
    QFETCH(QString, stored);
    QFETCH(QString, env);
    IniFile ini;
    ini.write("[Ports]\nCOM1=" + stored.toUtf8() + "\n");
    const EnvVar com1("DNC_COM1", env);
    SetupDialog d(ini.g, nullptr, [] { return QList<SerialDevice>{Builtin, Ftdi}; });
    QTEST(d.DeviceCombo->currentText(), "entry");
    QFETCH(QString, info);
    QVERIFY2(shown(d.DeviceInfo).endsWith(info), qPrintable(shown(d.DeviceInfo)));
    press(d);
    QCOMPARE(configuredDevice(ini.g, 1), stored); // shown, not rewritten
}

QTEST_MAIN(TstSetupDialog)
#include "tst_setup_dialog.moc"
