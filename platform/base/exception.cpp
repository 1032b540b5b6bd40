#include "platform/base/exception.h"

IMPLEMENT_DYNAMIC(CException, CObject)

BOOL CException::GetErrorMessage(LPTSTR buffer, UINT bufferSize, UINT* helpContext) const {
  if (helpContext != nullptr) *helpContext = 0;
  if (buffer != nullptr && bufferSize != 0) buffer[0] = 0;
  return FALSE;
}
