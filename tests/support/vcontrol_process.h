#pragma once
// Runs the virtual control (tools/vcontrol, path in $DNC_VCONTROL) for a test, and reads its
// wire log: the bytes each way, chunk by chunk with their times, and the control's events.

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>

class VControlProcess {
public:
    struct Chunk {
        qint64 us;        // microseconds since the control started
        bool rx;          // true: from the program to the control
        QByteArray bytes; // one read or one write of the control
    };
    struct Event {
        qint64 us;
        QString word; // START, CMD, STORED, DELETED, MISSING, XOFF, XON, OVERRUN, CRASH, ...
        QString text; // the rest of the line, e.g. "14 PROG1.NC" for STORED
    };

    VControlProcess();
    ~VControlProcess(); // stops the control if it still runs
    VControlProcess(const VControlProcess &) = delete;
    VControlProcess &operator=(const VControlProcess &) = delete;

    static QString program(); // $DNC_VCONTROL

    // Starts the control with `args`; adds --log (in a temporary folder) and, unless given, an idle
    // exit so that a crashed test leaves nothing behind. Returns once the control is ready.
    bool start(const QStringList &args, int timeoutMs = 5000);
    QString device() const { return m_device; } // the slave side of the pseudo-terminal
    QString errorString() const { return m_error; }

    bool stop(int timeoutMs = 3000); // SIGTERM: a clean exit, the link removed

    // Reads what the log has gained; the accessors below show what was read so far.
    void refresh();
    const QByteArray &rx() const { return m_rx; }
    const QByteArray &tx() const { return m_tx; }
    const QList<Chunk> &chunks() const { return m_chunks; }
    const QList<Event> &events() const { return m_events; }
    QStringList eventTexts(const QString &word) const;
    // Everything the control read, once it has read `expected` bytes (or 3 s have passed) and
    // a moment more: the control logs a read a little after the port has closed.
    QByteArray rxSettled(qsizetype expected);

    // Refreshes and runs the event loop until cond() holds; false at the timeout.
    bool waitUntil(const std::function<bool()> &cond, int timeoutMs = 5000);
    bool waitForEvent(const QString &word, int count = 1, int timeoutMs = 5000);

private:
    QString logPath() const { return m_dir.filePath("wire.log"); }
    void parseLine(const QByteArray &line);

    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_device;
    QString m_error;
    qint64 m_logPos = 0;
    QByteArray m_partial;
    QByteArray m_rx;
    QByteArray m_tx;
    QList<Chunk> m_chunks;
    QList<Event> m_events;
};
