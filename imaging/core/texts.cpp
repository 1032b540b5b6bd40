#include "imaging/core/texts.h"

#include <array>
#include <cstring>
#include <span>
#include <string_view>

#include "platform/base/types.h"
#include "platform/resources/resource_tables.h"

namespace imaging {
namespace {

struct NumberedText {
  unsigned number;
  const char* text;
};

constexpr NumberedText kTexts[] = {
#define TEXT(number, text) {number, text},
#include "imaging/core/texts.def"
#undef TEXT
};

/// The kind of the next value that a format takes, with its size before it, as in "lld"; length 0 at the end.
struct Place {
  const char* kind;
  std::size_t length;
};

Place NextPlace(const char*& format) {
  format = std::strchr(format, '%');
  if (format == nullptr) return {"", 0};
  ++format;
  format += std::strspn(format, "0123456789.");
  const char* const kind = format;
  format += std::strspn(format, "lz");
  if (*format != '\0') ++format;
  return {kind, static_cast<std::size_t>(format - kind)};
}

/// A host's table may have something else under the number, and a wrong format would read what isn't there.
bool TakeTheSameValues(const char* a, const char* b) {
  for (;;) {
    const Place placeOfA = NextPlace(a);
    const Place placeOfB = NextPlace(b);
    if (placeOfA.length != placeOfB.length || std::memcmp(placeOfA.kind, placeOfB.kind, placeOfA.length) != 0)
      return false;
    if (placeOfA.length == 0) return true;
  }
}

/// The text under the number. The resources speak one language; another one has its own or that of the
/// sources.
bool LoadText(unsigned number, std::span<char> buffer) {
  const std::string_view language = platform::SelectedLanguage();
  if (!language.empty() && language != "it" && platform::FindTranslation(number) == nullptr) return false;
  return LoadStringA(nullptr, number, buffer.data(), static_cast<int>(buffer.size())) > 0;
}

}  // namespace

const char* Translated(const char* text) {
  static thread_local std::array<char, 512> translated;
  for (const NumberedText& known : kTexts)
    if (std::strcmp(known.text, text) == 0)
      return LoadText(known.number, translated) && TakeTheSameValues(text, translated.data())
                 ? translated.data()
                 : text;
  return text;
}

CString SystemText(int error) {
  return Translated(std::strerror(error));
}

}  // namespace imaging
