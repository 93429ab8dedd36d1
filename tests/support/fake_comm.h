#pragma once
// A scripted port: the test decides what the far end has sent before each read, so chunk
// boundaries are exact, and every write is recorded.

#include "comm.h"

#include <QByteArrayList>
#include <functional>
#include <optional>
#include <utility>

class FakeComm : public Comm {
public:
    // What the far end has sent and the program has not read yet.
    QByteArray inbox;
    // Every Output call, in order, and all bytes joined.
    QList<QByteArray> writes;
    QByteArray written() const { return writes.join(); }

    int port = 0;
    QString settings;
    bool dtr = false;
    bool open = false;
    int opens = 0;
    QList<bool> dtrAtOpens; // DTR as each opening found it
    int closes = 0;

    // Bytes that stay "in the queue" after a write: outBufferCount reports them and
    // lets drainPerPoll of them leave at each call.
    int stallOutput = 0;
    int drainPerPoll = 1 << 30;
    int queued = 0;

    // The far end reacts to a write (e.g. answers a line).
    std::function<void(const QByteArray &)> onOutput;

    // The device fails at the `faultAt`-th call (from 1) of the members that can fail, or at
    // the first of the one named in `faultIn`: from then on those throw `deviceError`. Closing
    // still works, as it does on a dead port.
    std::optional<CommError> deviceError;
    int calls = 0;
    int faultAt = 0;
    QString faultIn;
    CommError fault{QStringLiteral("COM2: (/dev/ttyS1)"), QStringLiteral("the device is gone")};

    void setCommPort(int p) override { port = p; }
    void setSettings(const QString &s) override {
        step("setSettings");
        settings = s;
    }
    void setDTREnable(bool on) override { dtr = on; }
    bool portOpen() const override { return open; }
    void setPortOpen(bool o) override {
        if (o && !open) {
            step("open");
            ++opens;
            dtrAtOpens << dtr;
        } else if (!o && open) {
            ++closes;
            queued = 0;
        }
        open = o;
    }
    void output(const QByteArray &bytes) override {
        step("output");
        if (!open)
            throw CommError{QStringLiteral("fake"), QStringLiteral("write to a closed port")};
        writes << bytes;
        queued += stallOutput;
        if (onOutput)
            onOutput(bytes);
    }
    int outBufferCount() override {
        step("outBufferCount");
        const int now = queued;
        queued = qMax(0, queued - drainPerPoll);
        return now;
    }
    int inBufferCount() override {
        step("inBufferCount");
        return int(inbox.size());
    }
    QByteArray input() override {
        step("input");
        return std::exchange(inbox, {});
    }

private:
    void step(const char *member) {
        ++calls;
        if (!deviceError && (calls == faultAt || faultIn == QLatin1String(member)))
            deviceError = fault;
        if (deviceError)
            throw *deviceError;
    }
};
