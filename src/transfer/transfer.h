#pragma once
// The operations of program transfer: send, receive, save.

#include "dialogue.h"

#include <QByteArray>
#include <QString>

// Bounded waits of the transmit path; each tells the operator of a time-out itself.
bool WaitForAnswer(Link &l);
bool WaitForXon(Link &l);

void SendFile(Link &l);
void SendData(Link &l, const QString &FileName);
QByteArray StripSpaces(const QByteArray &line);

void ReceiveFile(Link &l);
void SaveFile(Link &l, const QByteArray &buffer);
