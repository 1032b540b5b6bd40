#pragma once

#include "imaging/ltwrap.h"
#include "library/report_error.h"

/// Reports a failure of the imaging service and ends the exception.
inline void ReportFailure(CLeadtoolsException* exception) {
  ReportError(exception->GetLastError(), CLeadtoolsException::GetErrorMessage(exception->m_nError));
  exception->Delete();
}
