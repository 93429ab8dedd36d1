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

void FakeComm::setPortOpen(bool o) {
    if (o == open)
        return;
    if (o) {
        if (openError)
            throw *openError;
        ++opens;
    } else {
        ++closes;
        queued = 0;
    }
    open = o;
}

void FakeComm::output(const QByteArray &bytes) {
    check();
    if (!open)
        throw CommError{QStringLiteral("fake"), QStringLiteral("write to a closed port")};
    writes << bytes;
    queued += stallOutput;
    if (onOutput)
        onOutput(bytes);
}

int FakeComm::outBufferCount() {
    check();
    const int now = queued;
    queued = qMax(0, queued - drainPerPoll);
    return now;
}

int FakeComm::inBufferCount() {
    check();
    return int(inbox.size());
}

QByteArray FakeComm::input() {
    check();
    QByteArray all = inbox;
    inbox.clear();
    return all;
}
