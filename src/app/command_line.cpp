#include "command_line.h"
