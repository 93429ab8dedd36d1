#include "setup_dialog.h"
