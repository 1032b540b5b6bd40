#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <set>
#include <sstream>

#include "imaging/helper/place.h"
#include "tests/imaging/codec_files.h"
#include "tests/imaging/fax_files.h"
#include "tests/imaging/flashpix_files.h"
#include "tests/imaging/pdf_files.h"
#include "tests/imaging/raster_files.h"

// Files that other people's programs wrote, against tables of what several independent readers say of them.
namespace codec_test {
namespace {

using Fields = std::map<std::string, std::string>;

std::vector<Fields> ReadTable(const std::string& name) {
  std::ifstream file(CorpusFolder() + "/" + name);
  std::vector<std::string> columns;
  std::vector<Fields> rows;
  for (std::string line; std::getline(file, line);) {
    std::vector<std::string> cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '\t');) cells.push_back(cell);
    if (columns.empty()) {
      columns = cells;
      continue;
    }
    Fields row;
    for (std::size_t i = 0; i < cells.size() && i < columns.size(); ++i) row[columns[i]] = cells[i];
    rows.push_back(row);
  }
  return rows;
}

int Number(const Fields& row, const char* column) {
  return std::atoi(row.at(column).c_str());
}

/// The table has one name for several modules that draw.
std::string ModuleOf(const Fields& row) {
  if (row.at("kind") == "FLI") return "in";  // which the tables count elsewhere
  if (row.at("back_end") == "vector" && row.at("kind") == "WMF") return "wmf";
  if (row.at("back_end") == "vector" && row.at("kind") == "EMF") return "emf";
  if (row.at("back_end") == "vector" && row.at("kind") == "WPG") return "wpg";
  if (row.at("back_end") == "vector" && row.at("kind") == "PICT") return "pict";
  return row.at("back_end");
}

/// Of the kinds that a module of the helper reads, those whose module is there.
bool OurKind(const Fields& row) {
  // Pages that aren't one picture, and the codings of pictures that only a renderer knows, are drawn.
  if (row.at("kind") == "PDF" && (row.at("compression") == "vector" || row.at("compression") == "JBIG2" ||
                                  row.at("compression") == "JPEG 2000"))
    return imaging::helper_client::HasModule("pdfdraw");
  if (ModuleOf(row) != "in") return imaging::helper_client::HasModule(ModuleOf(row).c_str());
  static const std::array kinds = {"TIFF", "BMP", "JPEG",          "PNG",           "GIF", "PCX",  "DCX",
                                   "TGA",  "PNM", "ICO",           "CUR",           "ANI", "RAS",  "XWD",
                                   "XPM",  "XBM", "MAC",           "MSP",           "FAX", "CALS", "IOCA",
                                   "INGR", "EPS", "TIFF lossless", "JPEG lossless", "FLI"};
  return std::find(kinds.begin(), kinds.end(), row.at("kind")) != kinds.end();
}

/// The page numbers of a file's pictures. The tables have icons in the order of the directory; pages are by
/// falling size and depth.
std::vector<int> PageOrder(const std::vector<Fields>& pages) {
  const auto key = [&](int index) {
    const Fields& row = pages[static_cast<std::size_t>(index)];
    return std::pair(-Number(row, "width") * Number(row, "height"), -Number(row, "bits_per_pixel"));
  };
  std::vector<int> order(pages.size());
  std::iota(order.begin(), order.end(), 0);
  if (pages[0].at("path").ends_with(".ico"))
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return key(a) < key(b); });
  std::vector<int> numbers(pages.size());
  for (std::size_t i = 0; i < order.size(); ++i)
    numbers[static_cast<std::size_t>(order[i])] = static_cast<int>(i) + 1;
  return numbers;
}

std::map<std::string, std::vector<Fields>> ReadPages() {
  std::map<std::string, std::vector<Fields>> pages;
  for (const Fields& row : ReadTable("TRUTH-PAGES.tsv")) pages[row.at("path")].push_back(row);
  return pages;
}

