#pragma once
// The companion's command line, taken the usual way: options first, each value its own
// argument, then the command and its arguments, which are taken as they stand.

#include "start_point.h"

#include <QString>
#include <QStringList>

enum class CtlCommand { None, Send, Receive, List, Change, Execute, Delete, Journal };

struct CtlOptions {
    qint16 language = 1; // of -c, else of the environment
    QString section = QStringLiteral("Default");
    bool toolDb = false;
    QString databasePath;
    QStringList limits; // -x, in the order given

    // Line overrides for this run; empty: as dnc.ini says.
    QString port; // a device path
    QString baud, parity, data, stop, cnc;
    int waitSeconds = 300; // receive on "XonXoff": how long to wait for the punch to begin

    StartPoint start; // send: --from-line, --from-block, --from-tool
    bool quiet = false;
    bool stdoutClosed = false; // found closed at start, and given /dev/null meanwhile
    bool help = false;
    bool version = false;

    // journal: the rows chosen, as given (checked), and how they are written; or the date
    // before which rows are removed.
    QString since, until, machine, outcome;
    QString format = QStringLiteral("table");
    QString pruneBefore;

    CtlCommand command = CtlCommand::None;
    QString commandWord;
    QStringList args;
};

struct CtlParse {
    CtlOptions options;
    QString error; // empty when the line is usable
};

CtlParse parseCtlArguments(const QStringList &args); // without the program's name

// The language of the messages, known before the line is read whole, so that its mistakes are
// told in it: -c among the options, else the environment's.
qint16 ctlLanguage(const QStringList &args);

// The text of --help.
QString ctlUsage();
