#include "setup_form.h"