/// Area averages of the grey levels on an 8 x 8 grid; the last value is the mean of the page.
std::array<double, 65> Grid(const Loaded& page, bool white) {
  std::array<double, 65> sums{};
  const int width = page.record.Width;
  const int height = page.record.Height;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const Color color = ColorAt(page, x, y);
      double gray = 0.299 * color.red + 0.587 * color.green + 0.114 * color.blue;
      if (white) gray = gray * color.alpha / 255 + 255 - color.alpha;
      sums[64] += gray / (static_cast<double>(width) * height);
      for (int row = y * 8 / height; row <= ((y + 1) * 8 - 1) / height; ++row)
        for (int column = x * 8 / width; column <= ((x + 1) * 8 - 1) / width; ++column) {
          const double high =
              std::min((y + 1) * 8.0 / height, row + 1.0) - std::max(y * 8.0 / height, row + 0.0);
          const double wide =
              std::min((x + 1) * 8.0 / width, column + 1.0) - std::max(x * 8.0 / width, column + 0.0);
          sums[static_cast<std::size_t>(row * 8 + column)] += gray * high * wide;
        }
    }
  return sums;
}

class Corpus : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(CorpusFolder() + "/TRUTH.tsv")) GTEST_SKIP() << "no sample files";
  }
};

/// A value that the file tells; it may leave the resolution free.
void ExpectResolution(const Fields& row, const struct_file_information& info) {
  // The table's tool reads no resolution of this one; its header is that of mire32.pict.
  if (row.at("xdpi").empty() || row.at("path") == "other-formats/mire16.pict") return;
  EXPECT_EQ(info.XResolution, Number(row, "xdpi"));
  EXPECT_EQ(info.YResolution, Number(row, "ydpi"));
}

void ExpectTruth(const Fields& row, const struct_file_information& info) {
  if (!row.at("pages").empty()) {  // a film's may be one or as many as it has frames
    EXPECT_EQ(info.TotalPages, Number(row, "pages"));
  }
  if (row.at("compression") == "vector") {
    // Without a size in pixels; the renderer's 200 dots per inch. A page of PDF has the code nearest to it.
    EXPECT_EQ(info.Format, row.at("kind") == "PDF" ? 150 : Number(row, "format_code"));
    // The table has the frame, which is no picture of the bounds in these.
    if (row.at("path") == "vector/drawing.emf" || row.at("path") == "vector/test-013.emf") return;
    EXPECT_NEAR(info.Width, std::atof(row.at("points_width").c_str()) * 200 / 72, 6);
    EXPECT_NEAR(info.Height, std::atof(row.at("points_height").c_str()) * 200 / 72, 6);
    return;
  }
  if (!row.at("format_code").empty()) {  // two codes differ by what no file tells
    EXPECT_EQ(info.Format, Number(row, "format_code"));
  }
  ExpectResolution(row, info);
  // The table's tool looked no further than the opcode of this one, which holds a JPEG file.
  const bool isJpeg = row.at("path") == "other-formats/pict/qt_mire.pict";
  EXPECT_EQ(info.Compression, isJpeg ? "JPEG" : row.at("compression"));
  EXPECT_EQ(info.ViewPerspective == 0 ? 1 : info.ViewPerspective, Number(row, "orientation"));
  if (row.at("kind") == "ICO" && info.TotalPages > 1) return;  // page 1 isn't the directory's first
  EXPECT_EQ(info.Width, Number(row, "width"));
  EXPECT_EQ(info.Height, Number(row, "height"));
  const bool isFree = row.at("bits_per_pixel").empty() && row.at("kind") == "PICT";
  if (!isFree && (row.at("kind") != "GIF" || info.BitsPerPixel != 8)) {
    EXPECT_EQ(info.BitsPerPixel, Number(row, "bits_per_pixel"));
  }
}

