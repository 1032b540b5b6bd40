#pragma once

#include "platform/base/object.h"

/// Base of the exceptions that are thrown by pointer. The catcher ends one with Delete.
class PLATFORM_API CException : public CObject {
  DECLARE_DYNAMIC(CException)
 public:
  CException() = default;
  ~CException() override = default;
  void Delete() { delete this; }
  /// Writes a text for the user, cut to fit, into the buffer. FALSE if there is none.
  virtual BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize, UINT* helpContext = nullptr) const;
};
