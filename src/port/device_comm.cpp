#include "device_comm.h"

#include "port_owner.h"

#include <QCoreApplication>

DeviceComm::DeviceComm(SerialComm &serial, NetComm &net)
    : m_serial(serial), m_net(net), m_active(&serial) {}

void DeviceComm::setWorkListener(std::function<void()> listener) {
    m_serial.setWorkListener(listener);
    m_net.setWorkListener(std::move(listener));
}

void DeviceComm::setSettings(const QString &settings) {
    m_serial.setSettings(settings); // a string neither could use is refused here, with the port
    m_net.setSettings(settings);
}

void DeviceComm::setDTREnable(bool on) {
    m_serial.setDTREnable(on);
    m_net.setDTREnable(on);
}

void DeviceComm::setPortOpen(bool open) {
    if (open == portOpen())
        return;
    if (!open) {
        m_active->setPortOpen(false);
        return;
    }
    const QString path = m_serial.devicePath();
    if (!isNetDeviceName(path)) {
        m_active = &m_serial;
    } else {
        QString why;
        const std::optional<NetDevice> device = parseNetDevice(path, &why);
        if (!device)
            throw CommError{m_serial.deviceName(), why, CommError::Stage::Opening};
        // A station on this PC serves the box: a second connection would take it over.
        if (const std::optional<PortOwner> station = stationHolding(path))
            throw CommError{m_serial.deviceName(), heldByStation(*station),
                            CommError::Stage::Opening};
        m_net.setTarget(*device, m_serial.deviceName());
        m_active = &m_net;
    }
    m_active->setPortOpen(true);
}