TEST_F(Corpus, EveryFileTellsTheTruth) {
  for (const Fields& row : ReadTable("TRUTH.tsv")) {
    SCOPED_TRACE(row.at("path"));
    const Information info = InformFile(CorpusFolder() + "/" + row.at("path"));
    const Loaded page = LoadFile(CorpusFolder() + "/" + row.at("path"));
    const std::string expected = OurKind(row) ? row.at("expected") : "partial";
    if (expected == "reject") {
      EXPECT_NE(info.error, "");
      EXPECT_NE(page.error, "");
    } else if (expected == "ok") {
      EXPECT_EQ(info.error, "");
      if (info.error.empty()) ExpectTruth(row, info.record);
      EXPECT_EQ(page.error, "");
    }
    if (page.error.empty()) {
      EXPECT_EQ(page.record.Width, info.record.Width);
      EXPECT_EQ(page.record.Height, info.record.Height);
    }
  }
}

TEST_F(Corpus, EveryPageHasItsOwnSizeAndDepth) {
  std::map<std::string, bool> ours;
  for (const Fields& row : ReadTable("TRUTH.tsv")) ours[row.at("path")] = OurKind(row);
  for (const auto& [name, pages] : ReadPages()) {
    if (!ours[name]) continue;
    const std::string path = CorpusFolder() + "/" + name;
    const std::vector<int> numbers = PageOrder(pages);
    for (std::size_t i = 0; i < pages.size(); ++i) {
      const Fields& row = pages[i];
      SCOPED_TRACE(name + ", page " + row.at("page"));
      const Information info = InformFile(path, numbers[i], 0);
      EXPECT_EQ(info.error, "");
      if (!info.error.empty()) continue;
      const bool drawn = row.at("width").empty();
      const double inch = info.record.XResolution / 72.0;
      EXPECT_NEAR(info.record.Width,
                  drawn ? std::atof(row.at("points_width").c_str()) * inch : Number(row, "width"),
                  drawn ? 2 : 0);
      EXPECT_NEAR(info.record.Height,
                  drawn ? std::atof(row.at("points_height").c_str()) * inch : Number(row, "height"),
                  drawn ? 2 : 0);
      if (info.record.Format != 2 && !drawn) {
        EXPECT_EQ(info.record.BitsPerPixel, Number(row, "bits_per_pixel"));
      }
      ExpectResolution(row, info.record);
      const Loaded page = LoadFile(path, numbers[i]);
      if (name != "tiff/text.tif") {
        EXPECT_EQ(page.error, "");
      }
    }
  }
}

