#pragma once
// The port on a serial device server, over TCP: the same behaviour the operations rely on of a
// local port. The characters handed over are let out at the line's speed in our own count, as
// on a pseudo-terminal, so that no more than 512 are in flight between us and the control,
// the device server's buffer included; Output waits, yielding to the event loop, for room and
// never drops a byte, and closing waits until they should have left the device server.
// Short lines go out at once (TCP_NODELAY), and keep-alive with short intervals and a bound on
// unacknowledged data find a dead peer within seconds. Over RFC 2217 the line settings are
// asked of the server when the port opens, and the opening fails when it refuses or changes one.

#include "line_settings.h"
#include "net_device.h"
#include "operation_state.h"
#include "polled_port.h"
#include "telnet_layer.h"
#include "wake_alarm.h"

#include <QDeadlineTimer>
#include <QTcpSocket>
#include <functional>
#include <memory>
#include <optional>

class WireTrace;

class NetComm : public PolledPort {
public:
    NetComm();
    ~NetComm() override;

    // The local port's bound, less what the line passes while the control's X-off travels back
    // through the device server and the network (about 5 ms at 230 400 baud).
    static constexpr int MaxInFlight = 384;
    // How long the connection and the answers of an RFC 2217 server may take.
    static constexpr int OpenTimeoutMs = 4000;
    // The peer is asked after this long without traffic, then every interval, so many times.
    static constexpr int KeepIdleS = 2;
    static constexpr int KeepIntervalS = 1;
    static constexpr int KeepCount = 3;
    // Sent data that stays unacknowledged this long ends the connection.
    static constexpr int UserTimeoutMs = 5000;
    // A raw socket tells nothing of the box's side: a box (ser2net) that is still opening its
    // serial device when the connection closes drops what it was given. So a connection is
    // held this long from its opening, and until the box has taken every byte.
    static constexpr int RawSettleMs = 100;

    // The device server to open, and how the operator knows the port ("COM1: (tcp://box:4001)").
    void setTarget(const NetDevice &device, const QString &name);
    void setOpenTimeout(int ms) { m_openTimeoutMs = ms; }
    QString deviceName() const { return m_name; }

    void setOperationState(const OperationState *state) { m_state = state; }
    void setWorkListener(std::function<void()> listener) override {
        m_workDone = std::move(listener);
    }
    bool holdsInput() const override;

    void setCommPort(int) override {}
    void setSettings(const QString &settings) override;
    void setDTREnable(bool on) override;

    bool portOpen() const override { return m_open; }
    void setPortOpen(bool open) override;

    void output(const QByteArray &bytes) override;
    int outBufferCount() override;
    int inBufferCount() override;
    QByteArray input() override;

private:
    void open();
    void close();
    void connectSocket(const QDeadlineTimer &limit);
    void tuneSocket();
    void acknowledgeNow();
    void negotiate(const QDeadlineTimer &limit);
    void checkAnswer(const ComPortAnswer &a, const QByteArray &asked, bool *settled);
    [[noreturn]] void openFailed(const QString &reason);
    void sleepUntil(const QDeadlineTimer &limit);
    void pull();
    void drain();
    void settle();
    qint64 inFlight() const;
    void wakeWhenInFlight(qint64 left);
    void workDone() const;
    void requireUsable() const;
    void onError(QAbstractSocket::SocketError error);
    bool abandoned() const { return m_state && m_state->ending(); }
    void trace(const QString &event);
    double characterNs() const;
    QString where() const;

    QTcpSocket m_socket;
    TelnetLayer m_telnet;
    WakeAlarm m_alarm;
    NetDevice m_device;
    QString m_name;
    QString m_settingsText = QStringLiteral("9600,N,8,1");
    LineSettings m_settings;
    int m_openTimeoutMs = OpenTimeoutMs;
    bool m_dtr = false;
    bool m_open = false;
    bool m_opening = false;
    bool m_looking = false;     // inside a look at the socket that does not wait
    QByteArray m_in;            // the line's characters taken from the socket, not yet read
    bool m_leftCounted = false; // what is left after a failure has been counted once
    qint64 m_emptyAt = 0;
    qint64 m_connectedAt = 0; // WakeAlarm::now() when the connection was made
    std::optional<QString> m_failure;
    std::function<void()> m_workDone;
    const OperationState *m_state = nullptr;
    std::unique_ptr<WireTrace> m_trace;
};
