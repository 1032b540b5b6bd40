#include "library/report_error.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/framework/message_box.h"
#include "tessarel12_testing.h"

namespace {

std::vector<std::string> g_shown;

int RecordBox(const CString& text, UINT type) {
  g_shown.push_back(std::string(text) + "|" + std::to_string(type));
  return IDOK;
}

void RecordHook(int code, CString text) {
  g_shown.push_back("hook " + std::to_string(code) + " " + std::string(text));
}

TEST(ReportError, WithoutAHookABoxTellsAllButWhatTheUserEnded) {
  platform::testing::SetMessageBoxAnswer(&RecordBox);
  const struct {
    int code;
    const char* shown;
  } cases[] = {{0, "Error ZP0000: broken|16"},
               {-1, "Error ZP-001: broken|16"},
               {-12345, "Error ZP-12345: broken|16"},
               {-84, nullptr}};
  for (const auto& c : cases) {
    g_shown.clear();
    ReportError(c.code, "broken");
    EXPECT_EQ(g_shown, c.shown == nullptr ? std::vector<std::string>{} : std::vector<std::string>{c.shown});
  }
}

TEST(ReportError, TheHookGetsEveryCode) {
  platform::testing::SetMessageBoxAnswer(&RecordBox);
  g_shown.clear();
  g_pfnReportError = &RecordHook;
  ReportError(-84, "a %s b");
  g_pfnReportError = nullptr;
  EXPECT_EQ(g_shown, std::vector<std::string>{"hook -84 a %s b"});
}

}  // namespace
