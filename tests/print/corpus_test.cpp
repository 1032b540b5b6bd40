// Faxes and other documents of many pages, as others have made them, printed to PDFs. libtiff tells what they
// hold.

#include <optional>

#include "tests/print/job_fixture.h"

namespace {

struct TrueSize {
  double across;
  double down;
};

class CorpusJob : public PrintJobTest {
 protected:
  struct Close {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
  };
  using File = std::unique_ptr<TIFF, Close>;

  void SetUp() override {
    PrintJobTest::SetUp();
    const char* corpus = std::getenv("TESSAREL_CORPUS");
    m_corpus = corpus == nullptr ? "" : corpus;
    if (!std::filesystem::exists(m_corpus / "TRUTH.tsv")) GTEST_SKIP() << "no corpus";
    if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
    // A sheet of two metres, so that nothing is cut off.
    platform::TestPrinter wide;
    wide.name = "Foglio";
    wide.folder = (m_folder / "queue").string();
    wide.isDefault = true;
    wide.dpi = kDpi;
    wide.margin = 0;
    wide.paperWidth = wide.paperLength = 200000;
    platform::testing::SetTestPrinters({&wide, 1});
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
  }

  /// Sound TIFF files of several bilevel pages.
  std::vector<std::string> Documents() const {
    std::vector<std::string> paths;
    std::ifstream truth(m_corpus / "TRUTH.tsv");
    for (std::string line; std::getline(truth, line);) {
      std::istringstream row(line);
      std::string path, kind, pages, width, height, bits;
      for (std::string* cell : {&path, &kind, &pages, &width, &height, &bits}) std::getline(row, *cell, '\t');
      if (kind == "TIFF" && std::atoi(pages.c_str()) > 1 && bits == "1" &&
          line.find("\tok") != std::string::npos)
        paths.push_back((m_corpus / path).string());
    }
    return paths;
  }

  /// A page in inches, if it tells them and its pixels are square.
  static std::optional<TrueSize> SizeOf(TIFF* tiff) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    float x = 0;
    float y = 0;
    std::uint16_t unit = RESUNIT_INCH;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_RESOLUTIONUNIT, &unit);
    if (TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &x) == 0 || TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &y) == 0)
      return std::nullopt;
    const double perInch = unit == RESUNIT_CENTIMETER ? 2.54 : 1;
    if (unit == RESUNIT_NONE || x < 30 || x != y) return std::nullopt;
    return TrueSize{width / (x * perInch), height / (y * perInch)};
  }

  /// The pictures of a PDF in inches, as its reader sees them.
  static std::vector<TrueSize> Placed(const std::string& pdf) {
    std::vector<TrueSize> sizes;
    std::istringstream list(Output("pdfimages -list " + pdf));
    std::string line;
    for (int skipped = 0; skipped < 2; ++skipped) std::getline(list, line);
    while (std::getline(list, line)) {
      std::istringstream row(line);
      std::vector<std::string> cells;
      for (std::string cell; row >> cell;) cells.push_back(cell);
      if (cells.size() < 14) continue;
      sizes.push_back({std::atof(cells[3].c_str()) / std::atof(cells[12].c_str()),
                       std::atof(cells[4].c_str()) / std::atof(cells[13].c_str())});
    }
    return sizes;
  }

  std::filesystem::path m_corpus;
};

TEST_F(CorpusJob, EveryPageIsASheetOfItsSize) {
  int jobs = 0;
  int sizes = 0;
  for (const std::string& path : Documents()) {
    SCOPED_TRACE(path);
    const std::string pdf = QueuedJob(++jobs);
    CPrintFile job("prova");
    job.Print(path.c_str(), 1, nullptr, true, PrintFormatActualSize);
    const File tiff(TIFFOpen(path.c_str(), "r"));
    ASSERT_TRUE(tiff);
    const std::vector<TrueSize> placed = Placed(pdf);
    ASSERT_EQ(PageCount(pdf), TIFFNumberOfDirectories(tiff.get()));
    ASSERT_EQ(placed.size(), TIFFNumberOfDirectories(tiff.get()));
    for (std::size_t page = 0; page < placed.size(); ++page) {
      TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(page));
      const auto expected = SizeOf(tiff.get());
      if (!expected) continue;
      ++sizes;
      EXPECT_NEAR(placed[page].across, expected->across, expected->across / 100) << "page " << page + 1;
      EXPECT_NEAR(placed[page].down, expected->down, expected->down / 100) << "page " << page + 1;
    }
  }
  EXPECT_GT(jobs, 1);
  EXPECT_GT(sizes, 3);
}

TEST_F(CorpusJob, PixelForPixelNothingIsChanged) {
  const std::string path = (m_corpus / "multipage/g4-multi.tiff").string();
  const File tiff(TIFFOpen(path.c_str(), "r"));
  if (!tiff) GTEST_SKIP() << "no such file";
  CPrintFile job("prova");
  job.Print(path.c_str(), 1, nullptr, true, PrintFormatPixelToPixel);
  const std::string prefix = (m_folder / "picture").string();
  EXPECT_EQ(Output("pdfimages -f 1 -l 1 " + QueuedJob(1) + " " + prefix), "");
  std::istringstream picture(Read(prefix + "-000.pbm"));
  std::string magic;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  picture >> magic >> width >> height;
  ASSERT_EQ(magic, "P4");
  picture.get();
  std::uint32_t trueWidth = 0;
  std::uint32_t trueHeight = 0;
  std::uint16_t photometric = 0;
  TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &trueWidth);
  TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &trueHeight);
  TIFFGetField(tiff.get(), TIFFTAG_PHOTOMETRIC, &photometric);
  ASSERT_EQ(width, trueWidth);
  ASSERT_EQ(height, trueHeight);
  std::vector<std::uint8_t> row((width + 7) / 8);
  std::vector<char> printed(row.size());
  std::uint32_t wrong = 0;
  const std::uint8_t flip = photometric == PHOTOMETRIC_MINISBLACK ? 0xff : 0;
  for (std::uint32_t y = 0; y < height; ++y) {
    ASSERT_EQ(TIFFReadScanline(tiff.get(), row.data(), y), 1);
    picture.read(printed.data(), static_cast<std::streamsize>(printed.size()));
    for (std::uint32_t x = 0; x < width; ++x)
      wrong +=
          ((row[x / 8] ^ flip ^ static_cast<std::uint8_t>(printed[x / 8])) >> (7 - x % 8) & 1U) != 0 ? 1 : 0;
  }
  EXPECT_EQ(wrong, 0U);
}

}  // namespace
