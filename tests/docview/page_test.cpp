// One page of a document: loading, copies, rotation, and what a host can make of the class.

#include "tests/docview/page_fixture.h"

#include <memory>

#include "platform/framework/frame_wnd.h"
#include "platform/framework/standard_controls.h"

namespace {

constexpr int kFormatG4 = 29;

/// Left half dark.
test_pages::Page HalfDark(int width, int height) {
  return {width, height, 1, 0, 0, [width](int x, int) { return x < width / 2 ? 0 : 255; }};
}

/// What a load tells of its rows.
struct Rows {
  std::vector<int> numbers;
  std::vector<BYTE> firstBytes;
  int endAfter = -1;
  static int Note(struct_file_information* info, struct_LEAD_Bitmap* bitmap, BYTE* bytes, UINT, int row,
                  int lines, void* userData) {
    auto* rows = static_cast<Rows*>(userData);
    EXPECT_EQ(lines, 1);
    EXPECT_EQ(info->Height, bitmap->Height);
    rows->numbers.push_back(row);
    rows->firstBytes.push_back(bytes[0]);
    return row == rows->endAfter ? 0 : 1;
  }
};

TEST_F(PageTest, AnAbsurdResolutionLeavesThePageAsItIs) {
  TestPage page;
  ASSERT_EQ(page.LoadPage(File({Page{1000, 1400, 8, 1, 300}}).c_str(), 0, nullptr, nullptr), 1);
  EXPECT_EQ(page.m_bitmap.Width, 1000);
  EXPECT_EQ(page.m_bitmap.Height, 1400);
}

TEST_F(PageTest, ANewPageHoldsNothing) {
  TestPage page;
  EXPECT_EQ(page.GetHBitmap(), nullptr);
  EXPECT_EQ(page.Activate(1), 0);
  EXPECT_EQ(page.Activate(0), 1);
  EXPECT_EQ(page.GetFormat(), -1);
  EXPECT_EQ(page.GetPageInfo()->Width, 0);
  EXPECT_EQ(page.Rotate(9000, 1), 0);
  EXPECT_EQ(page.m_nRotation, 0);
}

TEST_F(PageTest, LoadsAtTheOwnDepthUprightWithSquarePixels) {
  Page fax = HalfDark(1728, 1079);
  fax.xDpi = 204;
  fax.yDpi = 98;
  Page turned{40, 30, 8, 100, 100};
  turned.orientation = ORIENTATION_RIGHTTOP;
  Page turnedFax = HalfDark(64, 32);  // stored lying: 100 dots across the upright page, 200 down it
  turnedFax.orientation = ORIENTATION_RIGHTTOP;
  turnedFax.xDpi = 200;
  turnedFax.yDpi = 100;
  const std::string path = File({fax, turned, turnedFax, {31, 17, 24}});
  std::vector<BYTE> bytes = BytesOf(path);
  const struct {
    int width, height, bits;
  } cases[] = {{1728, 2246, 1}, {30, 40, 8}, {64, 64, 1}, {31, 17, 24}};
  for (int i = 0; i < 4; ++i)
    for (const bool memory : {false, true}) {
      CZPPage page;
      ASSERT_EQ(memory ? page.LoadPage(bytes.data(), static_cast<DWORD>(bytes.size()), i, nullptr, &page)
                       : page.LoadPage(path.c_str(), i, nullptr, &page),
                1);
      const struct_LEAD_Bitmap* bitmap = page.GetHBitmap();
      ASSERT_NE(bitmap, nullptr);
      EXPECT_EQ(bitmap->Width, cases[i].width) << i;
      EXPECT_EQ(bitmap->Height, cases[i].height) << i;
      EXPECT_EQ(bitmap->BitsPerPixel, cases[i].bits) << i;
      EXPECT_EQ(bitmap->ViewPerspective, 0) << i;
      EXPECT_EQ(page.GetPageInfo()->PageNumber, i + 1);
      EXPECT_EQ(page.GetPageInfo()->InfoFlags, 8192);
      EXPECT_EQ(page.GetFormat(), page.GetPageInfo()->Format);
      EXPECT_EQ(page.Activate(1), 1);
    }
}

TEST_F(PageTest, ACallbackIsToldOfEveryRow) {
  const std::string path = File({{8, 20, 8, 0, 0, [](int, int y) { return y * 3; }}});
  std::vector<BYTE> bytes = BytesOf(path);
  for (const bool memory : {false, true}) {
    Rows rows;
    CZPPage page;
    ASSERT_EQ(memory ? page.LoadPage(bytes.data(), static_cast<DWORD>(bytes.size()), 0, &Rows::Note, &rows)
                     : page.LoadPage(path.c_str(), 0, &Rows::Note, &rows),
              1);
    ASSERT_EQ(rows.numbers.size(), 20U);
    for (int y = 0; y < 20; ++y) {
      EXPECT_EQ(rows.numbers[static_cast<std::size_t>(y)], y);
      EXPECT_EQ(rows.firstBytes[static_cast<std::size_t>(y)], y * 3);
    }
  }
}

TEST_F(PageTest, APageThatFailsIsSilentAndKeepsWhatIsKnown) {
  const std::string path = File({HalfDark(64, 64)});
  CZPPage page;
  EXPECT_EQ(page.LoadPage(path.c_str(), 1, nullptr, nullptr), 0);  // no such page
  EXPECT_EQ(page.GetFormat(), -1);
  EXPECT_EQ(page.LoadPage("/nowhere/at/all.tif", 0, nullptr, nullptr), 0);
  EXPECT_EQ(page.LoadPage(nullptr, 0, 0, nullptr, nullptr), 0);
  Rows rows;
  rows.endAfter = 5;
  EXPECT_EQ(page.LoadPage(path.c_str(), 0, &Rows::Note, &rows),
            0);  // fails when the file is described already
  EXPECT_EQ(rows.numbers.size(), 6U);
  EXPECT_EQ(page.GetHBitmap(), nullptr);
  EXPECT_EQ(page.GetFormat(), kFormatG4);
  EXPECT_EQ(page.GetPageInfo()->Width, 64);
  EXPECT_EQ(page.Activate(1), 0);
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(PageTest, APageFromABitmapHasItsOwnPixels) {
  CZPPage page;
  {
    OwnBitmap source(30, 20);
    source.ViewPerspective = 6;
    source.XResolution = 204;
    source.YResolution = 98;
    ASSERT_EQ(page.LoadPage(&source, 7, nullptr, nullptr), 1);
  }
  ASSERT_TRUE(IsAlive(page.GetHBitmap()));
  EXPECT_EQ(page.GetHBitmap()->Width, 20);  // upright, but not stretched
  EXPECT_EQ(page.GetHBitmap()->Height, 30);
  EXPECT_EQ(page.GetFormat(), 7);
  EXPECT_EQ(page.GetPageInfo()->Width, 0);

  CZPPage empty;
  struct_LEAD_Bitmap nothing{};
  EXPECT_EQ(empty.LoadPage(&nothing, 7, nullptr, nullptr), 0);
  EXPECT_EQ(empty.GetFormat(), -1);
  EXPECT_EQ(Boxes(), std::vector<std::string>{"Error ZP-002: Non c'è alcuna immagine su cui operare"});
}

TEST_F(PageTest, RotationIsRememberedAsATruncatedRemainder) {
  const struct {
    std::vector<int> angles;
    int remember, rotation, width;
  } cases[] = {
      {{9000, 9000, 9000, 9000}, 1, 0, 30}, {{-9000}, 1, -9000, 20},    {{9000}, 0, 0, 20}, {{0}, 1, 0, 30},
      {{-18000, 45000}, 1, 27000, 20},      {{2147481000}, 1, 9000, 20}};
  for (const auto& c : cases) {
    OwnBitmap source(30, 20);
    TestPage page;
    ASSERT_EQ(page.LoadPage(&source, 1, nullptr, nullptr), 1);
    for (const int angle : c.angles) EXPECT_EQ(page.Rotate(angle, c.remember), 1) << angle;
    EXPECT_EQ(page.m_nRotation, c.rotation) << c.angles[0];
    EXPECT_EQ(page.GetHBitmap()->Width, c.width) << c.angles[0];
  }
}

TEST_F(PageTest, ARefusedRotationIsReportedAndNotRemembered) {
  OwnBitmap source(30, 20);
  TestPage page;
  ASSERT_EQ(page.LoadPage(&source, 1, nullptr, nullptr), 1);
  EXPECT_EQ(page.Rotate(4500, 1), 0);
  EXPECT_EQ(page.m_nRotation, 0);
  EXPECT_EQ(Boxes().size(), 1U);
}

TEST_F(PageTest, TheLastCopyFreesThePixels) {
  OwnBitmap source(500, 400);
  auto first = std::make_unique<CZPPage>();
  ASSERT_EQ(first->LoadPage(&source, 5, nullptr, nullptr), 1);
  const struct_LEAD_Bitmap header = *first->GetHBitmap();
  auto second = std::make_unique<CZPPage>(*first);
  CZPPage third;
  third = *second;
  third = *first;  // of the same pixels
  CZPPage& self = third;
  third = self;
  EXPECT_EQ(third.GetFormat(), 5);
  first.reset();
  // New pixels would take the address of those freed too early, and be freed by the next copy.
  OwnBitmap other(500, 400);
  second.reset();
  EXPECT_TRUE(IsAlive(&other));
  ASSERT_TRUE(IsAlive(third.GetHBitmap()));
  EXPECT_EQ(third.GetHBitmap()->pStorage, header.pStorage);
  third = CZPPage();
  EXPECT_EQ(third.GetHBitmap(), nullptr);
  struct_LEAD_Bitmap stale = header;
  EXPECT_FALSE(IsAlive(&stale));
}

TEST_F(PageTest, ACopyOutlivesAPageThatLoadsAnew) {
  const std::string path = File({HalfDark(64, 64)});
  CZPPage page;
  ASSERT_EQ(page.LoadPage(path.c_str(), 0, nullptr, nullptr), 1);
  const CZPPage copy = page;
  EXPECT_EQ(page.LoadPage(path.c_str(), 9, nullptr, nullptr), 0);  // fails, and lets its bitmap go
  EXPECT_EQ(page.GetHBitmap(), nullptr);
  EXPECT_TRUE(IsAlive(CZPPage(copy).GetHBitmap()));
  ASSERT_EQ(page.LoadPage(path.c_str(), 0, nullptr, nullptr), 1);
  EXPECT_NE(page.GetHBitmap()->pStorage, CZPPage(copy).GetHBitmap()->pStorage);
}

/// A host's page that holds its pixels only while it is shown.
class LazyPage : public CZPPage {
 public:
  ~LazyPage() override { ++destroyed; }
  using CZPPage::LoadPage;
  int LoadPage(const char* pszFile, int nPage, leadtools12::LoadRowCallback, void*) override {
    m_path = pszFile;
    m_nPage = nPage;
    return 1;
  }
  int Activate(int bActivate) override {
    if (bActivate != 0 && CZPPage::GetHBitmap() == nullptr)
      DoLoad(&m_bitmap, m_path, m_nPage, nullptr, nullptr);
    if (bActivate == 0) LEADTOOLS::FreeBitmap(&m_bitmap);
    return CZPPage::Activate(bActivate);
  }
  struct_LEAD_Bitmap* GetHBitmap() override {
    Activate(1);
    return CZPPage::GetHBitmap();
  }
  static int destroyed;

 private:
  CString m_path;
  int m_nPage = 0;
};
int LazyPage::destroyed = 0;

TEST_F(PageTest, AHostCanTakeLoadingAndActivationOver) {
  const std::string path = File({HalfDark(64, 64)});
  {
    std::unique_ptr<CZPPage> page = std::make_unique<LazyPage>();
    EXPECT_EQ(page->LoadPage(path.c_str(), 0, nullptr, nullptr), 1);
    ASSERT_NE(page->GetHBitmap(), nullptr);
    EXPECT_EQ(page->Activate(0), 1);
    ASSERT_NE(page->GetHBitmap(), nullptr);
    EXPECT_EQ(page->GetHBitmap()->Width, 64);
    EXPECT_EQ(page->GetFormat(), kFormatG4);
  }
  EXPECT_EQ(LazyPage::destroyed, 1);
}

TEST_F(PageTest, TheReadyCallbackMovesABarInStepsOfFive) {
  auto* frame = new CFrameWnd;  // deletes itself with its window
  ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 200)));
  CProgressCtrl bar;
  ASSERT_TRUE(bar.Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 20), frame, 1));
  bar.SetRange(0, 100);
  struct_file_information info{};
  const struct {
    int at, row, height, shown;
  } cases[] = {{40, 44, 101, 40},   {40, 45, 101, 45}, {40, 36, 101, 40}, {40, 35, 101, 35},
               {99, 100, 101, 100}, {99, 99, 101, 99}, {40, 0, 1, 100}};
  for (const auto& c : cases) {
    bar.SetPos(c.at);
    info.Height = c.height;
    EXPECT_EQ(TestPage::LoadCallback(&info, nullptr, nullptr, 0, c.row, 1, bar.m_hWnd), 1);
    EXPECT_EQ(bar.SendMessage(PBM_GETPOS), c.shown) << c.row;
  }
  EXPECT_EQ(TestPage::LoadCallback(&info, nullptr, nullptr, 0, 0, 1, nullptr), 1);
  frame->DestroyWindow();
}

}  // namespace
