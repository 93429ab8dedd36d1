#include "number_text.h"