TEST_F(Corpus, PixelsAgreeWithOtherReaders) {
  std::map<std::string, Fields> truth;
  for (const Fields& row : ReadTable("TRUTH.tsv")) truth[row.at("path")] = row;
  const auto pages = ReadPages();
  // Seen by one program alone, which takes a fourth byte that is no alpha, or 0 everywhere, for alpha.
  static const std::array opaque = {"other-formats/clipboard.dib", "other-formats/CTC16.TGA",
                                    "other-formats/UTC32.TGA"};
  for (const Fields& row : ReadTable("TRUTH-PIXELS.tsv")) {
    const Fields& file = truth[row.at("path")];
    if (!OurKind(file) || row.at("variant") == "oriented") continue;
    if (row.at("path") == "bmp/pal8os2v2.bmp") continue;  // see SamePictureUnderTwoHeaders
    if (row.at("path") == "other-formats/bitmap-mmr.pdf")
      continue;  // the renderer shows no fax coding in JBIG2
    // Its version says that there is no palette; the readers behind the table take what is left in its place.
    if (row.at("path") == "other-formats/animals.pcx") continue;
    // The readers behind the table leave white at 248; it is the picture of mire32.pict.
    if (row.at("path") == "other-formats/mire16.pict") continue;
    // The readers behind the table take its ink for light; it is the picture of
    // openjpeg-lossless-bgra-u8.jp2.
    if (row.at("path") == "other-formats/kakadu-lossless-cmyk-u8-prog1-layers1-res6.jp2") continue;
    const bool white = row.at("variant") == "white";
    if (white && std::find(opaque.begin(), opaque.end(), row.at("path")) != opaque.end()) continue;
    const auto several = pages.find(row.at("path"));
    const int number = several == pages.end() ? 1 : PageOrder(several->second)[0];
    for (const int bits : {0, 8}) {
      if (bits == 8 && file.at("bits_per_pixel") != "1") continue;
      SCOPED_TRACE(row.at("path") + " " + row.at("variant") + " bits " + std::to_string(bits));
      const Loaded page = LoadFile(CorpusFolder() + "/" + row.at("path"), number, bits);
      EXPECT_EQ(page.error, "");
      if (!page.error.empty()) continue;
      if (bits == 8) {  // or with alpha
        EXPECT_TRUE(page.record.BitsPerPixel == 8 || page.record.BitsPerPixel == 32);
      }
      const auto grid = Grid(page, white);
      EXPECT_NEAR(grid[64], std::atof(row.at("mean_gray").c_str()), 3);
      const bool rough = file.at("kind") == "JPEG" || page.record.Width < 16 || page.record.Height < 16 ||
                         file.at("note").find("CMYK") != std::string::npos;
      std::istringstream cells(row.at("grid8x8"));
      for (std::size_t i = 0; i < 64; ++i) {
        double expected = 0;
        cells >> expected;
        EXPECT_NEAR(grid[i], expected,
                    file.at("compression") == "vector" ? 15
                    : rough                            ? 12
                                                       : 6)
            << "cell " << i;
      }
    }
  }
}

/// The share of pixels in which two pages differ by more than near in a colour.
double Difference(const std::string& first, const std::string& second, int near = 0) {
  const Loaded a = LoadFile(CorpusFolder() + "/" + first);
  const Loaded b = LoadFile(CorpusFolder() + "/" + second);
  EXPECT_EQ(a.error + b.error, "");
  EXPECT_EQ(a.record.Width, b.record.Width);
  EXPECT_EQ(a.record.Height, b.record.Height);
  if (a.pixels == nullptr || b.pixels == nullptr || a.record.Width != b.record.Width) return 1;
  int different = 0;
  for (int y = 0; y < a.record.Height; ++y)
    for (int x = 0; x < a.record.Width; ++x) {
      const Color p = ColorAt(a, x, y);
      const Color q = ColorAt(b, x, y);
      const int most =
          std::max({std::abs(p.red - q.red), std::abs(p.green - q.green), std::abs(p.blue - q.blue)});
      different += most > near ? 1 : 0;
    }
  return different / (static_cast<double>(a.record.Width) * a.record.Height);
}

/// A file in the Exif kind of JPEG, as this library writes it.
Bytes ExifJpeg() {
  const TempFolder folder;
  Loaded page = LoadMemory(MakeJpeg(16, 16, 3, false, [](int x, int, int) { return std::uint8_t(x * 9); }));
  LEADTOOLS::SaveBitmap(folder.Path("a.jpg").c_str(), &page.record, 98, 0, 0, nullptr);
  return ReadAll(folder.Path("a.jpg"));
}

