#include <array>
#include <cstdlib>
#include <string>

#include "library/tessarel_ext.h"
#include "library/translations.h"

namespace {

/// What the variables of the environment say, in their order; empty where they say nothing.
std::string LocaleOfEnvironment() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

/// The two letters of the language. A locale without one leaves the texts as they are.
std::string LanguageOf(const std::string& locale) {
  const std::string language = locale.substr(0, locale.find_first_of("_.@"));
  if (language.empty() || language == "C" || language == "POSIX") return "it";
  return language == "it" || language == "de" ? language : "en";
}

}  // namespace

void SelectTessarelLanguage(const char* language) {
  const std::string chosen =
      language == nullptr || *language == '\0' ? LanguageOf(LocaleOfEnvironment()) : language;
  platform::SelectLanguage(chosen.c_str());
}
