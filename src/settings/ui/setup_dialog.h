#pragma once
// The setup dialog: seven drop-down lists, two check boxes and one button that writes all
// and closes. Beside them, the device of the chosen port, picked from those this PC has or
// typed: a device path, or a serial device server's port (tcp://HOST:PORT, rfc2217://HOST:PORT).

#include "globals.h"
#include "serial_device.h"
#include "setup_form.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTcpSocket;
struct NetDevice;

class SetupDialog : public QDialog {
    Q_OBJECT
public:
    // `scan` lists the serial devices present; without one only the default and the device
    // already chosen are offered.
    SetupDialog(const Globals &g, QWidget *parent = nullptr, SerialDeviceScan scan = {});

    std::array<QComboBox *, 7> Combo{};
    std::array<QLabel *, 7> Label{};
    QCheckBox *Check1 = nullptr;
    QCheckBox *Check2 = nullptr;
    QPushButton *Command1 = nullptr;

    QComboBox *DeviceCombo = nullptr; // the device of the port in Combo(0)
    QLabel *DeviceInfo = nullptr;     // what is known of it
    QPushButton *DeviceRefresh = nullptr;

private:
    void Command1_Click();
    void createDeviceControls();
    void showDevices();
    void showDeviceInfo();
    void deviceChosen(int index);
    void deviceTyped();
    // Whether the device server answers: a connection made and closed at once, on the
    // operator's word only (typed, or "Look again"), since a box that serves one client at a
    // time may drop the one it serves for it. Shown when it comes.
    void askServer(const QString &name, const NetDevice &device);
    void askIfServer(); // the device of the shown port
    void serverAnswered(QTcpSocket *probe, const QString &answer);
    void lookForDevices();
    int shownPort() const;

    const Globals &m_g;
    SerialDeviceScan m_scan;
    QList<SerialDevice> m_present;
    std::array<QString, PortCount> m_devices; // the choice for each port, as it will be written
    QTcpSocket *m_probe = nullptr;            // the last question to a device server
    QString m_probeFor;                       // its name
    QString m_probeAnswer;                    // empty while it is asked
};
