#pragma once

#include <exception>
#include <new>

#include "imaging/ltwrap.h"
#include "library/report_error.h"

/// What an exception of the imaging service tells.
struct Failure {
  int code;
  CString text;
};

/// Takes it out of the exception, and ends that.
inline Failure TakeFailure(CLeadtoolsException* exception) {
  Failure failure{exception->GetLastError(), CLeadtoolsException::GetErrorMessage(exception->m_nError)};
  exception->Delete();
  return failure;
}

/// Reports a failure of the imaging service and ends the exception.
inline void ReportFailure(CLeadtoolsException* exception, ReportErrorFunction report = &ReportError) {
  const Failure failure = TakeFailure(exception);
  report(failure.code, failure.text);
}

/// What the standard library threw, as an exception of the imaging service for the report functions.
inline CLeadtoolsException* FailureOf(const std::exception& exception) {
  try {
    if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr)
      imaging::Fail(imaging::kErrorNoMemory, "Not enough memory for the image");
    imaging::Fail(imaging::kErrorInternal, "Internal error: %s", exception.what());
  } catch (CLeadtoolsException* failure) {
    return failure;
  }
}
