#include "vcontrol_process.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

VControlProcess::VControlProcess() {
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
}

VControlProcess::~VControlProcess() {
    stop();
}

QString VControlProcess::program() {
    return qEnvironmentVariable("DNC_VCONTROL");
}

bool VControlProcess::start(const QStringList &args, int timeoutMs) {
    if (program().isEmpty()) {
        m_error = "DNC_VCONTROL is not set";
        return false;
    }
    QStringList all = args + QStringList{"--log", logPath()};
    if (!args.contains("--exit-after-idle"))
        all << "--exit-after-idle"
            << "120000";
    m_process.start(program(), all);
    if (!m_process.waitForStarted(timeoutMs)) {
        m_error = program() + ": " + m_process.errorString();
        return false;
    }
    // Its first line is the device, written once everything is set up.
    QDeadlineTimer deadline(timeoutMs);
    while (!m_process.canReadLine()) {
        if (m_process.state() == QProcess::NotRunning || deadline.hasExpired() ||
            !m_process.waitForReadyRead(int(deadline.remainingTime()))) {
            if (m_process.state() != QProcess::NotRunning)
                m_process.kill();
            m_process.waitForFinished(1000);
            m_error = "vcontrol did not start: " +
                      QString::fromLocal8Bit(m_process.readAllStandardError());
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

void VControlProcess::refresh() {
    QFile f(logPath());
    if (!f.open(QIODevice::ReadOnly) || f.size() <= m_logPos)
        return;
    f.seek(m_logPos);
    QByteArray data = f.readAll();
    m_logPos += data.size();
    m_partial += data;
    // Only whole lines: the control may be writing the next one right now.
    qsizetype start = 0;
    for (qsizetype nl; (nl = m_partial.indexOf('\n', start)) >= 0; start = nl + 1)
        parseLine(m_partial.mid(start, nl - start));
    m_partial.remove(0, start);
}

// "<us> RX <hex>", "<us> TX <hex>" or "<us> EV <word> <text>"
void VControlProcess::parseLine(const QByteArray &line) {
    const qsizetype space = line.indexOf(' ');
    const qint64 us = line.left(space).toLongLong();
    const QByteArray kind = line.mid(space + 1, 2), rest = line.mid(space + 4);
    if (kind == "RX" || kind == "TX") {
        const QByteArray bytes = QByteArray::fromHex(rest);
        (kind == "RX" ? m_rx : m_tx) += bytes;
        m_chunks.append({us, kind == "RX", bytes});
    } else if (kind == "EV") {
        const QString event = QString::fromUtf8(rest);
        m_events.append({us, event.section(' ', 0, 0), event.section(' ', 1)});
    }
}

QStringList VControlProcess::eventTexts(const QString &word) const {
    QStringList out;
    for (const Event &e : m_events)
        if (e.word == word)
            out.append(e.text);
    return out;
}

QByteArray VControlProcess::rxSettled(qsizetype expected) {
    waitUntil([&] { return m_rx.size() >= expected; }, 3000);
    waitUntil([] { return false; }, 50);
    return m_rx;
}

bool VControlProcess::waitUntil(const std::function<bool()> &cond, int timeoutMs) {
    QDeadlineTimer deadline(timeoutMs);
    for (;;) {
        refresh();
        if (cond())
            return true;
        if (deadline.hasExpired())
            return false;
        if (QCoreApplication::instance())
            QCoreApplication::processEvents();
        QThread::msleep(2);
    }
}

bool VControlProcess::waitForEvent(const QString &word, int count, int timeoutMs) {
    return waitUntil([&] { return eventTexts(word).size() >= count; }, timeoutMs);
}
