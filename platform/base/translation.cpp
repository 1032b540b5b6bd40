#include "platform/base/translation.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
namespace {

/// The latest first.
std::vector<Translation>& Translations() {
  static auto* translations = new std::vector<Translation>;  // libraries register beyond static teardown
  return *translations;
}

std::string& Language() {
  static auto* language = new std::string;
  return *language;
}

bool Speaks(const Translation& translation) {
  return *translation.language == '\0' || Language() == translation.language;
}

const char* OwnTranslation(std::string_view text) {
  const bool english = Language() == "en";
  if (!english && Language() != "de") return nullptr;
  for (const OwnText& own : OwnTexts())
    if (text == own.text) return english ? own.english : own.german;
  return nullptr;
}

}  // namespace

void RegisterTranslation(const Translation& translation) {
  Translations().insert(Translations().begin(), translation);
}

void SelectLanguage(const char* language) {
  Language() = language == nullptr ? "" : language;
}

const char* SelectedLanguage() {
  return Language().c_str();
}

const StringResource* FindTranslation(UINT id) {
  for (const Translation& translation : Translations()) {
    if (!Speaks(translation)) continue;
    const auto found = std::find_if(translation.strings.begin(), translation.strings.end(),
                                    [id](const StringResource& string) { return string.id == id; });
    if (found != translation.strings.end()) return &*found;
  }
  return nullptr;
}

const char* Localized(const char* text) {
  if (text == nullptr || *text == '\0') return text;
  const auto same = [text](const TextPair& pair) { return std::string_view(pair.text) == text; };
  for (const Translation& translation : Translations()) {
    if (!Speaks(translation)) continue;
    const auto found = std::find_if(translation.texts.begin(), translation.texts.end(), same);
    if (found != translation.texts.end()) return found->translated;
  }
  const char* const own = OwnTranslation(text);
  return own == nullptr ? text : own;
}

}  // namespace platform
