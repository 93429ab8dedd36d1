#pragma once
// The port as the operations use it, watched from the side: whether it failed, and how many
// characters went each way. Everything is handed on unchanged.

#include "comm.h"

class WatchedComm : public Comm {
public:
    explicit WatchedComm(Comm &port) : m_port(port) {}

    bool failed() const { return m_failed; }
    qint64 sent() const { return m_sent; }
    qint64 received() const { return m_received; }

    void setCommPort(int port) override {
        watch([&] { m_port.setCommPort(port); });
    }
    void setSettings(const QString &settings) override {
        watch([&] { m_port.setSettings(settings); });
    }
    void setDTREnable(bool on) override {
        watch([&] { m_port.setDTREnable(on); });
    }
    bool portOpen() const override { return m_port.portOpen(); }
    void setPortOpen(bool open) override {
        watch([&] { m_port.setPortOpen(open); });
    }
    void output(const QByteArray &bytes) override {
        watch([&] { m_port.output(bytes); });
        m_sent += bytes.size();
    }
    int outBufferCount() override {
        return watch([&] { return m_port.outBufferCount(); });
    }
    int inBufferCount() override {
        return watch([&] { return m_port.inBufferCount(); });
    }
    QByteArray input() override {
        const QByteArray got = watch([&] { return m_port.input(); });
        m_received += got.size();
        return got;
    }

private:
    template <class F> auto watch(F f) -> decltype(f()) {
        try {
            return f();
        } catch (const CommError &) {
            m_failed = true;
            throw;
        }
    }

    Comm &m_port;
    bool m_failed = false;
    qint64 m_sent = 0;
    qint64 m_received = 0;
};
