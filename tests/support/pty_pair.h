#pragma once
// A pseudo-terminal for tests that go through a real serial port: the program opens the
// slave by its path, the test plays the far end on the master. The slave is set raw before
// use and held open by the pair, so that what the test sends waits there like on a line.
// All members may be called from another thread than the one using the slave.

#include <QByteArray>
#include <QString>

class PtyPair {
public:
    PtyPair();
    ~PtyPair();
    PtyPair(const PtyPair &) = delete;
    PtyPair &operator=(const PtyPair &) = delete;

    bool isOpen() const { return m_slave >= 0; }
    QString slavePath() const { return m_slavePath; }

    // Writes all of it to the slave's input.
    bool send(const QByteArray &bytes);
    // At most maxBytes of what the slave sent, waiting up to timeoutMs for the first byte.
    QByteArray receive(int maxBytes, int timeoutMs);
    // Reads until `count` bytes have come or timeoutMs has passed.
    QByteArray receiveCount(int count, int timeoutMs);
    // Bytes waiting for the reader of the slave.
    int waitingAtSlave() const;
    // Stops the slave's output as a held line would (tcflow): what the program writes then
    // stays in its own queue until the output is resumed.
    void setSlaveOutputStopped(bool stopped);

private:
    int m_master = -1;
    int m_slave = -1;
    QString m_slavePath;
};
