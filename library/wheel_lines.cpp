#include "library/report_error.h"
