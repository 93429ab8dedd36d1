#pragma once
// A troubleshooting record of the line: every chunk sent (TX) and read (RX) with its time,
// hex and printable form, and each opening and closing of the port. Switched on by naming
// a file in the environment variable DNC_TRACE; a file that cannot be opened switches it off.

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QString>
#include <memory>

class WireTrace {
public:
    enum class Direction { Sent, Received };

    // Null when DNC_TRACE is unset or its file cannot be opened for appending.
    static std::unique_ptr<WireTrace> fromEnvironment();

    explicit WireTrace(const QString &path);
    bool isOpen() const { return m_file.isOpen(); }

    void bytes(Direction d, const QByteArray &chunk);
    void note(const QString &event);

    // "2026-11-23 10:00:00.123 TX 52 0d  |R.|"
    static QByteArray formatBytes(const QDateTime &when, Direction d, const QByteArray &chunk);

private:
    void append(const QByteArray &line);
    QFile m_file;
};