/// Those that need no module. Kinds of which there is no sample are made.
std::set<int> CodesReadInProcess() {
  std::set<int> codes;
  for (const Fields& row : ReadTable("TRUTH.tsv"))
    if (ModuleOf(row) == "in" && OurKind(row) && row.at("expected") == "ok")
      codes.insert(LoadFile(CorpusFolder() + "/" + row.at("path")).info.Format);
  std::vector<Bytes> made = {ExifJpeg(), ExifJpeg(), MakeDrHalo().bytes};
  const std::string exif = "Exif";
  *std::search(made[1].begin(), made[1].end(), exif.begin(), exif.end()) = 'x';
  made.push_back(MakeJpeg(16, 16, 3, false, [](int, int, int) { return std::uint8_t{90}; }, 0, 0,
                          {'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0}));
  for (const int compression : {COMPRESSION_LZW, COMPRESSION_PACKBITS})
    made.push_back(MakeTiff({{"ink", 8, 4, PHOTOMETRIC_SEPARATED, compression}}));
  for (const int compression : {COMPRESSION_NONE, COMPRESSION_PACKBITS})
    made.push_back(MakeTiff({{"ycc", 8, 3, PHOTOMETRIC_YCBCR, compression}}));
  made.push_back(MakeTiledCals(RandomFaxRows(300, 60, 3), 300, {64, {}}));
  for (const RasterFile& file : MakeRasterFiles()) made.push_back(file.bytes);
  for (const Bytes& file : made) {
    const Loaded page = LoadMemory(file);
    EXPECT_EQ(page.error, "");
    codes.insert(page.info.Format);
  }
  codes.erase(0);
  return codes;
}

/// What a module of the helper adds to the codes that are read.
struct ModuleCodes {
  const char* module;
  std::set<int> codes;
};
const std::vector<ModuleCodes>& CodesOfModules() {
  static const std::vector<ModuleCodes> modules = {
      {"jpeg2000", {163, 164, 166}},
      {"jbig", {115}},
      {"pdf", {146, 147, 148, 149, 150, 151, 152}},
      {"dicom", {89, 90, 125, 126, 127, 128}},
      {"flashpix", {80, 81, 82, 83}},
      {"wmf", {15, 64}},
      {"eps", {16}},
      {"emf", {116}},
      {"wpg", {54}},
      {"pict", {56}},
      // 10 and 11: lossless JPEG, which the tables count here and this process reads
      {"media", {10, 11, 21, 57, 59, 76, 111, 112, 243, 246}},
  };
  return modules;
}

/// A file of the corpus as the only strip of a TIFF file.
Bytes InTiff(const Bytes& codestream, int width, int height) {
  const TempFolder folder;
  TIFF* tiff = TIFFOpen(folder.Path("a.tif").c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_JP2000);
  TIFFWriteRawStrip(tiff, 0, const_cast<std::uint8_t*>(codestream.data()), std::ssize(codestream));
  TIFFClose(tiff);
  return ReadAll(folder.Path("a.tif"));
}

Bytes InIffList(const Bytes& form) {
  const std::size_t size = form.size() + 4;
  Bytes list = {
      'L', 'I', 'S', 'T', 0, 0, static_cast<std::uint8_t>(size >> 8), static_cast<std::uint8_t>(size),
      'I', 'L', 'B', 'M'};
  list.insert(list.end(), form.begin(), form.end());
  return list;
}

Bytes JpegInPdf(int lumaRows) {
  const auto gray = [](int x, int, int) { return static_cast<std::uint8_t>(x * 5); };
  return MakePdf({{ImageEntries(32, 16, "/BitsPerComponent 8 /ColorSpace /DeviceRGB /Filter /DCTDecode"),
                   MakeJpeg(32, 16, 3, false, gray, 0, 0, {}, lumaRows)}});
}

Bytes StandardJpeg() {
  return MakeJpeg(
      64, 64, 3, false, [](int, int, int) { return std::uint8_t{90}; }, 0, 0, {}, 1, 50);
}

// Of 115; 130 and 131 name the coding of 50.
TEST_F(Corpus, CodesThatAreRead) {
  std::set<int> codes = CodesReadInProcess();
  std::string list;
  for (const int code : codes) list += std::to_string(code) + " ";
  EXPECT_EQ(codes.size(), 66U) << list;
  for (const ModuleCodes& module : CodesOfModules()) codes.insert(module.codes.begin(), module.codes.end());
  EXPECT_EQ(codes.size(), 100U);
}

// Neither less nor more than the table says; the corpus has no sample of some of them. A module that isn't
// installed adds nothing.
TEST_F(Corpus, CodesThatModulesAdd) {
  std::map<std::string, std::set<int>> read;
  const auto add = [&read](const std::string& module, const Loaded& page) {
    EXPECT_EQ(page.error, "");
    if (page.error.empty() && page.info.Format != 0) read[module].insert(page.info.Format);
  };
  for (const Fields& row : ReadTable("TRUTH.tsv")) {
    SCOPED_TRACE(row.at("path"));
    if (ModuleOf(row) == "in" || !OurKind(row) || row.at("expected") != "ok") continue;
    add(ModuleOf(row), LoadFile(CorpusFolder() + "/" + row.at("path")));
  }
  const auto installed = [](const char* module) { return imaging::helper_client::HasModule(module); };
  if (installed("jpeg2000"))
    add("jpeg2000", LoadMemory(InTiff(ReadAll(CorpusFolder() + "/other-formats/jp2/input.j2k"), 70, 46)));
  // In one colour, and in JPEG of the standard's quality.
  const FlashpixTile tile = {2, StandardJpeg(), {0, 0x22, 1, 0}};
  if (installed("flashpix"))
    for (const FlashpixTile& each : {FlashpixTile{1, {}, {}}, tile})
      add("flashpix", LoadMemory(MakeFlashpix({.tiles = {each, each}})));
  if (installed("wmf")) add("wmf", LoadMemory(MakeEps(ReadAll(CorpusFolder() + "/vector/clock.wmf"), true)));
  if (installed("eps")) add("eps", LoadFile(CorpusFolder() + "/other-formats/eps/petersen.eps"));
  if (installed("wpg")) add("wpg", LoadFile(CorpusFolder() + "/vector/input.wpg"));
  if (installed("pdf"))
    for (const int lumaRows : {1, 2}) add("pdf", LoadMemory(JpegInPdf(lumaRows)));
  if (installed("media"))
    add("media", LoadMemory(InIffList(ReadAll(CorpusFolder() + "/other-formats/iff/owl.iff"))));
  std::size_t count = 0;
  for (const ModuleCodes& module : CodesOfModules()) {
    SCOPED_TRACE(module.module);
    std::set<int> expected;
    if (installed(module.module)) expected = module.codes;
    EXPECT_EQ(read[module.module], expected);
    count += read[module.module].size();
    read.erase(module.module);
  }
  EXPECT_TRUE(read.empty()) << read.begin()->first << " isn't in the table";
  RecordProperty("codes", std::to_string(count));
}

// The readers behind the table take the colours of pal8os2v2 for three bytes each, as in OS/2 1.x, and refuse
// the Huffman coded file. They are pictures of the same scene as files that everybody reads.
TEST_F(Corpus, SamePictureUnderTwoHeaders) {
  EXPECT_EQ(Difference("bmp/pal8os2v2.bmp", "bmp/pal8.bmp"), 0);
  EXPECT_EQ(Difference("bmp/rgb24rle24.bmp", "bmp/rgb24.bmp", 50), 0);  // in few colours
  EXPECT_EQ(Difference("bmp/rgb24png.bmp", "bmp/rgb24.bmp"), 0);
  EXPECT_LT(Difference("bmp/pal1huff.bmp", "bmp/pal1wb.bmp"), 0.01);
  // Which the tables leave open, as many a reader can't show the coding.
  if (!imaging::helper_client::HasModule("dicom")) return;
  EXPECT_EQ(Difference("dicom/MR_small_jp2klossless.dcm", "dicom/MR_small_implicit.dcm"), 0);
  EXPECT_LT(Difference("dicom/SC_rgb_gdcm_KY.dcm", "dicom/SC_rgb_jpeg_dcmtk.dcm", 16), 0.02);
}

}  // namespace
}  // namespace codec_test
