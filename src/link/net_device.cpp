#include "net_device.h"

namespace {

const QString RawScheme = QStringLiteral("tcp://");
const QString Rfc2217Scheme = QStringLiteral("rfc2217://");

} // namespace

QString NetDevice::name() const {
    const QString h = host.contains(QLatin1Char(':')) ? u'[' + host + u']' : host;
    return (kind == Kind::Raw ? RawScheme : Rfc2217Scheme) + h + u':' + QString::number(port);
}

bool isNetDeviceName(const QString &name) {
    const QString n = name.trimmed();
    return n.startsWith(RawScheme, Qt::CaseInsensitive) ||
           n.startsWith(Rfc2217Scheme, Qt::CaseInsensitive);
}

std::optional<NetDevice> parseNetDevice(const QString &name, QString *why) {
    const auto fail = [why](const QString &text) {
        if (why)
            *why = text;
        return std::nullopt;
    };
    const QString n = name.trimmed();
    NetDevice d;
    QString rest;
    if (n.startsWith(RawScheme, Qt::CaseInsensitive)) {
        rest = n.mid(RawScheme.size());
    } else if (n.startsWith(Rfc2217Scheme, Qt::CaseInsensitive)) {
        d.kind = NetDevice::Kind::Rfc2217;
        rest = n.mid(Rfc2217Scheme.size());
    } else {
        return fail(QStringLiteral("a device server is named tcp://HOST:PORT or "
                                   "rfc2217://HOST:PORT"));
    }
    if (rest.endsWith(QLatin1Char('/')))
        rest.chop(1);
    const qsizetype colon = rest.lastIndexOf(QLatin1Char(':'));
    if (colon < 0)
        return fail(QStringLiteral("\"%1\" names no TCP port: write HOST:PORT, e.g. "
                                   "192.168.1.50:4001")
                        .arg(name.trimmed()));
    QString host = rest.left(colon);
    const QString portText = rest.mid(colon + 1);
    if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
        host = host.mid(1, host.size() - 2);
    else if (host.contains(QLatin1Char(':')))
        return fail(
            QStringLiteral("an IPv6 address stands in brackets: [%1]:%2").arg(host, portText));
    if (host.isEmpty() || host.contains(QLatin1Char('/')) || host.contains(QLatin1Char(' ')))
        return fail(QStringLiteral("\"%1\" names no host").arg(name.trimmed()));
    bool ok = false;
    const uint port = portText.toUInt(&ok);
    if (!ok || port == 0 || port > 65535 || !portText.front().isDigit())
        return fail(QStringLiteral("the TCP port must be a number from 1 to 65535, not \"%1\"")
                        .arg(portText));
    d.host = host;
    d.port = quint16(port);
    return d;
}
