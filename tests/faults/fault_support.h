#pragma once
// What the fault tables share: a small disk of their own, a USB adapter pulled out, the fault a
// row names, the checks every case ends with, and one line per case for the fault report.

#include "fake_link.h"
#include "files.h"
#include "rows.h"
#include "vcontrol_process.h"

#include <QTemporaryDir>
#include <QTimer>
#include <functional>

// A tmpfs (`options` as for mount(8)) on a temporary folder for the length of a test; mounting
// needs root.
class SmallDisk {
public:
    explicit SmallDisk(const QByteArray &options);
    ~SmallDisk();

    bool mounted() const { return m_mounted; }
    QString whyNot() const { return m_why; } // printed when a test is skipped
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    bool fill(); // so that the next write finds no space
    bool remountReadOnly();

private:
    QTemporaryDir m_dir;
    bool m_mounted = false;
    QString m_why;
};

// How many of this process's descriptors are open on `path`: 0 once a file is closed.
int openDescriptors(const QString &path);

// Runs `act` once, as soon as `when` holds, while an operation yields to the event loop.
class Trigger {
public:
    void onceWhen(std::function<bool()> when, std::function<void()> act);

private:
    QTimer m_poll;
};

// Arms the fault a row names, "<what> at <moment>": "stop" ends the control, "pull" pulls the
// USB adapter behind `link` out (hung up, its link removed), "close" runs `close`, as the window
// closing does. The moment is a word of the control's log (STALLED: once the program has taken
// what came, so that it counts), a number of the program's lines the control has read, or
// "list": `listShown` holds. Returns why the fault cannot be made here (a pull needs
// CAP_SYS_ADMIN), else empty.
QString armFault(Trigger &trigger, const QString &fault, VControlProcess &vc, const QString &link,
                 std::function<void()> close, std::function<bool()> listShown = {});

QByteArray everyByte();                        // bytes 0 to 255 in order
QByteArray sha256Hex(const QByteArray &bytes); // lower-case

// Takes the box a case expects, one with `icon` that says `told`, and returns its text when it is
// not that. None when `told` is empty: the screen fails the test on a box nobody took.
QString takeBox(RecordingScreen &screen, const QString &told, BoxIcon icon = BoxIcon::Critical);

qint64 msTaken(const std::function<void()> &act);

// Bytes of `expected` that did not arrive where they belong.
qsizetype bytesLost(const QByteArray &expected, const QByteArray &arrived);

// When DNC_FAULT_LOG names a file, each case appends one line to it for the fault report:
// class <TAB> outcome <TAB> bytes lost <TAB> milliseconds <TAB> the milliseconds past which the
// case counts as hung (a case that moves much data is given the line's time for it).
void recordFault(const QString &faultClass, const QString &outcome, qsizetype lost,
                 qint64 elapsedMs, qint64 hungAfterMs = 20000);
