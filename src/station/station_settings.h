#pragma once
// What a station reads of its section besides the line: where programs are looked up and
// punched programs filed, the numbers of a request and of a reply, and its waits.

#include "globals.h"

#include <QByteArray>
#include <QString>

struct StationSettings {
    QString programDir;
    QString receiveDir;
    QByteArray requestNumber = "O9999";
    QByteArray replyNumber = "O9998";
    int requestDelayMs = 3000;
    int punchSilenceMs = 10000;
};

// Reads the section g.ConfigSection (ReadSettings has run). Why the station cannot serve it,
// or empty.
QString readStationSettings(const Globals &g, StationSettings &s);
