#pragma once
// What the benchmarks measure with and start from: the process's CPU time, its memory as
// Linux reports it, program files, and the virtual control they run against.

#include "screen.h"
#include "vcontrol_process.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

// User and system time of this process (or thread, RUSAGE_THREAD) so far.
inline double median(QList<double> v) {
    std::sort(v.begin(), v.end());
    return v.isEmpty() ? 0 : v[v.size() / 2];
}

// A program of `lines` lines, or of at least `bytes` bytes, CR LF line ends.
inline QByteArray program(int lines, qint64 bytes = 0) {
    QByteArray p;
    for (int i = 1; i <= lines || p.size() < bytes; ++i)
        p += QStringLiteral("N%1 G01 X%2.%3 Y-12.5 F300\r\n")
                 .arg(i)
                 .arg(i % 500)
                 .arg(i % 1000, 3, 10, QLatin1Char('0'))
                 .toLatin1();
    return p;
}

inline double cpuSeconds(int who = RUSAGE_SELF) {
    rusage u{};
    getrusage(who, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// A field of /proc/self/status in KiB ("VmRSS", "VmHWM"); -1 when it cannot be read.
inline qint64 statusKiB(const char *field) {
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray name = QByteArray(field) + ':';
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith(name))
            return line.mid(name.size()).trimmed().split(' ').value(0).toLongLong();
    return -1;
}

// From here on VmHWM is the peak of what follows.
inline void resetPeak() {
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

// Writes the file whole; a benchmark without its input has nothing to measure.
inline QString writeFile(const QString &path, const QByteArray &bytes) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

// The control built with the benchmarks, unless DNC_VCONTROL names another.
inline void useBuiltVControl() {
#ifdef DNC_VCONTROL_PATH
    if (qEnvironmentVariableIsEmpty("DNC_VCONTROL"))
        qputenv("DNC_VCONTROL", DNC_VCONTROL_PATH);
#endif
}

// Starts the control; says why on stderr when it does not start.
inline bool startControl(VControlProcess &vc, const QStringList &args) {
    if (vc.start(args))
        return true;
    std::fprintf(stderr, "vcontrol: %s\n", qPrintable(vc.errorString()));
    return false;
}

// The screen of a run nobody watches: keeps nothing, so it does not weigh on memory.
class QuietScreen : public Screen {
public:
    int boxes = 0;
    void setLabel1Caption(const QString &) override {}
    void setLabel1Visible(bool) override {}
    void setText1Text(const QString &) override {}
    void setText1Visible(bool) override {}
    void setList1Visible(bool) override {}
    void list1Clear() override {}
    void list1AddItem(const QString &) override {}
    void list1Refresh() override {}
    int list1Count() const override { return 0; }
    int list1ListIndex() const override { return -1; }
    QString list1List(int) const override { return {}; }
    void repaint() override {}
    void setMousePointer(int) override {}
    void msgBox(const QString &, BoxIcon, const QString &) override { ++boxes; }
    QString inputBox(const QString &, const QString &, const QString &) override { return {}; }
    QString showOpen(const FileDialogRequest &) override { return {}; }
    QString showSave(const FileDialogRequest &) override { return {}; }
};
