#include "platform/base/translation.h"

#include <algorithm>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
namespace {

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
  Translations().push_back(translation);
}

void SelectLanguage(const char* language) {
  Language() = language == nullptr ? "" : language;
}

const char* SelectedLanguage() {
  return Language().c_str();
}

const StringResource* FindTranslation(UINT id) {
  for (const Translation& translation : std::views::reverse(Translations())) {
    if (!Speaks(translation)) continue;
    const auto found = std::ranges::find(translation.strings, id, &StringResource::id);
    if (found != translation.strings.end()) return &*found;
  }
  return nullptr;
}

const char* Localized(const char* text) {
  if (text == nullptr || *text == '\0') return text;
  const auto same = [text](const TextPair& pair) { return std::string_view(pair.text) == text; };
  for (const Translation& translation : std::views::reverse(Translations())) {
    if (!Speaks(translation)) continue;
    const auto found = std::ranges::find_if(translation.texts, same);
    if (found != translation.texts.end()) return found->translated;
  }
  const char* const own = OwnTranslation(text);
  return own == nullptr ? text : own;
}

}  // namespace platform
