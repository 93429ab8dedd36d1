#include "fake_comm.h"

QByteArray FakeComm::written() const {
    QByteArray all;
    for (const QByteArray &w : writes)
        all += w;
    return all;
}

void FakeComm::check() const {
    if (deviceError)
        throw *deviceError;
}

void FakeComm::step(const char *member) {
    ++calls;
    if (!deviceError && (calls == faultAt || faultIn == QLatin1String(member)))
        deviceError = fault;
    check();
}

void FakeComm::setSettings(const QString &s) {
    step("setSettings");
    settings = s;
}

void FakeComm::setPortOpen(bool o) {
    if (o == open)
        return;
    if (o) {
        step("open");
        ++opens;
    } else {
        ++closes;
        queued = 0;
    }
    open = o;
}

void FakeComm::output(const QByteArray &bytes) {
    step("output");
    if (!open)
        throw CommError{QStringLiteral("fake"), QStringLiteral("write to a closed port")};
    writes << bytes;
    queued += stallOutput;
    if (onOutput)
        onOutput(bytes);
}

int FakeComm::outBufferCount() {
    step("outBufferCount");
    const int now = queued;
    queued = qMax(0, queued - drainPerPoll);
    return now;
}

int FakeComm::inBufferCount() {
    step("inBufferCount");
    return int(inbox.size());
}

QByteArray FakeComm::input() {
    step("input");
    QByteArray all = inbox;
    inbox.clear();
    return all;
}
