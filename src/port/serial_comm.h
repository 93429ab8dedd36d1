#pragma once
// The port over QSerialPort. COMn is the device named by the environment variable DNC_COMn,
// else the one the settings name for it, else /dev/ttyS<n-1>. At most 512 characters are in flight
// (Qt's buffer and the driver's queue): Output waits, yielding to the event loop, for room, and
// never drops a byte.
// A wait on the port sleeps in the event loop; what it waits for wakes it: characters that
// come, and an alarm at the moment the characters in flight should have left at the line's
// speed.

#include "line_settings.h"
#include "operation_state.h"
#include "polled_port.h"
#include "wake_alarm.h"

#include <QSerialPort>
#include <functional>
#include <memory>
#include <optional>

class WireTrace;

class SerialComm : public PolledPort {
public:
    // A device path given here is used whatever port number is set (tests, tools).
    explicit SerialComm(const QString &device = QString());
    ~SerialComm() override;

    static constexpr int MaxInFlight = 512;
    // How long after the event loop read the port InBufferCount takes that read as current,
    // when nothing was handed to the port since.
    static constexpr qint64 FreshReadNs = 50000;

    void setDevice(const QString &path) { m_device = path; }
    // The device the settings name for a port number, empty for none; read at each opening,
    // so that a choice made in the setup dialog holds for the next operation.
    void setConfiguredDevices(std::function<QString(int port)> configured) {
        m_configured = std::move(configured);
    }
    // The device the current port number stands for, and how the operator knows it:
    // "COM1: (/dev/ttyS0)".
    QString devicePath() const;
    QString deviceName() const;

    // While the running operation is being ended, Output and the drain before closing stop
    // waiting for the line.
    void setOperationState(const OperationState *state) { m_state = state; }

    // Told each time the caller hands over characters or takes what came: work was done, and
    // the next pass of the yield must not sleep.
    void setWorkListener(std::function<void()> listener) override {
        m_workDone = std::move(listener);
    }

    // Sets the modem lines of the open device `fd`: 0, or the errno of a refusal. At every
    // opening, and when DTR is enabled while open. Replaced by tests that watch the lines.
    using ModemLineSetter = std::function<int(int fd, bool dtr, bool rts)>;
    void setModemLineSetter(ModemLineSetter setter) { m_modemLines = std::move(setter); }
    static int setModemLines(int fd, bool dtr, bool rts);

    void setCommPort(int port) override { m_commPort = port; }
    void setSettings(const QString &settings) override;
    void setDTREnable(bool on) override;

    bool portOpen() const override { return m_port.isOpen(); }
    void setPortOpen(bool open) override;

    // Characters taken in from the line and not yet read by Input.
    bool holdsInput() const override { return m_port.isOpen() && m_port.bytesAvailable() > 0; }

    void output(const QByteArray &bytes) override;
    int outBufferCount() override;
    int inBufferCount() override;
    QByteArray input() override;

private:
    void open();
    void close();
    bool openWith(const LineSettings &s);
    CommError openError() const;
    // What the device refused, for the trace; empty when it took the lines.
    QString applyModemLines();
    void drain();
    void push();
    qint64 writeDirect(const QByteArray &piece);
    qint64 inFlight() const;
    // Rings the alarm when at most `left` characters should still be in flight.
    void wakeWhenInFlight(qint64 left);
    void workDone() const;
    void requireUsable() const;
    void onError(QSerialPort::SerialPortError error);
    bool abandoned() const { return m_state && m_state->ending(); }
    void trace(const QString &event);
    double characterNs() const;

    // A pseudo-terminal has no line: the kernel takes any amount at once and its queue reads
    // empty. There the characters handed over are let out at the line's speed in our own
    // count, so that the bound on what is in flight holds as on a real port.
    bool m_pty = false;     // paced as a line, see above
    qint64 m_emptyAt = 0;   // when the last character handed over is out, at the line's speed
    qint64 m_fetchedAt = 0; // when the event loop last read characters in; 0: since used

    QSerialPort m_port;
    WakeAlarm m_alarm;
    std::function<void()> m_workDone;
    ModemLineSetter m_modemLines = &SerialComm::setModemLines;
    QString m_device;
    std::function<QString(int)> m_configured;
    int m_commPort = 1;
    QString m_settingsText = QStringLiteral("9600,N,8,1");
    LineSettings m_settings;
    bool m_dtr = false;
    bool m_quiet = false; // errors expected here are handled where they happen
    bool m_closePosted = false;
    std::optional<QString> m_failure; // first fault seen while open: the port is dead
    const OperationState *m_state = nullptr;
    std::unique_ptr<WireTrace> m_trace;
};
