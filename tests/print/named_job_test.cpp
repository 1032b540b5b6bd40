// Jobs on a printer by its name, looked at in the document that comes out.

#include <cstring>

#include "tests/print/job_fixture.h"

namespace {

constexpr PrintFormat kFit = PrintFormatFitToPage;
constexpr PrintFormat kActual = PrintFormatActualSize;
constexpr PrintFormat kPixels = PrintFormatPixelToPixel;
constexpr SIZE kUpright{2550, 3300};
constexpr SIZE kLying{3300, 2550};

class NamedJob : public PrintJobTest {};

void ExpectNear(int got, int want, const std::string& what) {
  EXPECT_NEAR(got, want, 1) << what;
}

TEST_F(NamedJob, PagesComeOutInTheirSize) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const Page fax = Black(1728, 1078, 1, 204, 98);
  const Page fine = Black(1728, 2156, 1, 204, 196);
  const Page lying = Black(600, 400, 24, 100, 100);
  const Page large = Black(4000, 2000, 1, 300, 300);
  const Page huge = Black(5000, 6000, 8, 300, 300);
  const Page unknown = Black(850, 550, 8, 0, 0);
  const struct {
    const char* name;
    Page page;
    PrintFormat format;
    SIZE sheet, size;
  } cases[] = {
      {"fax, fit", fax, kFit, kUpright, {2550, 3181}},
      {"fax, actual", fax, kActual, kUpright, {2541, 3170}},
      {"fax, pixels", fax, kPixels, kUpright, {1728, 2156}},
      {"fine fax, actual", fine, kActual, kUpright, {2541, 3170}},
      {"lying, fit", lying, kFit, kLying, {3300, 2200}},
      {"lying, actual", lying, kActual, kUpright, {1800, 1200}},
      {"lying, pixels", lying, kPixels, kUpright, {600, 400}},
      {"larger, fit", large, kFit, kLying, {3300, 1650}},
      {"larger, actual", large, kActual, kLying, {3300, 2000}},
      {"larger, pixels", large, kPixels, kLying, {3300, 2000}},
      {"larger both ways, fit", huge, kFit, kUpright, {2550, 3060}},
      {"larger both ways, actual", huge, kActual, kUpright, {2550, 3300}},
      {"unknown resolution, actual", unknown, kActual, kLying, {3300, 2135}},
  };
  int number = 0;
  for (const auto& c : cases) {
    CPrintFile job("prova");
    ASSERT_EQ(Thrown([&] { job.Print_Def("Foglio", WriteFile({c.page}).c_str(), 1, c.format); }), kNothing);
    const Printed printed = Look(QueuedJob(++number));
    ExpectNear(printed.sheet.cx, c.sheet.cx, c.name);
    ExpectNear(printed.sheet.cy, c.sheet.cy, c.name);
    ExpectNear(printed.dark.left, 1, c.name);
    ExpectNear(printed.dark.top, 1, c.name);
    ExpectNear(printed.dark.right, std::min(1 + c.size.cx, c.sheet.cx), c.name);
    ExpectNear(printed.dark.bottom, std::min(1 + c.size.cy, c.sheet.cy), c.name);
  }
}

// The true size counts from the corner of the paper, so that the margin hides its edge; the other formats
// count from the printable area.
TEST_F(NamedJob, MarginsOfThePrinter) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const std::string path = WriteFile({Black(600, 900, 1, 300, 300), Black(600, 900, 1, 0, 0)});
  CPrintFile job("prova");
  job.Print_Def("Bordi", path.c_str(), 1, kActual);
  const RECT actual = Look(QueuedJob(1), 1).dark;
  ExpectNear(actual.left, 100, "margin");
  ExpectNear(actual.top, 100, "margin");
  ExpectNear(actual.right, 601, "from the paper's corner");
  ExpectNear(actual.bottom, 901, "from the paper's corner");
  const RECT fitted = Look(QueuedJob(1), 2).dark;  // the page before has moved the origin
  ExpectNear(fitted.left, 101, "from the printable area");
  ExpectNear(fitted.top, 101, "from the printable area");
  // 2350 by 3100 dots: the height decides, 3100 / 900 * 600.
  ExpectNear(fitted.right, 101 + 2066, "fitted");
}

