#include "ser2net_process.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTest>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>

namespace {

// Whether something listens on 127.0.0.1:port, read from the kernel's table rather than by a
// connection, which ser2net would answer by opening the device.
bool listening(quint16 port) {
    QFile f(QStringLiteral("/proc/net/tcp"));
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray local =
        "0100007F:" + QByteArray::number(port, 16).toUpper().rightJustified(4, '0');
    for (const QByteArray &line : f.readAll().split('\n')) {
        const QList<QByteArray> f = line.simplified().split(' ');
        if (f.size() > 3 && f[1] == local && f[3] == "0A")
            return true;
    }
    return false;
}

} // namespace

QString Ser2netProcess::missing() {
    if (QStandardPaths::findExecutable(QStringLiteral("ser2net")).isEmpty())
        return QStringLiteral("ser2net is not installed (apt-get install ser2net)");
    return QString();
}

bool Ser2netProcess::required() {
    const QString why = missing();
    if (why.isEmpty())
        return true;
    if (qEnvironmentVariableIsSet("DNC_SER2NET_REQUIRED"))
        QTest::qFail(qPrintable(why), __FILE__, __LINE__);
    else
        QTest::qSkip(qPrintable(why), __FILE__, __LINE__);
    return false;
}

bool Ser2netProcess::start(const QString &device, const Options &o) {
    {
        QTcpServer probe; // a free port, handed on at once
        if (!probe.listen(QHostAddress::LocalHost)) {
            m_error = probe.errorString();
            return false;
        }
        m_port = probe.serverPort();
    }
    const QString accepter = QStringLiteral("%1tcp,127.0.0.1,%2")
                                 .arg(o.rfc2217 ? QStringLiteral("telnet(rfc2217),") : QString())
                                 .arg(m_port);
    const QString config = m_dir.filePath(QStringLiteral("ser2net.yaml"));
    QFile f(config);
    if (!f.open(QIODevice::WriteOnly)) {
        m_error = f.errorString();
        return false;
    }
    f.write(QStringLiteral("connection: &dnc\n"
                           "  accepter: %1\n"
                           "  connector: serialdev,%2,%3,local%4\n"
                           "  options:\n"
                           "    kickolduser: true\n"
                           "    chardelay: %5\n")
                .arg(accepter, device, o.line, o.xonxoff ? QStringLiteral(",xonxoff") : QString(),
                     o.chardelay ? QStringLiteral("true") : QStringLiteral("false"))
                .toUtf8());
    f.close();
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    // A test that crashes leaves no server behind.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    // -u: no UUCP lock file, which is the device owner's business, not the test's.
    m_process.start(QStringLiteral("ser2net"),
                    {QStringLiteral("-n"), QStringLiteral("-d"), QStringLiteral("-u"),
                     QStringLiteral("-c"), config});
    const QDeadlineTimer limit(5000);
    while (!listening(m_port)) {
        if (m_process.state() == QProcess::NotRunning || limit.hasExpired()) {
            m_error = QStringLiteral("ser2net did not start: ") +
                      QString::fromLocal8Bit(m_process.readAll());
            stop();
            return false;
        }
        QThread::msleep(10);
    }
    m_name = QStringLiteral("%1://127.0.0.1:%2")
                 .arg(o.rfc2217 ? QStringLiteral("rfc2217") : QStringLiteral("tcp"))
                 .arg(m_port);
    return true;
}

bool Ser2netProcess::stop() {
    if (m_process.state() == QProcess::NotRunning)
        return true;
    m_process.terminate();
    if (m_process.waitForFinished(3000))
        return true;
    m_process.kill();
    return m_process.waitForFinished(3000);
}

void Ser2netProcess::kill() {
    m_process.kill();
    m_process.waitForFinished(3000);
}
