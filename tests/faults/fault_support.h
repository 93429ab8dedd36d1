#pragma once
// What the fault tests share: a small file system of their own (read-only or full), a USB
// adapter pulled out, the file descriptors a test can look at, and one line per case for the
// fault report.

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

// A tmpfs mounted on a temporary folder for the length of a test; mounting needs root.
class SmallDisk {
public:
    // `options` as for mount(8), e.g. "size=64k".
    explicit SmallDisk(const QByteArray &options);
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool mounted() const { return m_mounted; }
    QString whyNot() const { return m_why; } // printed when a test is skipped
    QString path() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    // Writes `bytes` as `name` before the disk is filled or made read-only.
    bool put(const QString &name, const QByteArray &bytes);
    // Fills what is left with one file, so that the next write finds no space.
    bool fill();
    bool remountReadOnly();

private:
    QTemporaryDir m_dir;
    bool m_mounted = false;
    QString m_why;
};

// Why no device can be hung up here (it takes CAP_SYS_ADMIN); empty when it can.
QString hangUpUnavailable();

// The device behind `path` hung up as a USB serial adapter is when it is pulled out: every
// open descriptor of it fails from now on. Empty when done, else why not (needs root).
QString hangUp(const QString &path);

// Characters that have reached the device and that the program has not taken yet; -1 when it
// cannot be asked. 0 once the program has read all that came.
int waitingAt(const QString &device);

// How many of this process's descriptors are open on `path`: 0 once a file is closed.
int openDescriptors(const QString &path);

// Bytes of `expected` that did not arrive where they belong.
qsizetype bytesLost(const QByteArray &expected, const QByteArray &arrived);

// When DNC_FAULT_LOG names a file, each case appends one line to it for the fault report:
// class <TAB> outcome <TAB> bytes lost <TAB> milliseconds.
void recordFault(const QString &faultClass, const QString &outcome, qsizetype lost,
                 qint64 elapsedMs);

// Table rows written on one line, and programs of numbered lines.
template <class... T> void row(const char *name, const T &...v) {
    (QTest::newRow(name) << ... << v);
}

inline QByteArray numberedLines(int n, const char *end = "\r") {
    QByteArray file;
    for (int i = 1; i <= n; ++i)
        file += "L" + QByteArray::number(i) + end;
    return file;
}

// Every byte value in order, as one file: bytes 0 to 255.
inline QByteArray EveryByte() {
    QByteArray all;
    for (int c = 0; c < 256; ++c)
        all += char(c);
    return all;
}

// Runs `act` once, as soon as `when` holds, while an operation yields to the event loop.
class Trigger {
public:
    void onceWhen(std::function<bool()> when, std::function<void()> act);

private:
    QTimer m_poll;
};
