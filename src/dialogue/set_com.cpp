#include "comm.h"
#include "dialogue.h"

#include <QCoreApplication>

int comPortNumber(const QString &comSettings) {
    const qsizetype colon = comSettings.indexOf(QLatin1Char(':'));
    // Only the one character before the colon names the port.
    const int port = colon > 0 ? comSettings.at(colon - 1).digitValue() : -1;
    return port < 1 ? 0 : port;
}

void SetCom(Link &l) {
    const QString &s = l.g.ComSettings;
    const int colon = int(s.indexOf(QLatin1Char(':')));
    const int port = comPortNumber(s);
    if (port < 1)
        throw CommError{s,
                        QCoreApplication::translate(
                            "Port", "no serial port is set up (expected COM1: to COM4:). "
                                    "Choose one with Setup."),
                        CommError::Stage::Opening};
    l.comm.setCommPort(port);
    l.comm.setSettings(s.mid(colon + 1));
}
