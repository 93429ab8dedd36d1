#pragma once
// The commands that work on the control's list of programs.

#include "link.h"

#include <QByteArray>

void MapContext(Link &l);
// The chosen entry's text, or empty when there is nothing to choose from.
// The port is open on entry and stays open; the pointer is back at 0 on return.
QByteArray SelectCNCFile(Link &l);
void ChangeContext(Link &l);
void ChangeExecute(Link &l);
void DeleteContext(Link &l);