TEST_F(NamedJob, PaperTurnsForThePagesThatNeedIt) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const std::string path =
      WriteFile({Black(100, 100, 1, 0, 0), Black(3000, 1000, 1, 0, 0), Black(200, 100, 1, 0, 0)});
  CPrintFile job("prova");
  job.Print_Def("Foglio", path.c_str(), 2, kPixels);
  const std::vector<SIZE> sheets = {kUpright, kLying, kLying, kLying, kLying, kLying};
  ASSERT_EQ(PageCount(QueuedJob(1)), 6);
  for (int page = 1; page <= 6; ++page)
    ExpectNear(Look(QueuedJob(1), page).sheet.cx, sheets[static_cast<std::size_t>(page - 1)].cx,
               std::to_string(page));
}

TEST_F(NamedJob, RangesAndCopies) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const std::string path =
      WriteFile({Black(100, 50, 1, 0, 0), Black(200, 50, 1, 0, 0), Black(300, 50, 1, 0, 0)});
  const struct {
    short copies, from, to;
    std::vector<int> widths;
  } cases[] = {{1, 1, 3, {100, 200, 300}}, {3, 1, 2, {100, 200, 100, 200, 100, 200}}, {2, 3, 3, {300, 300}}};
  int number = 0;
  for (const auto& c : cases) {
    TestJob job;
    job.Print_Range("Foglio", path.c_str(), c.copies, c.from, c.to, kPixels);
    EXPECT_EQ(Widths(QueuedJob(++number)), c.widths) << c.copies << ' ' << c.from << '-' << c.to;
    EXPECT_TRUE(job.m_strFile.IsEmpty());
    EXPECT_EQ(job.m_strDocName, path.c_str());
    EXPECT_EQ(job.m_Bitmap.Flags & 1, 0U) << "the last page is freed";
  }
}

TEST_F(NamedJob, NothingToPrintSpoolsNothing) {
  const std::string path = WriteFile({Black(100, 50, 1, 0, 0)});
  CPrintFile job("prova");
  EXPECT_EQ(Thrown([&] { job.Print_Def("Foglio", path.c_str(), 0, kFit); }), kNothing);
  EXPECT_EQ(Thrown([&] { job.Print_Def("Foglio", path.c_str(), -1, kFit); }), kNothing);
  EXPECT_EQ(Thrown([&] { job.Print_Range("Foglio", path.c_str(), 1, 2, 1, kFit); }), kNothing);
  EXPECT_EQ(SpooledFiles(), 0);
  EXPECT_FALSE(std::filesystem::exists(QueuedJob(1)));
}

TEST_F(NamedJob, TakesItsOwnFormatAndLeavesTheCurrentOne) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const std::string path = WriteFile({Black(300, 600, 1, 150, 150)});
  CPrintFile::SetPrintFormat(kActual);
  CPrintFile job("prova");
  job.Print_Def("Foglio", path.c_str(), 1, kPixels);
  job.Print_Def("Foglio", path.c_str(), 1, static_cast<PrintFormat>(7));
  EXPECT_EQ(Widths(QueuedJob(1)).at(0), 300) << "pixels";
  EXPECT_EQ(Widths(QueuedJob(2)).at(0), 1650) << "unknown: fit";
  EXPECT_EQ(CPrintFile::GetPrintFormat(), kActual);
}

