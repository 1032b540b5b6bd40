#include "imaging/core/exception.h"

#include <cstdarg>
#include <cstdio>
#include <map>
#include <mutex>

#include "imaging/core/texts.h"

IMPLEMENT_DYNAMIC(CLeadtoolsException, CException)

namespace {

// The interface asks for the text by code alone, after the throw, so the newest text of each code is kept.
// Work that is done aside fails on its own thread.
std::mutex g_textsMutex;

std::map<int, CString>& NewestTexts() {
  static std::map<int, CString> texts;
  return texts;
}

const char* GeneralText(int code) {
  switch (code) {
    case imaging::kErrorNoMemory:
      return "Not enough memory";
    case imaging::kErrorNoBitmap:
      return "There is no image";
    case imaging::kErrorInvalidParameter:
      return "Invalid parameter";
    case imaging::kErrorFileRead:
      return "Error reading the file";
    case imaging::kErrorFileWrite:
      return "Error writing the file";
    case imaging::kErrorFileOpen:
      return "The file can't be opened";
    case imaging::kErrorFileFormat:
      return "Unknown file format";
    case imaging::kErrorPageNotFound:
      return "The page doesn't exist";
    case imaging::kErrorCorrupt:
      return "The file is damaged";
    case imaging::kErrorUnsupported:
      return "Unsupported kind of image";
    case imaging::kErrorLimit:
      return "The image is too large";
    case imaging::kErrorUserAbort:
      return "Ended by the user";
    case imaging::kErrorInternal:
      return "Internal error";
    default:
      return "";
  }
}

}  // namespace

CString CLeadtoolsException::GetErrorMessage(int code) {
  const std::lock_guard lock(g_textsMutex);
  const auto text = NewestTexts().find(code);
  return text == NewestTexts().end() ? CString(imaging::Translated(GeneralText(code))) : text->second;
}

void imaging::Fail(ErrorCode code, const char* format, ...) {
  char text[1024];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, Translated(format), args);
  va_end(args);
  // Libraries and file names may bring line ends along, which no message has room for.
  for (char* letter = text; *letter != '\0'; ++letter)
    if (*letter == '\n' || *letter == '\r' || *letter == '\t') *letter = ' ';
  {
    const std::lock_guard lock(g_textsMutex);
    NewestTexts()[code] = text;
  }
  throw new CLeadtoolsException(code);
}
