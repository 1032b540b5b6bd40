#pragma once

#include <span>

#include "platform/base/export.h"
#include "platform/base/types.h"

// Texts in other languages than that of the resources. A translation lies over the resources: what it has is
// shown in its language, what it lacks is shown as the resources have it.

namespace platform {

struct StringResource {
  UINT id;
  const char* text;  ///< UTF-8
};

/// A text that has no number: of a menu, a dialog or this layer's own boxes.
struct TextPair {
  const char* text;  ///< as the resources have it
  const char* translated;
};

struct Translation {
  const char* language;                     ///< "en"; empty: whatever the language
  std::span<const StringResource> strings;  ///< by the numbers of the string tables
  std::span<const TextPair> texts;          ///< of menus and dialogs
};

/// Adds a translation; the latest is asked first. What it points to must live as long as the process.
PLATFORM_API void RegisterTranslation(const Translation& translation);
/// The language of what is loaded and shown from now on; empty: that of the resources. Windows that exist
/// keep their texts.
PLATFORM_API void SelectLanguage(const char* language);
PLATFORM_API const char* SelectedLanguage();

/// What the selected language has for a number or a text. Null, and the text itself, where it has nothing.
PLATFORM_API const StringResource* FindTranslation(UINT id);
PLATFORM_API const char* Localized(const char* text);

/// A text of this layer's own in the languages that it has.
struct OwnText {
  const char* text;
  const char* english;
  const char* german;
};
PLATFORM_API std::span<const OwnText> OwnTexts();

}  // namespace platform
