#include <gtest/gtest.h>

#include <array>

#include "imaging/core/exception.h"
#include "imaging/helper/place.h"
#include "tests/helper/damage.h"
#include "tests/helper/processes.h"
#include "tests/imaging/codec_files.h"
#include "tests/imaging/fax_files.h"
#include "tests/imaging/pdf_files.h"

namespace codec_test {
namespace {

std::vector<Bytes> Inverted(std::vector<Bytes> rows) {
  for (Bytes& row : rows)
    for (std::uint8_t& byte : row) byte = static_cast<std::uint8_t>(~byte);
  return rows;
}

struct FaxCase {
  const char* parameters;
  const char* more;
  int compression;
  int options;
  int code;
  const char* name;
  bool inverted = false;
};
constexpr std::array kFaxCases = {
    FaxCase{"/K -1", "", COMPRESSION_CCITTFAX4, 0, 149, "CCITT G4"},
    FaxCase{"/K 0 /EndOfLine true", "", COMPRESSION_CCITTFAX3, 0, 147, "CCITT G3 1D"},
    FaxCase{"/K 4 /EndOfLine true", "", COMPRESSION_CCITTFAX3, GROUP3OPT_2DENCODING, 148, "CCITT G3 2D"},
    FaxCase{"/K 0 /EncodedByteAlign true", "", COMPRESSION_CCITTRLE, 0, 147, "CCITT G3 1D"},
    FaxCase{"/K -1 /BlackIs1 true", "", COMPRESSION_CCITTFAX4, 0, 149, "CCITT G4", true},
    FaxCase{"/K -1", "/Decode [1 0]", COMPRESSION_CCITTFAX4, 0, 149, "CCITT G4", true},
    FaxCase{"/K -1 /BlackIs1 true", "/Decode [1 0]", COMPRESSION_CCITTFAX4, 0, 149, "CCITT G4"},
    FaxCase{"/K -1", "/ColorSpace [/Indexed /DeviceRGB 1 <FFFFFF000000>]", COMPRESSION_CCITTFAX4, 0, 149,
            "CCITT G4", true},
    FaxCase{"/K -1", "/ImageMask true", COMPRESSION_CCITTFAX4, 0, 149, "CCITT G4"},
};

PdfPage FaxPage(const FaxCase& form, const std::vector<Bytes>& rows, int width) {
  const std::string more = form.more;
  const std::string space =
      more.find("ColorSpace") == std::string::npos && more.find("Mask") == std::string::npos
          ? " /ColorSpace /DeviceGray"
          : "";
  return {ImageEntries(width, static_cast<int>(rows.size()),
                       "/BitsPerComponent 1 /Filter /CCITTFaxDecode /DecodeParms << /Columns " +
                           std::to_string(width) + " " + form.parameters + " >> " + more + space),
          EncodeFax(rows, width, form.compression, form.options)};
}

TEST(Pdf, FaxPagesAreTheirOwnDataBitForBit) {
  constexpr int kWidth = 1728;
  std::vector<PdfPage> pages;
  std::vector<std::vector<Bytes>> truth;
  for (const FaxCase& form : kFaxCases) {
    truth.push_back(RandomFaxRows(kWidth, 120, static_cast<unsigned>(pages.size() + 1)));
    pages.push_back(FaxPage(form, truth.back(), kWidth));
    if (form.inverted) truth.back() = Inverted(truth.back());
  }
  const Bytes file = MakePdf(pages);
  for (std::size_t i = pages.size(); i-- > 0;) {
    SCOPED_TRACE(std::string(kFaxCases[i].parameters) + kFaxCases[i].more);
    const Loaded page = LoadMemory(file, static_cast<int>(i) + 1);
    EXPECT_EQ(FaxDifference(page, truth[i]), "");
    EXPECT_EQ(page.info.Format, kFaxCases[i].code);
    EXPECT_STREQ(page.info.Compression, kFaxCases[i].name);
    EXPECT_EQ(page.info.XResolution, 1728);
    EXPECT_EQ(page.info.YResolution, 240);
    EXPECT_EQ(page.info.BitsPerPixel, 1);
  }
  EXPECT_EQ(InformMemory(file).record.TotalPages, static_cast<int>(pages.size()));
}

struct SampleCase {
  const char* entries;
  int bits;
  int memoryBits;
  Bytes data;  ///< of 4 by 2 pixels
  Color first;
  Color last;
};

TEST(Pdf, SamplesOfEveryDepthAndSpace) {
  const std::vector<SampleCase> cases = {
      {"/ColorSpace /DeviceGray /BitsPerComponent 1",
       1,
       1,
       {0x90, 0x10},
       {255, 255, 255, 255},
       {255, 255, 255, 255}},
      {"/ColorSpace /DeviceGray /BitsPerComponent 1 /Decode [1 0]",
       1,
       1,
       {0x90, 0x10},
       {0, 0, 0, 255},
       {0, 0, 0, 255}},
      {"/ColorSpace /DeviceGray /BitsPerComponent 2",
       2,
       8,
       {0x40, 0x02},
       {85, 85, 85, 255},
       {170, 170, 170, 255}},
      {"/ColorSpace /DeviceGray /BitsPerComponent 4",
       4,
       4,
       {0x30, 0, 0, 0x0f},
       {51, 51, 51, 255},
       {255, 255, 255, 255}},
      {"/ColorSpace /DeviceGray /BitsPerComponent 8",
       8,
       8,
       {7, 0, 0, 0, 0, 0, 0, 9},
       {7, 7, 7, 255},
       {9, 9, 9, 255}},
      {"/ColorSpace /DeviceGray /BitsPerComponent 16",
       16,
       8,
       {7, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9, 255},
       {7, 7, 7, 255},
       {9, 9, 9, 255}},
      {"/ColorSpace [/Indexed /DeviceRGB 2 <010203040506070809>] /BitsPerComponent 4",
       4,
       4,
       {0x10, 0, 0, 0x02},
       {4, 5, 6, 255},
       {7, 8, 9, 255}},
      {"/ColorSpace [/Indexed /DeviceCMYK 1 <00FF00000000007F>] /BitsPerComponent 2",
       2,
       8,
       {0x00, 0x01},
       {255, 0, 255, 255},
       {128, 128, 128, 255}},
      {"/ColorSpace /DeviceRGB /BitsPerComponent 8",
       24,
       24,
       {1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 5, 6},
       {1, 2, 3, 255},
       {4, 5, 6, 255}},
      {"/ColorSpace /DeviceCMYK /BitsPerComponent 8",
       32,
       24,
       {0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 127},
       {255, 0, 255, 255},
       {128, 128, 128, 255}},
  };
  for (const SampleCase& form : cases) {
    SCOPED_TRACE(form.entries);
    const Loaded page = LoadMemory(MakePdf({{ImageEntries(4, 2, form.entries), form.data}}));
    EXPECT_EQ(page.error, "");
    if (!page.error.empty()) continue;
    EXPECT_EQ(page.info.Format, 146);
    EXPECT_STREQ(page.info.Compression, "None");
    EXPECT_EQ(page.info.BitsPerPixel, form.bits);
    EXPECT_EQ(page.record.BitsPerPixel, form.memoryBits);
    EXPECT_EQ(ColorAt(page, 0, 0), form.first);
    EXPECT_EQ(ColorAt(page, 3, 1), form.last);
  }
}

TEST(Pdf, JpegPagesAreTheSameAsTheFile) {
  const auto sample = [](int x, int y, int c) { return static_cast<std::uint8_t>(x * 5 + y * 3 + c * 50); };
  for (const int components : {1, 3}) {
    const Bytes jpeg = MakeJpeg(40, 24, components, false, sample);
    std::string hex;
    for (const std::uint8_t byte : jpeg)
      for (const int digit : {byte >> 4, byte & 15}) hex += "0123456789ABCDEF"[digit];
    hex += '>';
    const std::string space = components == 1 ? "/ColorSpace /DeviceGray" : "/ColorSpace /DeviceRGB";
    const Loaded page = LoadMemory(
        MakePdf({{ImageEntries(40, 24, "/BitsPerComponent 8 /Filter [/ASCIIHexDecode /DCTDecode] " + space),
                  Bytes(hex.begin(), hex.end())}}));
    const Loaded alone = LoadMemory(jpeg);
    ASSERT_EQ(page.error, "");
    EXPECT_GE(page.info.Format, 150);
    EXPECT_LE(page.info.Format, 152);
    for (int y = 0; y < 24; ++y)
      for (int x = 0; x < 40; ++x) ASSERT_EQ(ColorAt(page, x, y), ColorAt(alone, x, y));
  }
}

struct PlaceCase {
  const char* contents;
  const char* entries;
  int perspective;  ///< 0: the page is no raster
};

TEST(Pdf, WhatIsARasterPageAndHowItIsTurned) {
  constexpr const char* kStraight = "q 72 0 0 36 0 0 cm /I Do Q";
  constexpr std::array kCases = {
      PlaceCase{kStraight, "", 1},
      PlaceCase{kStraight, "/Rotate 90", 6},
      PlaceCase{kStraight, "/Rotate 180", 3},
      PlaceCase{kStraight, "/Rotate -90", 8},
      PlaceCase{"-72 0 0 36 72 0 cm /I Do", "", 2},
      PlaceCase{"72 0 0 -36 0 36 cm /I Do", "", 4},
      PlaceCase{"0 36 -72 0 72 0 cm /I Do", "", 8},
      PlaceCase{"0 -36 72 0 0 36 cm /I Do", "", 6},
      PlaceCase{"0 36 72 0 0 0 cm /I Do", "", 7},
      PlaceCase{"0 -36 -72 0 72 36 cm /I Do", "", 5},
      PlaceCase{"0 -36 -72 0 72 36 cm /I Do", "/Rotate 90", 2},
      PlaceCase{"0 0 72 36 re W n q 72 0 0 36 0 0 cm /I Do Q BT 3 Tr /F 9 Tf (text) Tj ET", "", 1},
      PlaceCase{"q 72 0 0 36 0 0 cm /I Do Q BT /F 9 Tf (text) Tj ET", "", 0},
      PlaceCase{"q 72 0 0 36 0 0 cm /I Do /I Do Q", "", 0},
      PlaceCase{"q 60 0 0 36 0 0 cm /I Do Q", "", 0},
      PlaceCase{"q 72 9 0 36 0 0 cm /I Do Q", "", 0},
      PlaceCase{"0 0 9 9 re W n q 72 0 0 36 0 0 cm /I Do Q", "", 0},
      PlaceCase{"q 72 0 0 36 0 0 cm /I Do Q 0 0 72 36 re f", "", 0},
      PlaceCase{kStraight, "/CropBox [9 9 30 30]", 0},
      PlaceCase{"", "", 0},
  };
  const Bytes data = {1, 2, 3, 4, 5, 6, 7, 8};
  std::vector<PdfPage> pages;
  for (const PlaceCase& place : kCases)
    pages.push_back({ImageEntries(4, 2, "/ColorSpace /DeviceGray /BitsPerComponent 8"), data, place.contents,
                     place.entries});
  const Bytes file = MakePdf(pages);
  for (std::size_t i = 0; i < kCases.size(); ++i) {
    SCOPED_TRACE(std::string(kCases[i].contents) + " " + kCases[i].entries);
    const Information info = InformMemory(file, static_cast<int>(i) + 1);
    if (kCases[i].perspective == 0) {
      EXPECT_NE(info.record.Width, 4);
    } else {
      EXPECT_EQ(info.error, "");
      EXPECT_EQ(info.record.Width, 4);
      EXPECT_EQ(std::max(info.record.ViewPerspective, 1), kCases[i].perspective);
    }
  }
}

/// Red in the middle half of a page of 72 by 36 points.
PdfPage DrawnPage(const std::string& entries = {}) {
  return {ImageEntries(1, 1, "/ColorSpace /DeviceGray /BitsPerComponent 8"),
          {0},
          "1 0 0 rg 18 9 36 18 re f",
          entries};
}

TEST(Pdf, OtherPagesAreDrawnOnWhite) {
  if (!imaging::helper_client::HasModule("pdfdraw")) GTEST_SKIP() << "the renderer isn't installed";
  const Bytes file = MakePdf({DrawnPage(), DrawnPage("/Rotate 90"), DrawnPage("/CropBox [18 9 54 27]")});
  struct Case {
    int resolution, page, width, height, dots;
  };
  constexpr Case kCases[] = {{0, 1, 200, 100, 200},
                             {0, 2, 100, 200, 200},
                             {0, 3, 100, 50, 200},
                             {72, 1, 72, 36, 72},
                             {600, 3, 300, 150, 600}};
  for (const Case& wanted : kCases) {
    SCOPED_TRACE(std::to_string(wanted.page) + " at " + std::to_string(wanted.resolution));
    LEADTOOLS::SetDrawnResolution(wanted.resolution);
    const Loaded page = LoadMemory(file, wanted.page);
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(page.info.Format, 150);
    EXPECT_STREQ(page.info.Compression, "PDF");
    EXPECT_EQ(page.record.BitsPerPixel, 24);
    EXPECT_EQ(page.record.Width, wanted.width);
    EXPECT_EQ(page.record.Height, wanted.height);
    EXPECT_EQ(page.record.XResolution, wanted.dots);
    EXPECT_EQ(ColorAt(page, wanted.width / 2, wanted.height / 2), (Color{255, 0, 0, 255}));
    EXPECT_EQ(ColorAt(page, 1, 1), wanted.page == 3 ? (Color{255, 0, 0, 255}) : (Color{255, 255, 255, 255}));
  }
  LEADTOOLS::SetDrawnResolution(0);
}

// A small picture of a page doesn't cost a large one.
TEST(Pdf, PagesAreDrawnSmallForSmallPictures) {
  if (!imaging::helper_client::HasModule("pdfdraw")) GTEST_SKIP() << "the renderer isn't installed";
  const TempFolder folder;
  std::string path = folder.Path("a.pdf");
  WriteAll(path, MakePdf({DrawnPage(), FaxPage(kFaxCases[0], RandomFaxRows(400, 60, 9), 400)}));
  void* list = nullptr;
  LEADTOOLS::LoadBitmapList(path.data(), &list, 0, 1, nullptr, nullptr);
  LEADTOOLS::PrepareBitmapListPages(list, {40, nullptr, nullptr});
  struct_LEAD_Bitmap page{};
  LEADTOOLS::GetBitmapListItem(list, 0, &page);
  EXPECT_EQ(page.Width, 80);
  LEADTOOLS::GetBitmapListItem(list, 1, &page);
  EXPECT_EQ(page.Width, 400) << "a picture of its own";
  LEADTOOLS::DestroyBitmapList(list);

  const std::string before = Children();
  Bytes file = MakePdf(std::vector<PdfPage>(3, DrawnPage()));
  std::vector<std::string> taken;  // widths and who was there to read
  LEADTOOLS::LoadSmallPagesMemory(
      reinterpret_cast<char*>(file.data()), std::ssize(file), 40,
      [](auto* small, void* all) {
        static_cast<std::vector<std::string>*>(all)->push_back(std::to_string(small->Width) + Children());
        LEADTOOLS::FreeBitmap(small);
      },
      &taken);
  ASSERT_EQ(taken.size(), 3U);
  EXPECT_EQ(taken[0].substr(0, 2), "80");
  EXPECT_EQ(taken[1], taken[0]) << "a process for each page";
  EXPECT_EQ(taken[2], taken[0]);
  EXPECT_EQ(Children(), before);
}

TEST(Pdf, DamagedDrawnFiles) {
  const Bytes whole = MakePdf({DrawnPage()});
  ExpectPageOrError(whole, {1 + whole.size() / 30, 0, whole.size() * 8, whole.size() / 10});
}

TEST(Pdf, DamagedFiles) {
  const auto rows = RandomFaxRows(400, 60, 9);
  const Bytes whole = MakePdf({FaxPage(kFaxCases[0], rows, 400)});
  ExpectPageOrError(whole, {1 + whole.size() / 60, 0, whole.size() * 8, whole.size() / 20});
}

}  // namespace
}  // namespace codec_test
