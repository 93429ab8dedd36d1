#pragma once
// The operations of program transfer: send, receive, save.

#include "dialogue.h"
#include "reply_loop.h"

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
// What a reply left for the record: the program or list, its counts, how it ended. A silence
// is a time-out; a reply ended at once (an EOT) means the control had nothing to give.
void noteReception(Link &l, const ReplyTally &tally, const QByteArray &reply);
void SaveFile(Link &l, const QByteArray &buffer);

// Waits up to `waitMs` for the control to punch a program on its own (an "XonXoff" control has
// no request), reads it and offers it for saving.
void ReceivePunch(Link &l, int waitMs);
// The section's PunchSilence: how long a punch may pause before it counts as ended.
inline constexpr int DefaultPunchSilenceMs = 10000;
int punchSilenceMs(const Globals &g);
// What a save writes to an open file: the received bytes as they came, then one CR LF.
bool writeSavedProgram(QFileDevice &out, const QByteArray &buffer);
// Lower-case hex SHA-256 of what writeSavedProgram writes.
QByteArray savedProgramSha256(const QByteArray &buffer);
