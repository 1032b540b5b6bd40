#pragma once

#include "library/export.h"
#include "platform/base/string.h"

/// Told of every failure: code (0: the system's own, else the imaging service's) and text.
using ReportErrorFunction = void (*)(int code, CString text);

/// The hook of the document/view stack, one for the process. Null until a main frame sets it.
extern TESSAREL_API ReportErrorFunction g_pfnReportError;

/// Gives a failure to the hook; without one it is shown as ShowErrorBox does, so that no failure is lost in a
/// host that uses the documents without a main frame.
void ReportError(int code, CString text);

/// A message box with code and text. Nothing for a job that the user ended.
void ShowErrorBox(int code, const CString& text);
