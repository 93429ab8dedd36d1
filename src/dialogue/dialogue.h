#pragma once
// The pieces of the wire dialogue that several operations share.

#include "link.h"

#include <QByteArray>
#include <functional>

// Hands ComSettings ("COM1:9600,E,7,2") to the closed port. Throws CommError when there is
// no "n:" in it or the port refuses the line settings.
void SetCom(Link &l);
// The port number that ComSettings names, 0 when it names none.
int comPortNumber(const QString &comSettings);

// Runs one operation on the port. If the port fails (cannot open, refuses its settings,
// the device goes away), the operation ends here: the timer stops, the port is closed,
// Label1 is hidden, the pointer comes back, and the operator is told which device and why.
// Returns false when the port failed.
bool runOnPort(Link &l, const std::function<void()> &operation);

// On a control "504": fetches the control's list into List1 and waits for the operator's
// choice. The chosen entry's text, or empty when there is nothing to choose from. The port is
// open on entry and stays open; the pointer is back at 0 on return.
QByteArray SelectCNCFile(Link &l);
