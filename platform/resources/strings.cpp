#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "platform/base/detail/format_message.h"
#include "platform/base/string.h"
#include "platform/resources/detail/find.h"

int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int bufferSize) {
  const platform::StringResource* string = platform::FindStringResource(module, id);
  if (string == nullptr || buffer == nullptr || bufferSize < 1) return 0;
  const std::size_t length = std::min(std::strlen(string->text), static_cast<std::size_t>(bufferSize) - 1);
  std::memcpy(buffer, string->text, length);
  buffer[length] = 0;
  return static_cast<int>(length);
}

BOOL CString::LoadString(UINT id) {
  const platform::StringResource* string = platform::FindStringResource(nullptr, id);
  m_text = string == nullptr ? "" : string->text;
  return string != nullptr;
}

void CString::FormatMessage(UINT id, ...) {
  CString format;
  format.LoadString(id);
  va_list args;
  va_start(args, id);
  m_text = platform::FormatMessageTemplate(format, args);
  va_end(args);
}
