// Message templates: numbered places, conversions, escapes, and nothing read that wasn't passed.

#include <gtest/gtest.h>

#include "platform/base/string.h"

namespace {

TEST(FormatMessage, PlacesTakeTheirArguments) {
  const struct {
    const char* format;
    const char* result;
  } rows[] = {
      {"File %1!s!\ncopiato su\n%3!s!", "File uno\ncopiato su\ntre"},
      {"%2!d!%% di %1", "7% di uno"},
      {"%2!04d! %2!x! %2!d!", "0007 7 7"},
      {"%1!.2s!|%1!5s!", "un|  uno"},
      {"a%nb%0c", "a\nb"},
      {"100%", "100"},
      {"%1!n! %1!s", "uno uno!s"},  // no conversion that writes, and an open mark is text
      {"", ""},
  };
  for (const auto& row : rows) {
    CString text;
    text.FormatMessage(row.format, "uno", 7, "tre");
    EXPECT_STREQ(text, row.result) << row.format;
  }
}

TEST(FormatMessage, ANullTextIsEmptyAndAnUnknownTemplateToo) {
  CString text;
  text.FormatMessage("<%1!s!>", static_cast<const char*>(nullptr));
  EXPECT_STREQ(text, "<>");
  text.FormatMessage(12345U, 1);
  EXPECT_STREQ(text, "");
}

}  // namespace
