#include <cstdio>
#include <exception>
#include <new>

#include "platform/base/exception.h"
#include "platform/base/system_error.h"
#include "platform/framework/detail/handler_failure.h"
#include "platform/framework/thread.h"

namespace platform {
namespace {

/// The text of what the standard library throws, as an exception of the framework. It needs no memory.
class StandardFailure final : public CException {
 public:
  explicit StandardFailure(const std::exception& exception) {
    if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr)
      FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_NOT_ENOUGH_MEMORY, 0, m_text, sizeof m_text,
                     nullptr);
    else
      std::snprintf(m_text, sizeof m_text, "%s", exception.what());
  }
  BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize, UINT* helpContext) const override {
    if (helpContext != nullptr) *helpContext = 0;
    if (buffer == nullptr || bufferSize == 0) return FALSE;
    std::snprintf(buffer, bufferSize, "%s", m_text);
    return TRUE;
  }

 private:
  char m_text[256] = "";
};

LRESULT Tell(CException& exception, const MSG& message) {
  try {
    return AfxGetThread()->ProcessWndProcException(&exception, &message);
  } catch (const std::bad_alloc&) {
    return 0;  // no memory for the box either
  }
}

}  // namespace

LRESULT TellHandlerFailure(const MSG& message) {
  try {
    throw;
  } catch (CException* exception) {
    const LRESULT result = AfxGetThread()->ProcessWndProcException(exception, &message);
    exception->Delete();
    return result;
  } catch (const std::exception& exception) {
    StandardFailure failure(exception);
    return Tell(failure, message);
  }
}

}  // namespace platform
