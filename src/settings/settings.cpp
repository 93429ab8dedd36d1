#include "settings.h"
