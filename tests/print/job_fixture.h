#pragma once

#include <string>
#include <vector>

#include "imaging/ltwrap.h"
#include "platform/base/global_memory.h"
#include "platform/framework/message_box.h"
#include "print/print_bitmap.h"
#include "print/print_failure.h"
#include "print/print_file.h"
#include "tests/imagewindow/tiff_writer.h"
#include "tests/spooler/print_fixture.h"

/// A job with its protected side open.
class TestJob : public CPrintFile {
 public:
  TestJob() : CPrintFile("prova") {}
  using CPrintFile::LoadPage;
  using CPrintFile::m_Bitmap;
  using CPrintFile::m_hDevMode;
  using CPrintFile::m_hDevNames;
  using CPrintFile::m_strDocName;
  using CPrintFile::m_strFile;
};

/// Where something dark stands on a printed sheet, in dots of the printer, and the sheet's size.
struct Printed {
  SIZE sheet;
  RECT dark;
};

/// Queues without margins, letter paper at 300 dots per inch ("Foglio", the default), and with margins
/// ("Bordi"). Boxes on the screen are answered and written down.
class PrintJobTest : public PrintTest {
 protected:
  using Page = test_pages::Page;
  static constexpr int kDpi = 300;

  void SetUp() override {
    PrintTest::SetUp();
    SetQueue({});
    Boxes().clear();
    Reports().clear();
    platform::testing::SetMessageBoxAnswer([](const CString& text, UINT) {
      Boxes().emplace_back(text);
      return static_cast<int>(IDOK);
    });
    CPrintFile::SetPrintFormat(PrintFormatFitToPage);
  }

  /// Changes how the queue "Foglio" behaves.
  void SetQueue(const platform::TestPrinter& how) {
    platform::TestPrinter plain = how;
    plain.name = "Foglio";
    plain.folder = (m_folder / "queue").string();
    plain.isDefault = true;
    plain.dpi = kDpi;
    plain.paperWidth = 21590;
    plain.paperLength = 27940;
    plain.margin = 0;
    platform::TestPrinter bordered = plain;
    bordered.name = "Bordi";
    bordered.isDefault = false;
    bordered.margin = 847;  // 100 dots
    const platform::TestPrinter queues[] = {plain, bordered};
    platform::testing::SetTestPrinters(queues);
  }

  /// Wholly black.
  static Page Black(int width, int height, int bits, float xDpi, float yDpi) {
    return {width, height, bits, xDpi, yDpi, [](int, int) { return 0; }};
  }
  std::string WriteFile(const std::vector<Page>& pages) {
    const std::string path = (m_folder / "pages.tif").string();
    test_pages::Write(path, pages);
    return path;
  }

  /// What a job throws; 1000 if nothing.
  template <class Job>
  static int Thrown(const Job& job) {
    try {
      job();
    } catch (int code) {
      return code;
    } catch (CLeadtoolsException* exception) {
      exception->Delete();
      return kServiceFailed;
    }
    return kNothing;
  }
  static constexpr int kNothing = 1000;
  static constexpr int kServiceFailed = 1001;

  /// A whole sheet, a pixel for each dot, without smoothing: the brightness of each.
  std::vector<std::uint8_t> RenderSheet(const std::string& pdf, int page, SIZE& size) const {
    const std::string prefix = (m_folder / "sheet").string();
    const std::string number = std::to_string(page);
    EXPECT_EQ(Output("pdftoppm -gray -singlefile -aa no -aaVector no -r " + std::to_string(kDpi) + " -f " +
                     number + " -l " + number + " " + pdf + " " + prefix),
              "");
    std::istringstream file(Read(prefix + ".pgm"));
    std::string magic;
    int most = 0;
    file >> magic >> size.cx >> size.cy >> most;
    EXPECT_EQ(magic, "P5") << pdf;
    file.get();
    std::vector<std::uint8_t> grey(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
    file.read(reinterpret_cast<char*>(grey.data()), static_cast<std::streamsize>(grey.size()));
    return grey;
  }

  Printed Look(const std::string& pdf, int page = 1) const {
    SIZE size{};
    const std::vector<std::uint8_t> grey = RenderSheet(pdf, page, size);
    Printed printed{size, {size.cx, size.cy, 0, 0}};
    for (int y = 0; y < size.cy; ++y)
      for (int x = 0; x < size.cx; ++x) {
        if (grey[static_cast<std::size_t>(y) * static_cast<std::size_t>(size.cx) +
                 static_cast<std::size_t>(x)] > 127)
          continue;
        printed.dark.left = std::min(printed.dark.left, x);
        printed.dark.right = std::max(printed.dark.right, x + 1);
        printed.dark.top = std::min(printed.dark.top, y);
        printed.dark.bottom = std::max(printed.dark.bottom, y + 1);
      }
    return printed;
  }
  static int PageCount(const std::string& pdf) {
    const std::string info = Output("pdfinfo " + pdf);
    const std::size_t at = info.find("Pages:");
    return at == std::string::npos ? 0 : std::atoi(info.c_str() + at + 6);
  }
  /// Widths of what stands on the pages, to the nearest ten dots.
  std::vector<int> Widths(const std::string& pdf) const {
    std::vector<int> widths;
    for (int page = 1; page <= PageCount(pdf); ++page) {
      const RECT dark = Look(pdf, page).dark;
      widths.push_back((dark.right - dark.left + 5) / 10 * 10);
    }
    return widths;
  }
  int SpooledFiles() const {
    int count = 0;  // the desktop's library has a folder of its own there
    for (const auto& entry : std::filesystem::directory_iterator(m_folder / "spool"))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }

  static std::vector<std::string>& Boxes() {
    static std::vector<std::string> boxes;
    return boxes;
  }
  static std::vector<std::pair<int, std::string>>& Reports() {
    static std::vector<std::pair<int, std::string>> reports;
    return reports;
  }
  static void Report(int code, CString text) { Reports().emplace_back(code, static_cast<const char*>(text)); }
};
