#include "vcontrol_process.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

bool VControlProcess::start(const QStringList &args, int timeoutMs) {
    const QString program = qEnvironmentVariable("DNC_VCONTROL");
    if (program.isEmpty()) {
        m_error = "DNC_VCONTROL is not set";
        return false;
    }
    m_process.start(program, args + QStringList{"--log", logPath(), "--exit-after-idle", "120000"});
    // Its first line is the device, written once everything is set up.
    QDeadlineTimer deadline(timeoutMs);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(int(deadline.remainingTime()))) {
            m_error = program + " did not start: " + m_process.errorString() + " " +
                      QString::fromLocal8Bit(m_process.readAllStandardError());
            stop();
            return false;
        }
    }
    m_device = QString::fromLocal8Bit(m_process.readLine()).trimmed();
    return true;
}

bool VControlProcess::stop(int timeoutMs) {
    if (m_process.state() == QProcess::NotRunning)
        return true;
    m_process.terminate();
    if (m_process.waitForFinished(timeoutMs))
        return true;
    m_process.kill();
    m_process.waitForFinished(3000);
    return false;
}

// Lines "<us> RX <hex>", "<us> TX <hex>" or "<us> EV <word> <text>".
void VControlProcess::refresh() {
    QFile f(logPath());
    if (!f.open(QIODevice::ReadOnly) || !f.seek(m_logPos))
        return;
    m_partial += f.readAll();
    m_logPos = f.pos();
    // Only whole lines: the control may be writing the next one right now.
    for (qsizetype nl; (nl = m_partial.indexOf('\n')) >= 0; m_partial.remove(0, nl + 1)) {
        const QByteArray line = m_partial.left(nl);
        const qsizetype space = line.indexOf(' ');
        const QByteArray kind = line.mid(space + 1, 2), rest = line.mid(space + 4);
        const QString event = QString::fromUtf8(rest);
        const qint64 us = line.left(space).toLongLong();
        if (kind == "TX")
            m_lastTxUs = us;
        if (kind == "RX" && m_firstRxUs < 0) {
            m_firstRxUs = us;
            m_txBeforeRxUs = m_lastTxUs;
        }
        if (kind == "RX" || kind == "TX")
            (kind == "RX" ? m_rx : m_tx) += QByteArray::fromHex(rest);
        else if (kind == "EV")
            m_events.append({event.section(' ', 0, 0), event.section(' ', 1)});
    }
}

QStringList VControlProcess::eventTexts(const QString &word) const {
    QStringList out;
    for (const auto &[w, text] : m_events)
        if (w == word)
            out.append(text);
    return out;
}

QByteArray VControlProcess::rxSettled(qsizetype expected) {
    waitUntil([&] { return m_rx.size() >= expected; }, 3000);
    waitUntil([] { return false; }, 50);
    return m_rx;
}

bool VControlProcess::waitUntil(const std::function<bool()> &cond, int timeoutMs) {
    QDeadlineTimer deadline(timeoutMs);
    for (refresh(); !cond(); refresh()) {
        if (deadline.hasExpired())
            return false;
        if (QCoreApplication::instance())
            QCoreApplication::processEvents();
        QThread::msleep(2);
    }
    return true;
}

bool VControlProcess::waitForEvent(const QString &word, int count, int timeoutMs) {
    return waitUntil([&] { return eventTexts(word).size() >= count; }, timeoutMs);
}
