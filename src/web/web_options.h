#pragma once
// dnc-web's command line: -d DATABASE and --listen ADDR:PORT.

#include <QCoreApplication>
#include <QHostAddress>
#include <QString>
#include <QStringList>

struct WebOptions {
    QString database; // empty: the default journal
    QHostAddress address{QHostAddress::LocalHost};
    quint16 port = 8080;
    bool help = false;
    bool version = false;
    QString error; // why the command line cannot be used
};

class WebCommandLine {
    Q_DECLARE_TR_FUNCTIONS(Web)

public:
    static WebOptions parse(const QStringList &arguments); // without the program's name
    static QString usage();
};

// "127.0.0.1:8080", "[::]:8080", "0.0.0.0:80"; false for anything else.
bool parseListenAddress(const QString &text, QHostAddress &address, quint16 &port);
