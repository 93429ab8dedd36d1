#pragma once
// The commands that work on the control's list of programs.

#include "dialogue.h"

void MapContext(Link &l);
void ChangeContext(Link &l);
void ChangeExecute(Link &l);
void DeleteContext(Link &l);
