// The setup dialog's column for the device of the chosen port.

#include "device_texts.h"
#include "net_device.h"
#include "setup_dialog.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTcpSocket>
#include <QTimer>

namespace {

constexpr int PresentIndexRole = Qt::UserRole + 1; // index in m_present, or -1

// Lets a long path wrap at its separators instead of running out of the box.
QString breakable(const QString &path) {
    QString out;
    for (qsizetype i = 0; i < path.size(); ++i) {
        out += path[i];
        if ((path[i] == u'/' && i > 0) || path[i] == u'_')
            out += QChar(0x200B);
    }
    return out;
}

bool sameDevice(const QString &chosen, const SerialDevice &d) {
    if (chosen == d.path || chosen == d.systemLocation)
        return true;
    const QString real = QFileInfo(chosen).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(d.systemLocation).canonicalFilePath();
}

// How long a device server has to answer the dialog's question.
constexpr int ServerAnswerMs = 3000;

} // namespace

void SetupDialog::createDeviceControls() {
    DeviceCombo = new QComboBox(this);
    DeviceCombo->setObjectName(QStringLiteral("DeviceCombo"));
    // A device server, or a device the scan does not find, is typed in.
    DeviceCombo->setEditable(true);
    DeviceCombo->setInsertPolicy(QComboBox::NoInsert);
    connect(DeviceCombo->lineEdit(), &QLineEdit::editingFinished, this, &SetupDialog::deviceTyped);
    DeviceInfo = new QLabel(this);
    DeviceInfo->setObjectName(QStringLiteral("DeviceInfo"));
    DeviceInfo->setWordWrap(true);
    DeviceInfo->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    DeviceInfo->setTextFormat(Qt::PlainText);
    DeviceRefresh = new QPushButton(deviceText(DeviceText::Refresh), this);
    DeviceRefresh->setObjectName(QStringLiteral("DeviceRefresh"));

    connect(Combo[0], &QComboBox::currentIndexChanged, this, [this] { showDevices(); });
    // Only the operator's own pick changes the setting: a stored path that names a present
    // device another way (/dev/ttyUSB0 for its by-id link) is kept as it is.
    connect(DeviceCombo, &QComboBox::activated, this, &SetupDialog::deviceChosen);
    connect(DeviceRefresh, &QPushButton::clicked, this, [this] {
        askIfServer();
        lookForDevices();
    });
}

int SetupDialog::shownPort() const {
    const int port = portNumberOf(Combo[0]->currentText());
    return port >= 1 && port <= PortCount ? port : 0;
}

void SetupDialog::lookForDevices() {
    m_present = m_scan ? m_scan() : QList<SerialDevice>();
    showDevices();
}

void SetupDialog::askIfServer() {
    const int port = shownPort();
    m_probeFor.clear();
    if (port == 0)
        return;
    const QString path = comDevicePath(port, m_devices[port - 1]);
    if (const std::optional<NetDevice> server = parseNetDevice(path))
        askServer(path, *server);
}

void SetupDialog::deviceTyped() {
    const int port = shownPort();
    const QString typed = DeviceCombo->currentText().trimmed();
    // Leaving the field after a pick hands back the entry's own text: no device typed.
    if (port == 0 || typed.isEmpty() || typed == DeviceCombo->itemText(DeviceCombo->currentIndex()))
        return;
    m_devices[port - 1] = typed;
    askIfServer();
    showDevices();
}

void SetupDialog::askServer(const QString &name, const NetDevice &device) {
    m_probeFor = name;
    m_probeAnswer.clear();
    if (m_probe)
        m_probe->deleteLater();
    m_probe = new QTcpSocket(this);
    QTcpSocket *const probe = m_probe;
    connect(probe, &QTcpSocket::connected, this,
            [this, probe] { serverAnswered(probe, deviceText(DeviceText::ServerAnswers)); });
    connect(probe, &QTcpSocket::errorOccurred, this, [this, probe] {
        serverAnswered(probe, deviceText(DeviceText::ServerSilent).arg(probe->errorString()));
    });
    QTimer::singleShot(ServerAnswerMs, probe, [this, probe] {
        serverAnswered(probe, deviceText(DeviceText::ServerSilent)
                                  .arg(QStringLiteral("%1 s").arg(ServerAnswerMs / 1000)));
    });
    const QString host = device.host.toLower();
    if (host.endsWith(QLatin1String(".invalid"))) // never resolves; no name server is asked
        QTimer::singleShot(0, probe, [this, probe, device] {
            serverAnswered(probe, deviceText(DeviceText::ServerSilent)
                                      .arg(QStringLiteral("%1: Host not found").arg(device.host)));
        });
    else
        probe->connectToHost(device.host, device.port);
}

