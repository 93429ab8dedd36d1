#pragma once
// Debian's ser2net serving a device (the virtual control's pseudo-terminal) on loopback, set up
// as the README tells a shop to set up its device server. A test that needs it and cannot find
// it skips, or fails where DNC_SER2NET_REQUIRED is set (./scripts/test).

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

class Ser2netProcess {
public:
    struct Options {
        bool rfc2217 = true;
        QString line = QStringLiteral("115200n81"); // the box's own setting of the line
        bool chardelay = false;                     // ser2net's packing delay
        bool xonxoff = false;                       // X-on/X-off applied by the box itself
    };

    ~Ser2netProcess() { stop(); }

    // Empty when ser2net can be run here, else why not.
    static QString missing();
    // Skips the running test, or fails it under DNC_SER2NET_REQUIRED, when ser2net is missing.
    static bool required();

    bool start(const QString &device, const Options &o);
    bool stop();                            // SIGTERM, then SIGKILL
    void kill();                            // gone at once, as a box switched off
    QString name() const { return m_name; } // "rfc2217://127.0.0.1:PORT"
    quint16 port() const { return m_port; }
    QString errorString() const { return m_error; }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_name;
    quint16 m_port = 0;
    QString m_error;
};
