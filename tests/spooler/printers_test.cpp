#include <cstring>

#include "platform/base/system_error.h"
#include "print_fixture.h"

namespace {

constexpr DWORD kFlags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;

class Printers : public PrintTest {};

}  // namespace

TEST_F(Printers, TwoCallsListTheQueues) {
  DWORD needed = 0;
  DWORD count = 9;
  EXPECT_FALSE(EnumPrintersA(kFlags, nullptr, 2, nullptr, 0, &needed, &count));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(count, 0U);
  // As large as told and no larger: the sanitizer watches the end.
  auto* buffer = static_cast<BYTE*>(LocalAlloc(LPTR, needed));
  EXPECT_FALSE(EnumPrintersA(kFlags, nullptr, 2, buffer, needed - 1, &needed, &count));
  ASSERT_TRUE(EnumPrintersA(kFlags, nullptr, 2, buffer, needed, &needed, &count));
  ASSERT_EQ(count, 2U);
  auto* info = reinterpret_cast<PRINTER_INFO_2A*>(buffer);
  EXPECT_STREQ(info[0].pPrinterName, "Uno");
  EXPECT_STREQ(info[0].pLocation, "Primo piano");
  EXPECT_EQ(info[0].Attributes & PRINTER_ATTRIBUTE_DEFAULT, PRINTER_ATTRIBUTE_DEFAULT);
  EXPECT_STREQ(info[1].pPrinterName, "Due");
  EXPECT_EQ(info[1].pDevMode->dmPaperSize, DMPAPER_LETTER);
  // The record in the buffer drives the device context and turns the paper.
  const HDC dc = CreateDCA(info[1].pDriverName, info[1].pPrinterName, nullptr, info[1].pDevMode);
  EXPECT_EQ(GetDeviceCaps(dc, PHYSICALWIDTH), 5100);
  info[1].pDevMode->dmOrientation = DMORIENT_LANDSCAPE;
  EXPECT_EQ(ResetDCA(dc, info[1].pDevMode), dc);
  EXPECT_EQ(GetDeviceCaps(dc, PHYSICALWIDTH), 6600);
  DeleteDC(dc);
  LocalFree(buffer);
}

TEST_F(Printers, FailuresAreTold) {
  DWORD needed = 0;
  DWORD count = 0;
  EXPECT_FALSE(EnumPrintersA(kFlags | PRINTER_ENUM_NAME, "\\\\server", 2, nullptr, 0, &needed, &count));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_NAME);
  EXPECT_FALSE(EnumPrintersA(kFlags, nullptr, 1, nullptr, 0, &needed, &count));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_LEVEL);
  platform::testing::SetTestPrinters({});
  EXPECT_TRUE(EnumPrintersA(kFlags, nullptr, 2, nullptr, 0, &needed, &count));
  EXPECT_NE(GetLastError(), ERROR_INSUFFICIENT_BUFFER) << "nothing to make room for";
  char* text = nullptr;
  EXPECT_GT(FormatMessageA(
                FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM,
                nullptr, GetLastError(), 1024, reinterpret_cast<LPSTR>(&text), 0, nullptr),
            0U);
  ASSERT_NE(text, nullptr);
  EXPECT_NE(std::strstr(text, "stampante"), nullptr);
  LocalFree(text);
}

TEST_F(Printers, TheDefaultQueueIsNamed) {
  char name[8] = {};
  DWORD size = 2;
  EXPECT_FALSE(GetDefaultPrinterA(name, &size));
  EXPECT_EQ(size, 4U);
  EXPECT_TRUE(GetDefaultPrinterA(name, &size));
  EXPECT_STREQ(name, "Uno");
  platform::testing::SetTestPrinters({});
  EXPECT_FALSE(GetDefaultPrinterA(name, &size));
}
