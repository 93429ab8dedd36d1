#pragma once
// A reply shown as List1 entries, one for each line, shared by the map and the choice.

#include "link.h"

#include <QByteArray>

// Hides Text1, shows List1 emptied (its selection too) and adds one entry for each line
// ended by CR LF; an unfinished last line is left out. Entries show the bytes as Latin-1.
void showReplyInList1(Link &l, const QByteArray &reply);
