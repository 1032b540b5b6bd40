// Pages that went through something on their way: rows repeated on the screen, a quarter turn, a file that
// says it lies.

#include "docview/zp_doc.h"
#include "imagewindow/image_window.h"
#include "platform/framework/frame_wnd.h"
#include "tests/print/job_fixture.h"

namespace {

class Document : public CZPDoc {
 public:
  using CZPDoc::m_nPrintFormat;
};

class AsShown : public PrintJobTest {
 protected:
  struct Case {
    const char* name;
    Page page;
    int turn;  // degrees
    PrintFormat format;
    SIZE window;  // what is printed, dots at 300 an inch: by the image window
    SIZE document;
  };

  /// By the window's command on its current page.
  void PrintFromWindow(const Case& row) {
    auto* const frame = new CFrameWnd;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400)));
    {
      CImageWindow window;
      ASSERT_TRUE(window.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 200), frame, 1));
      ASSERT_TRUE(window.OpenImageFile(WriteFile({row.page}).c_str()) && window.LoadPage(1));
      if (row.turn != 0) window.Rotate(row.turn, false);
      window.m_nPrintFormat = row.format;
      window.PrintCurrentPage();
      window.DestroyWindow();
    }
    frame->DestroyWindow();
  }
  /// By the document's command on a page, and by that on all pages.
  void PrintFromDocument(const Case& row) {
    Document document;
    ASSERT_EQ(document.OnOpenDocument(WriteFile({row.page}).c_str()), 1);
    document.Rotate(row.turn * 100);
    document.m_nPrintFormat = row.format;
    document.PrintPage(0);
    ASSERT_EQ(document.PrintDocument(nullptr, true, 0, -1), 1);
  }
  void ExpectSize(const SIZE& size, const char* what) {
    const RECT dark = Look(QueuedJob(++m_job)).dark;
    EXPECT_NEAR(dark.right - dark.left, size.cx, 3) << what;
    EXPECT_NEAR(dark.bottom - dark.top, size.cy, 3) << what;
  }

  int m_job = 0;
};

TEST_F(AsShown, PagesHaveTheirTrueSizeAndShape) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const Page fax = Black(816, 500, 1, 204, 98);   // 4.0 by 5.1 inches
  const Page wide = Black(500, 816, 1, 98, 204);  // 5.1 by 4.0
  const Page fine = Black(816, 1000, 1, 204, 196);
  const Page odd = Black(600, 400, 8, 300, 200);  // hardly stretched by the document, not by the window
  const Page unknown = Black(600, 400, 8, 0, 0);
  constexpr SIZE kFax{1200, 1531};
  constexpr SIZE kTurned{1531, 1200};
  constexpr auto kActual = PrintFormatActualSize;
  constexpr auto kFit = PrintFormatFitToPage;
  const Case cases[] = {
      {"fax", fax, 0, kActual, kFax, kFax},
      {"fax, turned", fax, 90, kActual, kTurned, kTurned},
      {"fax, on its head", fax, 180, kActual, kFax, kFax},
      {"wide", wide, 0, kActual, kTurned, kTurned},
      {"wide, turned", wide, 270, kActual, kFax, kFax},
      {"fine", fine, 0, kActual, kFax, kFax},
      {"odd", odd, 0, kActual, {600, 600}, {600, 600}},
      // Letter is 2550 by 3300; what is fitted has the shape that the viewer shows.
      {"fax, fitted", fax, 0, kFit, {2549, 3124}, {2549, 3252}},
      {"fine, fitted", fine, 0, kFit, {2549, 3124}, {2549, 3252}},
      {"wide, turned and fitted", wide, 90, kFit, {2549, 3124}, {2549, 3252}},
      {"unknown, fitted", unknown, 0, kFit, {2549, 1699}, {2549, 1699}},
  };
  for (const Case& row : cases) {
    PrintFromWindow(row);
    ExpectSize(row.window, row.name);
    PrintFromDocument(row);
    ExpectSize(row.document, row.name);
    if (row.format == kFit)
      ++m_job;  // the job of many pages fits by inches, and may turn the paper
    else
      ExpectSize(row.document, (std::string(row.name) + ", all pages").c_str());
  }
}

// A page of 300 by 200 upright, its upper left quarter black, stored in each of the eight ways.
TEST_F(AsShown, APageIsPrintedUpright) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  struct Stored {
    int orientation;  // TIFF 6.0, tag 274
    bool onItsSide;
    bool markRight;
    bool markBelow;
  };
  constexpr Stored kWays[] = {{1, false, false, false}, {2, false, true, false}, {3, false, true, true},
                              {4, false, false, true},  {5, true, false, false}, {6, true, false, true},
                              {7, true, true, true},    {8, true, true, false}};
  for (const Stored& way : kWays) {
    const int width = way.onItsSide ? 200 : 300;
    const int height = way.onItsSide ? 300 : 200;
    Page page{width,
              height,
              1,
              way.onItsSide ? 100.0F : 200.0F,
              way.onItsSide ? 200.0F : 100.0F,
              [=](int x, int y) {
                return (x >= width / 2) == way.markRight && (y >= height / 2) == way.markBelow ? 0 : 255;
              },
              way.orientation};
    for (const auto& [format, wanted] :
         {std::pair{PrintFormatPixelToPixel, RECT{1, 1, 151, 201}},  // the rows are doubled
          std::pair{PrintFormatActualSize, RECT{1, 1, 226, 301}}}) {
      CPrintFile job("prova");
      ASSERT_EQ(Thrown([&] { job.Print_Def("Foglio", WriteFile({page}).c_str(), 1, format); }), kNothing);
      const RECT dark = Look(QueuedJob(++m_job)).dark;
      const std::string what =
          "orientation " + std::to_string(way.orientation) + ", format " + std::to_string(format);
      EXPECT_NEAR(dark.left, wanted.left, 1) << what;
      EXPECT_NEAR(dark.top, wanted.top, 1) << what;
      EXPECT_NEAR(dark.right, wanted.right, 2) << what;
      EXPECT_NEAR(dark.bottom, wanted.bottom, 2) << what;
    }
  }
}

TEST_F(AsShown, NothingIsNoPage) {
  CPrintBitmap job("prova");
  EXPECT_EQ(Thrown([&] { job.Print(nullptr, nullptr, true, PrintFormatFitToPage); }), kServiceFailed);
}

}  // namespace
