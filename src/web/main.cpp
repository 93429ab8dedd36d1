// dnc-web: the machines, the journal and the tools' use, read-only in a browser.

#include "app_info.h"
#include "journal_source.h"
#include "languages.h"
#include "web_options.h"
#include "web_server.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    loadTranslations(languageOfEnvironment());
    const WebOptions options = WebCommandLine::parse(app.arguments().mid(1));
    if (options.help) {
        std::fputs(qPrintable(WebCommandLine::usage()), stdout);
        return 0;
    }
    if (options.version) {
        std::printf("dnc-web (%s) %d.%d.%d\n", AppTitle, AppMajor, AppMinor, AppRevision);
        return 0;
    }
    if (!options.error.isEmpty()) {
        std::fprintf(stderr, "dnc-web: %s\n%s", qPrintable(options.error),
                     qPrintable(WebCommandLine::usage()));
        return 2;
    }
    // SIGTERM ends it as it is: nothing is written, so nothing is left half done.
    JournalSource source(options.database);
    WebServer server(source);
    const quint16 port = server.listen(options.address, options.port);
    if (!port) {
        std::fprintf(stderr, "dnc-web: %s\n",
                     qPrintable(WebCommandLine::tr("Cannot listen on %1:%2: %3")
                                    .arg(options.address.toString())
                                    .arg(options.port)
                                    .arg(server.errorString())));
        return 1;
    }
    std::fprintf(
        stderr, "dnc-web: %s\n",
        qPrintable(WebCommandLine::tr("Serving on http://%1:%2/")
                       .arg(options.address.protocol() == QAbstractSocket::IPv6Protocol
                                ? QLatin1Char('[') + options.address.toString() + QLatin1Char(']')
                                : options.address.toString())
                       .arg(port)));
    return app.exec();
}