TEST_F(NamedJob, FailuresAndWhatTheUserSees) {
  const std::string path = WriteFile({Black(100, 50, 1, 0, 0), Black(100, 50, 1, 0, 0)});
  platform::TestPrinter refusing, gone;
  refusing.accepting = false;
  gone.gone = true;
  const struct {
    const char* name;
    platform::TestPrinter queue;
    std::string printer, file;
    short toPage;
    int code;
    std::size_t boxes;
  } cases[] = {
      {"no such printer", {}, "foglio", path, 1, PrintFailureNoSuchPrinter, 0},
      {"no name", {}, "", path, 1, PrintFailureNoSuchPrinter, 0},
      {"server too long",
       {},
       "\\\\" + std::string(258, 's') + "\\Foglio",
       path,
       1,
       PrintFailureNoSuchPrinter,
       0},
      {"unknown server",
       {},
       "\\\\" + std::string(257, 's') + "\\Foglio",
       path,
       1,
       PrintFailureNoSuchPrinter,
       1},
      {"refusing queue", refusing, "Foglio", path, 1, -1, 0},
      {"vanished queue", gone, "Foglio", path, 1, -1, 0},
      {"no such file", {}, "Foglio", path + "x", 1, kServiceFailed, 0},
      {"page beyond the end", {}, "Foglio", path, 3, kServiceFailed, 0},
      {"no path", {}, "Foglio", "", 1, kServiceFailed, 0},
  };
  for (const auto& c : cases) {
    SetQueue(c.queue);
    Boxes().clear();
    TestJob job;
    const char* file = c.file.empty() ? nullptr : c.file.c_str();
    const int code = Thrown([&] { job.Print_Range(c.printer.c_str(), file, 1, 1, c.toPage, kFit); });
    EXPECT_EQ(code, c.code) << c.name;
    EXPECT_EQ(Boxes().size(), c.boxes) << c.name;
    EXPECT_EQ(SpooledFiles(), 0) << c.name;
    EXPECT_FALSE(std::filesystem::exists(QueuedJob(1))) << c.name;
    EXPECT_EQ(job.m_Bitmap.Flags & 1, 0U) << c.name;
  }
}

TEST_F(NamedJob, WithoutAnyPrinterTheViewerSaysSo) {
  platform::testing::SetTestPrinters({});
  CPrintFile job("prova");
  EXPECT_EQ(Thrown([&] { job.Print_Def("Foglio", "x.tif", 1, kFit); }), PrintFailureNoSuchPrinter);
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_NE(Boxes()[0].find("stampante predefinita"), std::string::npos) << Boxes()[0];
}

TEST_F(NamedJob, CopiesOfAJobHaveTheirOwnHandles) {
  const HGLOBAL mode = GlobalAlloc(GHND, sizeof(DEVMODE));
  auto* record = static_cast<DEVMODE*>(GlobalLock(mode));
  record->dmPaperSize = DMPAPER_A3;
  GlobalUnlock(mode);
  PRINTDLGA defaults{};
  defaults.hDevMode = mode;

  TestJob job;
  job.SetPrintOptions(&defaults);
  job.SetPrintOptions(&defaults);
  EXPECT_NE(job.m_hDevMode, mode);
  EXPECT_EQ(job.m_hDevNames, nullptr);
  {
    job.m_strFile = WriteFile({Black(100, 50, 8, 0, 0)}).c_str();
    ASSERT_EQ(job.LoadPage(1, nullptr), 1);
    TestJob copy(job);
    EXPECT_EQ(copy.m_strFile, job.m_strFile);
    EXPECT_EQ(copy.m_Bitmap.Flags & 1, 0U) << "the page has one owner";
    TestJob assigned;
    assigned.SetPrintOptions(&defaults);
    assigned = copy;
    assigned = static_cast<const TestJob&>(assigned);
    for (const TestJob* other : {&copy, &assigned}) {
      EXPECT_NE(other->m_hDevMode, job.m_hDevMode);
      const auto* theirs = static_cast<const DEVMODE*>(GlobalLock(other->m_hDevMode));
      ASSERT_NE(theirs, nullptr);
      EXPECT_EQ(theirs->dmPaperSize, DMPAPER_A3);
      GlobalUnlock(other->m_hDevMode);
    }
  }
  EXPECT_NE(GlobalLock(job.m_hDevMode), nullptr) << "the copies' end leaves it alone";
  EXPECT_EQ(job.m_Bitmap.Flags & 1, 1U);
  GlobalFree(mode);
}

}  // namespace
