#pragma once

#include "imaging/core/export.h"
#include "platform/base/exception.h"
#include "platform/base/string.h"

/// The one way in which an imaging operation fails. Thrown by pointer; the catcher ends it with Delete.
/// Codes are negative.
class LTWRAP_API CLeadtoolsException : public CException {
  DECLARE_DYNAMIC(CLeadtoolsException)
 public:
  explicit CLeadtoolsException(int code) : m_nError(code) {}
  /// The negative code of the failure.
  int GetLastError() const { return m_nError; }
  /// The text of the newest failure with this code, which names the file or the fault; without one the
  /// general text of the code. May be empty.
  static CString GetErrorMessage(int code);
  using CException::GetErrorMessage;

  int m_nError;  ///< one of imaging::ErrorCode
};

namespace imaging {

enum ErrorCode : int {
  kErrorNoMemory = -1,
  kErrorNoBitmap = -2,
  kErrorInternal = -3,
  kErrorInvalidParameter = -13,
  kErrorFileRead = -6,
  kErrorFileWrite = -7,
  kErrorFileOpen = -10,
  kErrorFileFormat = -9,  ///< not an image, or of a kind that isn't read
  kErrorPageNotFound = -100,
  kErrorCorrupt = -101,     ///< damaged so far that nothing can be shown
  kErrorUnsupported = -14,  ///< known kind, unsupported variant
  kErrorLimit = -102,       ///< larger than the limits allow
  kErrorUserAbort = -84,    ///< ended by the user; the default reporters show nothing
};

/// Throws a CLeadtoolsException* with the code and remembers the text for GetErrorMessage.
[[noreturn]] LTWRAP_API void Fail(ErrorCode code, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

}  // namespace imaging
