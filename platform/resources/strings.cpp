#include "platform/base/string.h"

BOOL CString::LoadString(UINT) {
  m_text.clear();
  return FALSE;
}
