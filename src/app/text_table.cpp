#include "text_table.h"
