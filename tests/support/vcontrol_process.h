#pragma once
// Runs the virtual control (tools/vcontrol, path in $DNC_VCONTROL) for a test, and reads its
// wire log: the bytes each way and the control's events.

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <utility>

class VControlProcess {
public:
    ~VControlProcess() { stop(); }

    // Starts the control with `args`, a log in a temporary folder and an idle exit, so that a
    // crashed test leaves nothing behind. Returns once the control is ready.
    bool start(const QStringList &args, int timeoutMs = 5000);
    QString device() const { return m_device; } // the slave side of the pseudo-terminal
    QString errorString() const { return m_error; }
    qint64 pid() const { return m_process.processId(); }

    bool stop(int timeoutMs = 3000); // SIGTERM: a clean exit, the link removed

    // Reads what the log has gained; the accessors below show what was read so far.
    void refresh();
    const QByteArray &rx() const { return m_rx; } // from the program to the control
    const QByteArray &tx() const { return m_tx; }
    // Microseconds from the control's last write before the first byte it read to that byte:
    // how long a request waited for its answer. -1 until it has read something.
    qint64 answerGapUs() const { return m_firstRxUs < 0 ? -1 : m_firstRxUs - m_txBeforeRxUs; }
    // The rest of the line of each event `word` (START, STORED, XOFF, OVERRUN, EXIT...).
    QStringList eventTexts(const QString &word) const;
    // Everything the control read, once it has read `expected` bytes (or 3 s have passed) and
    // a moment more: the control logs a read a little after the port has closed.
    QByteArray rxSettled(qsizetype expected);

    // Refreshes and runs the event loop until cond() holds; false at the timeout.
    bool waitUntil(const std::function<bool()> &cond, int timeoutMs = 5000);
    bool waitForEvent(const QString &word, int count = 1, int timeoutMs = 5000);

private:
    QString logPath() const { return m_dir.filePath("wire.log"); }

    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_device;
    QString m_error;
    qint64 m_logPos = 0;
    QByteArray m_partial;
    QByteArray m_rx;
    QByteArray m_tx;
    qint64 m_lastTxUs = 0;
    qint64 m_firstRxUs = -1;
    qint64 m_txBeforeRxUs = 0;
    QList<std::pair<QString, QString>> m_events; // word, text
};
