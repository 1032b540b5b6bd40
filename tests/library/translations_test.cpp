// The languages beside that of the resources: nothing missing, places for values and access keys as they are.

#include "library/translations.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "library/resource_ids.h"
#include "library/resources.h"
#include "library/tessarel_ext.h"
#include "platform/base/string.h"
#include "platform/framework/frame_wnd.h"
#include "tests/library/dialog_room.h"

namespace {

std::vector<std::string> PlacesOf(const std::string& text) {
  static const std::regex kPlace(R"(%\d+![a-z]!|%%|%[a-z]|\||\n)");
  return {std::sregex_token_iterator(text.begin(), text.end(), kPlace), {}};
}

/// The access key: the byte behind "&" and the one after it, since a letter may have two.
std::string KeyOf(const std::string& text) {
  const std::size_t mark = text.find('&');
  if (mark == std::string::npos) return {};
  const auto first = static_cast<unsigned char>(text[mark + 1]);
  if (first >= 0x80) return text.substr(mark + 1, 2);
  return std::string(1, static_cast<char>(std::tolower(first)));
}

std::map<std::string, std::string> TextsOf(const platform::Translation& translation) {
  std::map<std::string, std::string> texts;
  for (const platform::TextPair& pair : translation.texts)
    EXPECT_TRUE(texts.emplace(pair.text, pair.translated).second) << pair.text << " stands twice";
  return texts;
}

constexpr UINT kFirstImagingText = 31001;
constexpr UINT kLastImagingText = 31999;

TEST(Translations, HaveEveryStringWithItsPlaces) {
  for (const auto& translation : {EnglishTexts(), GermanTexts()}) {
    std::map<UINT, std::string> strings;
    for (const auto& string : translation.strings)
      EXPECT_TRUE(strings.emplace(string.id, string.text).second) << string.id << " stands twice";
    for (const auto& string : LibraryStrings()) {
      const bool imaging = string.id >= kFirstImagingText && string.id <= kLastImagingText;
      if (imaging && translation.language == std::string("en")) continue;  // the words of the sources
      EXPECT_EQ(PlacesOf(strings[string.id]), PlacesOf(string.text)) << translation.language << string.text;
      EXPECT_FALSE(strings[string.id].empty()) << translation.language << string.text;
    }
  }
}

/// The lines of one menu from the first on, each with its text translated; keys are unique where they were.
void CheckMenu(std::span<const platform::MenuLine>& lines, std::map<std::string, std::string>& texts) {
  std::set<std::string> own;
  std::set<std::string> translated;
  while (!lines.empty()) {
    const platform::MenuLine line = lines.front();
    lines = lines.subspan(1);
    if (line.kind == platform::MenuLine::Kind::End) return;
    if (*line.text != '\0') {
      const std::string text = texts[line.text];
      EXPECT_FALSE(text.empty()) << line.text;
      const bool free = translated.insert(KeyOf(text)).second || KeyOf(line.text).empty();
      EXPECT_TRUE(free || !own.insert(KeyOf(line.text)).second) << text << " shares its key";
      own.insert(KeyOf(line.text));
      EXPECT_EQ(KeyOf(text).empty(), KeyOf(line.text).empty()) << text;
    }
    if (line.kind == platform::MenuLine::Kind::Popup) CheckMenu(lines, texts);
  }
}

TEST(Translations, HaveEveryMenuAndDialog) {
  for (const auto& translation : {EnglishTexts(), GermanTexts()}) {
    auto texts = TextsOf(translation);
    for (const auto& menu : LibraryMenus()) {
      auto lines = menu.lines;
      CheckMenu(lines, texts);
    }
    for (const auto& dialog : LibraryDialogs()) {
      std::set<std::string> keys;
      EXPECT_TRUE(*dialog.caption == '\0' || !texts[dialog.caption].empty()) << dialog.caption;
      for (const auto& item : dialog.items) {
        const std::string text = item.text;
        if (text.empty() || text == "Static") continue;  // filled when the dialog opens
        const std::string key = KeyOf(texts[text]);
        EXPECT_FALSE(texts[text].empty()) << text;
        EXPECT_EQ(key.empty(), KeyOf(text).empty()) << text;
        EXPECT_TRUE(key.empty() || keys.insert(key).second) << texts[text] << " shares its key";
      }
    }
  }
}

TEST(Translations, FitTheirControls) {
  ExpectRoomForTexts(LibraryDialogs());
}

TEST(Translations, OfTheWindowLayerKeepTheirPlaces) {
  for (const platform::OwnText& own : platform::OwnTexts())
    for (const std::string text : {own.english, own.german}) {
      EXPECT_FALSE(text.empty()) << own.text;
      EXPECT_EQ(PlacesOf(text), PlacesOf(own.text)) << text;
      EXPECT_EQ(KeyOf(text).empty(), KeyOf(own.text).empty()) << text;
    }
}

TEST(Translations, AreChosenByNameOrByTheLocale) {
  const struct {
    const char* chosen;
    const char* locale;
    const char* ready;
  } rows[] = {{"de", "C", "Bereit"},          {"", "de_AT.UTF-8", "Bereit"}, {"", "it_IT.UTF-8", "Pronto"},
              {"", "fr_FR.UTF-8", "Ready"},   {"", "C.UTF-8", "Pronto"},     {nullptr, "en_GB", "Ready"},
              {"xx", "de_DE.UTF-8", "Pronto"}};
  for (const auto& row : rows) {
    setenv("LC_ALL", row.locale, 1);
    SelectTessarelLanguage(row.chosen);
    CString text;
    text.LoadString(AFX_IDS_IDLEMESSAGE);
    EXPECT_STREQ(text, row.ready) << row.locale;
  }
  unsetenv("LC_ALL");
  platform::SelectLanguage("");
}

TEST(Translations, OfAHostGoBeforeTheLibrarys) {
  static constexpr platform::StringResource kStrings[] = {{AFX_IDS_IDLEMESSAGE, "At your service"}};
  static constexpr platform::TextPair kTexts[] = {{"Annulla", "Never mind"}};
  platform::RegisterTranslation({"en-host", kStrings, kTexts});
  platform::SelectLanguage("en-host");
  CString text;
  text.LoadString(AFX_IDS_IDLEMESSAGE);
  EXPECT_STREQ(text, "At your service");
  EXPECT_STREQ(platform::Localized("Annulla"), "Never mind");
  text.LoadString(IDS_ZP_EXPORT_DONE);
  EXPECT_STREQ(text, "File convertito con successo");
  platform::SelectLanguage("");
}

}  // namespace