void SetupDialog::serverAnswered(QTcpSocket *probe, const QString &answer) {
    if (probe != m_probe || !m_probeAnswer.isEmpty())
        return;
    m_probeAnswer = answer;
    probe->abort();
    showDeviceInfo();
}

void SetupDialog::showDevices() {
    const int port = shownPort();
    const QSignalBlocker quiet(DeviceCombo);
    DeviceCombo->clear();
    DeviceCombo->setEnabled(port != 0);
    if (port == 0) {
        DeviceInfo->clear();
        return;
    }
    const QString chosen = m_devices[port - 1];
    DeviceCombo->addItem(deviceText(DeviceText::DefaultDevice).arg(comDevicePath(port, QString())),
                         QString());
    DeviceCombo->setItemData(0, -1, PresentIndexRole);
    int current = 0;
    for (int i = 0; i < m_present.size(); ++i) {
        const SerialDevice &d = m_present[i];
        const QString name = QFileInfo(d.systemLocation).fileName();
        const QString label = d.label();
        DeviceCombo->addItem(label == name ? name : QStringLiteral("%1 (%2)").arg(label, name),
                             d.path);
        DeviceCombo->setItemData(DeviceCombo->count() - 1, i, PresentIndexRole);
        if (!chosen.isEmpty() && current == 0 && sameDevice(chosen, d))
            current = DeviceCombo->count() - 1;
    }
    if (!chosen.isEmpty() && current == 0) {
        // Chosen earlier and not found now: kept, and said so.
        const bool there = QFileInfo::exists(chosen) || isNetDeviceName(chosen);
        // The state first: a long path is cut at the list's right edge.
        DeviceCombo->addItem(there ? chosen : deviceText(DeviceText::Absent).arg(chosen), chosen);
        DeviceCombo->setItemData(DeviceCombo->count() - 1, -1, PresentIndexRole);
        current = DeviceCombo->count() - 1;
    }
    DeviceCombo->setCurrentIndex(current);
    showDeviceInfo();
}

void SetupDialog::deviceChosen(int index) {
    const int port = shownPort();
    if (port == 0 || index < 0)
        return;
    m_devices[port - 1] = DeviceCombo->itemData(index).toString();
    showDeviceInfo();
}

void SetupDialog::showDeviceInfo() {
    const int port = shownPort();
    if (port == 0)
        return;
    const QString com = QStringLiteral("COM%1:").arg(port);
    const QString chosen = m_devices[port - 1];
    const QString path = comDevicePath(port, chosen);
    QStringList lines{deviceText(DeviceText::DeviceOf).arg(com), breakable(path)};

    const int present = DeviceCombo->currentData(PresentIndexRole).toInt();
    const bool listed = present >= 0 && present < m_present.size();
    if (listed) {
        const SerialDevice &d = m_present[present];
        // Its other names: the stable link and the kernel's.
        if (d.path != path)
            lines << breakable(d.path);
        if (d.systemLocation != path && d.systemLocation != d.path)
            lines << breakable(d.systemLocation);
        const std::pair<DeviceText, QString> facts[] = {{DeviceText::Description, d.description},
                                                        {DeviceText::Maker, d.manufacturer},
                                                        {DeviceText::SerialNumber, d.serialNumber}};
        for (const auto &[what, value] : facts)
            if (!value.trimmed().isEmpty())
                lines << QCoreApplication::translate("Setup", "%1: %2")
                             .arg(deviceText(what), value.trimmed());
    }
    if (comDeviceSource(port, chosen) == ComDeviceSource::Environment) {
        lines << QString()
              << deviceText(DeviceText::EnvironmentFirst)
                     .arg(comEnvironmentVariable(port), breakable(path));
    } else if (isNetDeviceName(path)) {
        QString why;
        const std::optional<NetDevice> server = parseNetDevice(path, &why);
        if (!server)
            lines << QString() << why;
        else if (m_probeFor != path)
            lines << QString() << deviceText(DeviceText::ServerNotAsked);
        else
            lines << QString()
                  << (m_probeAnswer.isEmpty() ? deviceText(DeviceText::ServerAsked)
                                              : m_probeAnswer);
    } else if (!listed && !QFileInfo::exists(path)) {
        lines << QString() << deviceText(DeviceText::NotPresent);
    }
    DeviceInfo->setText(lines.join(u'\n'));
}
