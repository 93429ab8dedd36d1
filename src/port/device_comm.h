#pragma once
// The port COMn as the settings name it: the local serial device, or the port of a serial device
// server when its device is named tcp://HOST:PORT or rfc2217://HOST:PORT. Chosen at each opening
// by the device's name, so that a device chosen in the setup dialog holds for the next operation.

#include "net_comm.h"
#include "polled_port.h"
#include "serial_comm.h"

class DeviceComm : public PolledPort {
public:
    DeviceComm(SerialComm &serial, NetComm &net);

    // The device the settings name and how the operator knows it, as SerialComm tells them.
    QString devicePath() const { return m_serial.devicePath(); }
    QString deviceName() const { return m_serial.deviceName(); }
    // The carrier of the last opening.
    bool onNetwork() const { return m_active == &m_net; }

    bool holdsInput() const override { return m_active->holdsInput(); }
    void setWorkListener(std::function<void()> listener) override;

    void setCommPort(int port) override { m_serial.setCommPort(port); }
    void setSettings(const QString &settings) override;
    void setDTREnable(bool on) override;

    bool portOpen() const override { return m_active->portOpen(); }
    void setPortOpen(bool open) override;

    void output(const QByteArray &bytes) override { m_active->output(bytes); }
    int outBufferCount() override { return m_active->outBufferCount(); }
    int inBufferCount() override { return m_active->inBufferCount(); }
    QByteArray input() override { return m_active->input(); }

private:
    SerialComm &m_serial;
    NetComm &m_net;
    PolledPort *m_active;
};
