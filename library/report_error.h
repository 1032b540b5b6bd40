#pragma once

#include "platform/base/string.h"

/// Told of every failure: code (0: the system's own, else the imaging service's) and text.
using ReportErrorFunction = void (*)(int code, CString text);
