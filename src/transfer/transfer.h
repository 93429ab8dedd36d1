#pragma once
// The operations of program transfer: send, receive, save.

#include "dialogue.h"

#include <QByteArray>
#include <QFileDevice>
#include <QString>

// Bounded waits of the transmit path; each tells the operator of a time-out itself.
bool WaitForAnswer(Link &l);
bool WaitForXon(Link &l);

void SendFile(Link &l);
void SendData(Link &l, const QString &FileName);
QByteArray StripSpaces(const QByteArray &line);

void ReceiveFile(Link &l);
void SaveFile(Link &l, const QByteArray &buffer);
// What a save writes to an open file: the received bytes as they came, then one CR LF.
bool writeSavedProgram(QFileDevice &out, const QByteArray &buffer);
