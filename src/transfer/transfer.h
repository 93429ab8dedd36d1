#pragma once
// The operations of program transfer and the pieces the other operations share.

#include "link.h"

#include <QByteArray>
#include <QString>
#include <functional>

// Hands ComSettings ("COM1:9600,E,7,2") to the closed port. Throws CommError when there is
// no "n:" in it or the port refuses the line settings.
void SetCom(Link &l);

// Bounded waits of the transmit path; each tells the operator of a time-out itself.
bool WaitForAnswer(Link &l);
bool WaitForXon(Link &l);

void SendFile(Link &l);
void SendData(Link &l, const QString &FileName);
QByteArray StripSpaces(const QByteArray &line);

void ReceiveFile(Link &l);
void SaveFile(Link &l, const QByteArray &buffer);

// Runs one operation on the port. If the port fails (cannot open, refuses its settings,
// the device goes away), the operation ends here: the timer stops, the port is closed,
// Label1 is hidden, the pointer comes back, and the operator is told which device and why.
void RunOnPort(Link &l, const std::function<void()> &operation);
