// Bitmaps of the imaging layer on printers.

#include <cstring>

#include "imaging/ltwrap.h"
#include "imaging/pixels/storage.h"
#include "print_fixture.h"

namespace {

constexpr int kMargin = 50;  // dots at 300 to the inch

class PrintBitmap : public PrintTest {
 protected:
  void SetUp() override {
    PrintTest::SetUp();
    LEADTOOLS::InitBitmap(&m_bitmap, 200, 100, 1);
    LEADTOOLS::AllocateBitmap(&m_bitmap, 1);  // all zero: black
  }
  void TearDown() override {
    LEADTOOLS::FreeBitmap(&m_bitmap);
    PrintTest::TearDown();
  }

  template <typename Draw>
  RECT PrintedArea(Draw draw) {
    const std::string target = Target();
    const HDC dc = CreateDCA(nullptr, "Uno", target.c_str(), nullptr);
    const DOCINFOA info{sizeof info, "Prova", nullptr, nullptr, 0};
    EXPECT_GT(StartDocA(dc, &info), 0);
    EXPECT_GT(StartPage(dc), 0);
    draw(dc);
    EXPECT_GT(EndPage(dc), 0);
    EXPECT_GT(EndDoc(dc), 0);
    DeleteDC(dc);
    const std::string list = Output("pdfimages -list " + target);
    EXPECT_NE(list.find("image     200   100  gray    1   1  ccitt"), std::string::npos) << list;
    const Picture page = Render(target, {0, 0, 2480, 3508}, 300, 1);
    RECT black{page.width, page.height, 0, 0};
    for (int y = 0; y < page.height; ++y)
      for (int x = 0; x < page.width; ++x)
        if (*page.At(x, y) == 0)
          black = {std::min(black.left, x), std::min(black.top, y), std::max(black.right, x + 1),
                   std::max(black.bottom, y + 1)};
    return black;
  }

  struct_LEAD_Bitmap m_bitmap{};
};

}  // namespace

TEST_F(PrintBitmap, LiesWhereItIsAskedFor) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  struct Case {
    const char* name;
    int xDpi, yDpi, width, height;
    RECT place;  // in dots from the printable area's corner
  };
  constexpr Case kCases[] = {
      {"a size", 0, 0, 400, 600, {1, 1, 401, 601}},
      {"the page's width", 0, 0, 0, 0, {1, 1, 2379, 1190}},
      {"the pixels' shape, whatever the resolution", 200, 100, 0, 0, {1, 1, 2379, 1190}},
      {"a size beside any resolution", 200, 100, 400, 200, {1, 1, 401, 201}},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.name);
    m_bitmap.XResolution = row.xDpi;
    m_bitmap.YResolution = row.yDpi;
    const RECT area = PrintedArea([&](HDC dc) {
      EXPECT_EQ(LEADTOOLS::PrintBitmapExt(dc, &m_bitmap, 1, 1, row.width, row.height, 0), dc);
    });
    EXPECT_NEAR(area.left - kMargin, row.place.left, 1);
    EXPECT_NEAR(area.top - kMargin, row.place.top, 1);
    EXPECT_NEAR(area.right - kMargin, row.place.right, 2);
    EXPECT_NEAR(area.bottom - kMargin, row.place.bottom, 2);
  }
}

TEST_F(PrintBitmap, PaintingOnAPrinterKeepsTheDepth) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const RECT area = PrintedArea([&](HDC dc) {
    SetWindowOrgEx(dc, kMargin, kMargin, nullptr);  // the paper's corner
    RECT place{100, 100, 700, 400};
    LEADTOOLS::PaintDC(dc, &m_bitmap, nullptr, nullptr, &place, nullptr, SRCCOPY);
  });
  EXPECT_NEAR(area.left, 100, 1);
  EXPECT_NEAR(area.bottom, 400, 1);
}

TEST_F(PrintBitmap, ALongPageCanBeStoppedWithinIt) {
  constexpr int kHeight = 30000;
  for (const int bits : {1, 8}) {
    LEADTOOLS::FreeBitmap(&m_bitmap);
    LEADTOOLS::InitBitmap(&m_bitmap, 2480, kHeight, bits);
    LEADTOOLS::AllocateBitmap(&m_bitmap, 1);
    std::uint32_t seed = 1;
    std::vector<BYTE> noise(4000);
    for (BYTE& byte : noise) byte = static_cast<BYTE>((seed = seed * 1664525 + 1013904223) >> 24);
    for (int y = 0; y < kHeight; ++y)
      std::memcpy(m_bitmap.pStorage->HeldRow(y), &noise[y % 1500], 2480U * bits / 8);
    static int asked;
    static bool answer;
    asked = 0;
    answer = true;
    const HDC dc = CreateDCA(nullptr, "Uno", Target().c_str(), nullptr);
    SetAbortProc(dc, [](HDC, int) -> BOOL {
      ++asked;
      return answer ? TRUE : FALSE;
    });
    const DOCINFOA info{sizeof info, "Prova", nullptr, nullptr, 0};
    ASSERT_GT(StartDocA(dc, &info), 0);
    ASSERT_GT(StartPage(dc), 0);
    const int before = asked;
    EXPECT_EQ(LEADTOOLS::PrintBitmapExt(dc, &m_bitmap, 1, 1, 0, 0, 0), dc);
    EXPECT_GT(asked, before) << bits;
    answer = false;
    asked = 0;
    EXPECT_EQ(LEADTOOLS::PrintBitmapExt(dc, &m_bitmap, 1, 1, 0, 0, 0), nullptr) << bits;
    EXPECT_EQ(asked, 1) << "no further row is read";
    EXPECT_EQ(EndPage(dc), SP_APPABORT);
    DeleteDC(dc);
    EXPECT_EQ(CountFiles(), 0) << "nothing is left of it";
  }
}

TEST_F(PrintBitmap, RefusesWhatIsNoPage) {
  EXPECT_EQ(LEADTOOLS::PrintBitmapExt(nullptr, &m_bitmap, 1, 1, 10, 10, 0), nullptr);
  const HDC dc = CreateDCA(nullptr, "Uno", nullptr, nullptr);
  EXPECT_EQ(LEADTOOLS::PrintBitmapExt(dc, &m_bitmap, 1, 1, 10, 10, 0), nullptr) << "no page is open";
  struct_LEAD_Bitmap empty{};
  try {
    LEADTOOLS::PrintBitmapExt(dc, &empty, 1, 1, 10, 10, 0);
    ADD_FAILURE() << "an empty bitmap";
  } catch (CLeadtoolsException* exception) {
    exception->Delete();
  }
  DeleteDC(dc);
}
