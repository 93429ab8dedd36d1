#include "ini_file.h"
#include "languages.h"
#include "port_devices.h"
#include "rows.h"
#include "setup_dialog.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTcpServer>
#include <QTest>

namespace {

const QString ById =
    QStringLiteral("/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0");
const SerialDevice Ftdi{ById, "/dev/ttyUSB0", "FT232R USB UART", "FTDI", "A50285BI"};
const SerialDevice Builtin{"/dev/ttyS0", "/dev/ttyS0", "", "", ""};
const QString FtdiEntry = QStringLiteral("FT232R USB UART, FTDI, A50285BI (ttyUSB0)");

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
            QCOMPARE(d.DeviceCombo->count(), 3); // the default, ttyS0 and the adapter
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
            QVERIFY(d.DeviceInfo->text().endsWith("\n\nNot present on this PC now."));
            const QByteArray before = ini.read();
            press(d);
            QCOMPARE(ini.read(), before);
        }
        {
            SetupDialog d(ini.g, nullptr, scan);
            pick(d.DeviceCombo, 0);
            press(d);
        }
        QVERIFY(ini.read().endsWith("\n[Ports]\nCOM2=\n"));
    }

    // A device server typed for a port: shown as the choice (not absent), asked at once whether
    // it answers, and written to [Ports]; "Look again" asks again.
    void deviceServerTyped_data() {
        QTest::addColumn<bool>("listening");
        QTest::addColumn<QString>("told");
        row("box answers", true, QStringLiteral("The device server answers."));
        row("nobody listening", false,
            QStringLiteral("The device server does not answer: Connection refused"));
    }
    void deviceServerTyped() {
        QFETCH(bool, listening);
        QFETCH(QString, told);
        IniFile ini;
        ini.write("[Default]\nPort=COM1:\n");
        QTcpServer box;
        QVERIFY(box.listen(QHostAddress::LocalHost));
        const QString name = QStringLiteral("rfc2217://127.0.0.1:%1").arg(box.serverPort());
        if (!listening)
            box.close();
        {
            SetupDialog d(ini.g);
            d.show();
            QVERIFY(QTest::qWaitForWindowExposed(&d));
            d.DeviceCombo->setFocus();
            d.DeviceCombo->lineEdit()->selectAll();
            QTest::keyClicks(d.DeviceCombo->lineEdit(), name);
            QTest::keyClick(d.DeviceCombo->lineEdit(), Qt::Key_Tab); // on to the next field
            QCOMPARE(d.DeviceCombo->currentText(), name);
            QTRY_VERIFY2(d.DeviceInfo->text().endsWith("\n\n" + told),
                         qPrintable(d.DeviceInfo->text()));
            press(d);
        }
        QVERIFY2(ini.read().endsWith("\n[Ports]\nCOM1=" + name.toUtf8() + "\n"),
                 ini.read().constData());
        SetupDialog again(ini.g); // shown as chosen; asked on the operator's word only
        QCOMPARE(again.DeviceCombo->currentText(), name);
        QVERIFY(again.DeviceInfo->text().endsWith(
            "\n\n\"Look again\" asks the device server whether it answers."));
        QTest::mouseClick(again.DeviceRefresh, Qt::LeftButton);
        QTRY_VERIFY(again.DeviceInfo->text().endsWith("\n\n" + told));
    }

    // The device column speaks the language of -c: its label, its entry for an unplugged
    // device, what it says of it, and its button.
    void deviceColumnInTheLanguage_data() {
        QTest::addColumn<int>("language");
        QTest::addColumn<QStringList>("says"); // label, entry, note, button
        row("French", 2,
            QStringList{"Périphérique de COM1:", "absent : ", "Absent de ce PC pour l'instant.",
                        "Actualiser"});
        row("German", 3,
            QStringList{"Gerät für COM1:", "nicht vorhanden: ",
                        "Zurzeit an diesem PC nicht vorhanden.", "Neu suchen"});
    }
    void deviceColumnInTheLanguage() {
        QFETCH(int, language);
        QFETCH(QStringList, says);
        IniFile ini;
        ini.write("[Default]\nPort=COM1:\n\n[Ports]\nCOM1=" + ById.toUtf8() + "\n");
        loadTranslations(qint16(language));
        SetupDialog d(ini.g, nullptr, [] { return QList<SerialDevice>{Builtin}; });
        loadTranslations(1);
        QVERIFY2(d.DeviceInfo->text().startsWith(says[0]), qPrintable(d.DeviceInfo->text()));
        QCOMPARE(d.DeviceCombo->currentText(), says[1] + ById);
        QVERIFY2(d.DeviceInfo->text().endsWith("\n\n" + says[2]), qPrintable(d.DeviceInfo->text()));
        QCOMPARE(d.DeviceRefresh->text(), says[3]);
    }
};

QTEST_MAIN(TstSetupDialog)
#include "tst_setup_dialog.moc"
