#pragma once
// A station on its machine, for tests: the virtual control ("XonXoff") on a pseudo-terminal,
// punching what a test gives it, and dnc-station serving it from a folder of programs into a
// folder of received ones, with settings of its own.

#include "files.h"
#include "journal_rows.h"
#include "vcontrol_process.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class StationRig {
public:
    VControlProcess vc;
    QProcess station;

    StationRig() {
        QDir(m_dir.path()).mkpath(QStringLiteral("programs"));
        QDir(m_dir.path()).mkpath(QStringLiteral("received"));
        QDir(m_dir.path()).mkpath(QStringLiteral("store"));
    }
    ~StationRig() { stopStation(); }

    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString program(const QString &name) const { return path(QStringLiteral("programs/") + name); }
    QString received(const QString &name) const { return path(QStringLiteral("received/") + name); }
    QString link() const { return path(QStringLiteral("ttyUSB0")); }
    QString journal() const { return path(QStringLiteral("dnc/journal.db")); }
    // The journal's rows once it holds `count` (written after the log's line), or as they
    // are after ten seconds.
    QList<QVariantMap> journalRowsWhen(qsizetype count) {
        QDeadlineTimer deadline(10000);
        QList<QVariantMap> rows = journalRows(journal());
        while (rows.size() < count && !deadline.hasExpired()) {
            QTest::qWait(50);
            rows = journalRows(journal());
        }
        return rows;
    }

    // The control, punching each of `punches` in turn from `punchAfterMs` on.
    bool startControl(const QList<QByteArray> &punches, int punchAfterMs = 1000,
                      const QStringList &more = {}) {
        QStringList args{"--type",      "XonXoff",   "--link", link(),   "--dir",
                         path("store"), "--end-gap", "300",    "--rate", "200000"};
        for (int i = 0; i < punches.size(); ++i) {
            const QString file = path(QStringLiteral("punch%1").arg(i));
            writeFile(file, punches[i]);
            args << "--punch" << file;
        }
        return vc.start(args + QStringList{"--punch-after", QString::number(punchAfterMs)} + more);
    }

    // The section [Lathe1] in the rig's dnc.ini, and the environment that finds it.
    QProcessEnvironment settings() const {
        const QByteArray ini = "[Lathe1]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=1\n"
                               "CNC=XonXoff\nProgramDir=" +
                               path("programs").toUtf8() +
                               "\nReceiveDir=" + path("received").toUtf8() +
                               "\nRequestDelay=0.3\nPunchSilence=1\n";
        writeFile(path("dnc.ini"), ini);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_CONFIG_HOME", m_dir.path());
        env.insert("XDG_STATE_HOME", m_dir.path());
        env.insert("DNC_COM1", link());
        env.insert("DNC_LOCK_DIR", m_dir.path());
        return env;
    }

    // The station of section [Lathe1].
    bool startStation() {
        station.setProcessEnvironment(settings());
        station.start(QStringLiteral(DNC_STATION_PATH), QStringList{"-s", "Lathe1"});
        return station.waitForStarted(5000) && waitForLog("listening on");
    }
    QProcessEnvironment environment() const { return station.processEnvironment(); }

    // Waits until the station has logged `words` (`count` times).
    bool waitForLog(const QString &words, int count = 1, int timeoutMs = 10000) {
        QDeadlineTimer deadline(timeoutMs);
        while (log().count(words) < count) {
            if (deadline.hasExpired() || station.state() == QProcess::NotRunning)
                return false;
            station.waitForReadyRead(50);
        }
        return true;
    }
    QString log() {
        m_log += QString::fromUtf8(station.readAllStandardError());
        return m_log;
    }
    bool stopStation(int timeoutMs = 5000) {
        if (station.state() == QProcess::NotRunning)
            return true;
        station.terminate();
        return station.waitForFinished(timeoutMs);
    }

private:
    QTemporaryDir m_dir;
    QString m_log;
};
