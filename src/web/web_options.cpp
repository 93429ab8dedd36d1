#include "web_options.h"

bool parseListenAddress(const QString &text, QHostAddress &address, quint16 &port) {
    const qsizetype colon = text.lastIndexOf(u':');
    if (colon <= 0)
        return false;
    QString host = text.left(colon);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    else if (host.contains(u':'))
        return false; // an IPv6 address needs its brackets
    bool ok = false;
    const uint p = text.mid(colon + 1).toUInt(&ok);
    const QHostAddress a(host);
    if (!ok || p == 0 || p > 65535 || a.isNull())
        return false;
    address = a;
    port = quint16(p);
    return true;
}

WebOptions WebCommandLine::parse(const QStringList &arguments) {
    WebOptions o;
    for (qsizetype i = 0; i < arguments.size() && o.error.isEmpty(); ++i) {
        const QString &a = arguments.at(i);
        if (a == QLatin1String("-h") || a == QLatin1String("--help")) {
            o.help = true;
        } else if (a == QLatin1String("--version")) {
            o.version = true;
        } else if (a == QLatin1String("-d") || a == QLatin1String("--listen")) {
            if (i + 1 >= arguments.size() || arguments.at(i + 1).isEmpty()) {
                o.error = tr("%1 takes a value").arg(a);
            } else if (a == QLatin1String("-d")) {
                o.database = arguments.at(++i);
            } else if (!parseListenAddress(arguments.at(++i), o.address, o.port)) {
                o.error =
                    tr("%1 is not an address and port such as 0.0.0.0:8080").arg(arguments.at(i));
            }
        } else {
            o.error = tr("Unknown option %1").arg(a);
        }
    }
    return o;
}

QString WebCommandLine::usage() {
    return tr("Usage: dnc-web [-d DATABASE] [--listen ADDRESS:PORT] | --help | --version\n"
              "Shows the machines, the journal of transfers and the tools' use to a browser,\n"
              "read-only.\n"
              "  -d DATABASE             the journal the stations write: an SQLite file or\n"
              "                          postgresql://...; the default journal when not given\n"
              "  --listen ADDRESS:PORT   where to listen (default: 127.0.0.1:8080);\n"
              "                          0.0.0.0:8080 for every network of the machine\n");
}
