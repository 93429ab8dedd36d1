#include "ini_file.h"
#include "port_devices.h"
#include "rows.h"
#include "setup_dialog.h"

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
    while (c->currentIndex() != index)
        QTest::keyClick(c, c->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
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
    void tabOrder() {
        IniFile ini;
        SetupDialog d(ini.g);
        QList<QWidget *> order;
        for (QWidget *w = d.Command1; order.isEmpty() || w != d.Command1; w = w->nextInFocusChain())
            if (w->focusPolicy() & Qt::TabFocus)
                order << w;
        QCOMPARE(order, (QList<QWidget *>{d.Command1, d.Combo[0], d.DeviceCombo, d.DeviceRefresh,
                                          d.Combo[1], d.Combo[2], d.Combo[3], d.Combo[4],
                                          d.Combo[5], d.Combo[6], d.Check1, d.Check2}));
        for (const QComboBox *c : d.Combo)
            QVERIFY(!c->isEditable()); // only an entry can be written
    }

    // The lists show what the file holds, or their first entry for a value they do not offer;
    // the button writes that back with the operator's change. Escape writes nothing.
    void buttonWritesAllAndCloses() {
        IniFile ini;
        SetupDialog escaped(ini.g);
        escaped.show();
        escaped.Combo[1]->setCurrentIndex(3);
        QTest::keyClick(&escaped, Qt::Key_Escape);
        QVERIFY(!escaped.isVisible() && !QFile::exists(ini.path));
        SetupDialog first(ini.g);
        press(first);
        QCOMPARE(ini.read(),
                 QByteArray("[Default]\nPort=COM1:\nBaud=300\nParity=E\nData=7\nStop=1\n"
                            "CNC=303\nSoft=04\nWait-Xon=0\nSpace=0\n"));
        ini.write("[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=2\nCNC=xonxoff\n"
                  "Soft=10\nWait-Xon=70000\nSpace=0.4\n");
        SetupDialog d(ini.g);
        d.Combo[0]->setCurrentIndex(1);
        press(d);
        QCOMPARE(ini.read(), QByteArray("[Default]\nPort=COM2:\nBaud=115200\nParity=N\nData=8\n"
                                        "Stop=2\nCNC=303\nSoft=10\nWait-Xon=1\nSpace=0\n"));
    }

    // A device picked for a port is written to [Ports] by the button and shown at the next
    // opening, also while it is unplugged; the default empties the entry again.
    void deviceRoundTrip() {
        IniFile ini;
        ini.write("[Default]\nPort=COM1:\n");
        QList<SerialDevice> present{Builtin, Ftdi};
        const SerialDeviceScan scan = [&] { return present; };
        {
            SetupDialog d(ini.g, nullptr, scan);
            d.show();
            pick(d.Combo[0], 1);
            QCOMPARE(entries(d.DeviceCombo),
                     (QStringList{"Default: /dev/ttyS1", "ttyS0", FtdiEntry}));
            pick(d.DeviceCombo, 2);
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
    }

    // COM1:'s device as [Ports] holds it, beside entries of the configuration's section and of
    // COM2: that are not it; DNC_COM1 (null: unset) comes first.
    void deviceShown_data() {
        QTest::addColumn<QString>("env");
        QTest::addColumn<QString>("info"); // how the text beside the list ends
        row("environment first", QString("/dev/pts/9"),
            QString(
                "\n\nDNC_COM1 is set in the environment and comes first: /dev/pts/9 is opened."));
        row("an empty environment variable is unset", QString(""),
            QString("\nSerial number: A50285BI"));
    }
    void deviceShown() {
        QFETCH(QString, env);
        IniFile ini;
        ini.write("[Default]\nCOM1=/dev/ttyS8\n[Ports]\nCOM1=/dev/ttyUSB0\nCOM2=/dev/ttyS9\n");
        const EnvVar com1("DNC_COM1", env);
        SetupDialog d(ini.g, nullptr, [] { return QList<SerialDevice>{Builtin, Ftdi}; });
        QCOMPARE(d.DeviceCombo->currentText(), FtdiEntry); // found by its kernel name
        QFETCH(QString, info);
        QVERIFY2(shown(d.DeviceInfo).endsWith(info), qPrintable(shown(d.DeviceInfo)));
        press(d);
        QCOMPARE(configuredDevice(ini.g, 1), QStringLiteral("/dev/ttyUSB0")); // not rewritten
    }
};

QTEST_MAIN(TstSetupDialog)
#include "tst_setup_dialog.moc"
