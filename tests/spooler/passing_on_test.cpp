// Pages whose files hold data that a PDF can hold too: it goes into the document as it is.

#include <tiffio.h>

#include <algorithm>
#include <cstring>

#include "imaging/ltwrap.h"
#include "imaging/pixels/storage.h"
#include "platform/spooler/borderless.h"
#include "print_fixture.h"

namespace {

constexpr int kWidth = 100;
constexpr int kHeight = 90;

struct Form {
  const char* name;
  const char* list;  ///< what pdfimages has to tell: colour, components, bits and coding
  int compression = 0;
  int photometric = 0;
  int rowsPerStrip = kHeight;
  int orientation = 1;
  bool changed = false;  ///< after the load
  bool copied = true;    ///< the bytes are the file's own
};
constexpr int kJpegFile = -1;
const Form kForms[] = {
    {"file", "rgb     3   8  jpeg", kJpegFile},
    {"changed file", "rgb     3   8  jpeg", kJpegFile, 0, kHeight, 1, true, false},
    {"one strip", "rgb     3   8  jpeg", COMPRESSION_JPEG, PHOTOMETRIC_YCBCR},
    {"strips, the last one cut", "rgb     3   8  jpeg", COMPRESSION_JPEG, PHOTOMETRIC_YCBCR, 32},
    {"strips of red, green and blue", "rgb     3   8  jpeg", COMPRESSION_JPEG, PHOTOMETRIC_RGB, 16},
    {"grey strips", "gray    1   8  jpeg", COMPRESSION_JPEG, PHOTOMETRIC_MINISBLACK, 8},
    {"turned", "rgb     3   8  jpeg", COMPRESSION_JPEG, PHOTOMETRIC_YCBCR, 32, 3},
    {"lossless colour", "rgb     3   8  image", COMPRESSION_LZW, PHOTOMETRIC_RGB, 16, 1, false, false},
    {"fax", "gray    1   1  ccitt", COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE},
    {"fax with white as 1", "gray    1   1  ccitt", COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISBLACK},
    {"strips of fax", "gray    1   1  ccitt", COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE, 16, 1, false,
     false},
};

/// Soft colours, or for one bit a triangle.
std::uint8_t Sample(int x, int y, int channel) {
  return static_cast<std::uint8_t>(channel == 0 ? 2 * x : channel == 1 ? 2 * y : 200 - x - y / 2);
}

void WriteTiff(const std::string& path, const Form& form) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  const bool fax = form.compression == COMPRESSION_CCITTFAX4;
  const int samples = form.photometric == PHOTOMETRIC_RGB || form.photometric == PHOTOMETRIC_YCBCR ? 3 : 1;
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kHeight);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, fax ? 1 : 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, form.photometric);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, form.orientation);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, form.compression);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, form.rowsPerStrip);
  if (form.photometric == PHOTOMETRIC_YCBCR) TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  std::vector<std::uint8_t> row(kWidth * 3);
  for (int y = 0; y < kHeight; ++y) {
    std::fill(row.begin(), row.end(), std::uint8_t{0});
    for (int x = 0; x < kWidth; ++x) {
      const auto at = static_cast<std::size_t>(x);
      if (fax && x < y) row[at / 8] |= static_cast<std::uint8_t>(0x80 >> x % 8);
      for (int c = 0; c < samples && !fax; ++c)
        row[at * static_cast<std::size_t>(samples) + static_cast<std::size_t>(c)] = Sample(x, y, c);
    }
    TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0);
  }
  TIFFClose(tiff);
}

std::string FirstStrip(const std::string& path) {
  TIFF* tiff = TIFFOpen(path.c_str(), "r");
  std::string bytes(static_cast<std::size_t>(TIFFRawStripSize(tiff, 0)), '\0');
  TIFFReadRawStrip(tiff, 0, bytes.data(), static_cast<tmsize_t>(bytes.size()));
  TIFFClose(tiff);
  return bytes;
}

class Loaded {
 public:
  explicit Loaded(const std::string& path) {
    LEADTOOLS::LoadBitmapA(path.c_str(), &m_bitmap, 0, 1, nullptr, nullptr);
  }
  ~Loaded() { LEADTOOLS::FreeBitmap(&m_bitmap); }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  struct_LEAD_Bitmap* Get() { return &m_bitmap; }
  int Red(int x, int y) const {
    const imaging::PixelStorage& pixels = *m_bitmap.pStorage;
    const std::uint8_t* row = pixels.HeldRow(y);
    if (pixels.Bits() >= 24) return row[x * pixels.Bits() / 8 + (m_bitmap.Order != 0 ? 2 : 0)];
    return pixels.Palette()[pixels.Bits() == 1 ? row[x / 8] >> (7 - x % 8) & 1 : row[x]].rgbRed;
  }

 private:
  struct_LEAD_Bitmap m_bitmap{};
};

class PassingOn : public PrintTest {
 protected:
  std::string Path(const char* name) const { return (m_folder / name).string(); }
  void Write(const Form& form) const {
    if (form.compression != kJpegFile) {
      WriteTiff(Path("page"), form);
      return;
    }
    WriteTiff(Path("soft"), {"", "", COMPRESSION_LZW, PHOTOMETRIC_RGB});
    Loaded soft(Path("soft"));
    LEADTOOLS::SaveBitmap(Path("page").c_str(), soft.Get(), 98, 0, 0, nullptr);
  }
  void Print(struct_LEAD_Bitmap* bitmap) const {
    const HDC dc = CreateDCA(nullptr, "Uno", Target().c_str(), nullptr);
    const DOCINFOA info{sizeof info, "Prova", nullptr, nullptr, 0};
    EXPECT_GT(StartDocA(dc, &info), 0);
    EXPECT_GT(StartPage(dc), 0);
    EXPECT_EQ(LEADTOOLS::PrintBitmapExt(dc, bitmap, 1, 1, 0, 0, 0), dc);
    EXPECT_GT(EndPage(dc), 0);
    EXPECT_GT(EndDoc(dc), 0);
    DeleteDC(dc);
  }
  std::string Extracted(const char* option, const char* ending) const {
    Output(std::string("pdfimages ") + option + " " + Target() + " " + Path("image"));
    return Path("image-000.") + ending;
  }
};

TEST_F(PassingOn, CodedDataGoesIntoTheDocumentAsItIs) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  for (const Form& form : kForms) {
    SCOPED_TRACE(form.name);
    Write(form);
    Loaded page(Path("page"));
    if (form.changed) *page.Get()->pStorage->HeldRow(0) = 0;
    Print(page.Get());
    const std::string list = Output("pdfimages -list " + Target());
    EXPECT_NE(list.find(form.list), std::string::npos) << list;
    const bool fax = form.compression == COMPRESSION_CCITTFAX4;
    const std::string coded = Read(Extracted(fax ? "-ccitt" : "-j", fax ? "ccitt" : "jpg"));
    const std::string own = form.compression == kJpegFile ? Read(Path("page")) : FirstStrip(Path("page"));
    if (form.compression != COMPRESSION_JPEG)
      EXPECT_EQ(coded == own, form.copied);
    else  // behind the tables that the strips share, and the head, stand the strip's coded bytes
      EXPECT_EQ(coded.find(own.substr(own.size() - 20, 18)) != std::string::npos, form.copied);
    // Where strips meet, colours are smoothed over both of them now.
    const Loaded shown(Extracted("-png", "png"));
    for (int y = 0; y < kHeight; y += 7)
      for (int x = 0; x < kWidth; x += 9)
        ASSERT_NEAR(shown.Red(x, y), page.Red(x, y), form.copied ? 3 : 12) << x << ", " << y;
  }
}

TEST_F(PassingOn, CodedDataThatLieTurnedAreSeenUpright) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  constexpr int kDpi = 25;
  for (int orientation = 1; orientation <= 8; ++orientation) {
    WriteTiff(Path("page"), {"", "", COMPRESSION_JPEG, PHOTOMETRIC_YCBCR, kHeight, orientation});
    Loaded page(Path("page"));
    Loaded upright(Path("page"));
    LEADTOOLS::ChangeBitmapViewPerspective(nullptr, upright.Get(), 0);
    const SIZE size{upright.Get()->Width, upright.Get()->Height};
    DEVMODE sheet{};
    sheet.dmSize = sizeof sheet;
    sheet.dmFields = DM_PAPERWIDTH | DM_PAPERLENGTH | DM_FORMNAME;
    sheet.dmPaperWidth = static_cast<short>(size.cx * 254 / kDpi);
    sheet.dmPaperLength = static_cast<short>(size.cy * 254 / kDpi);
    std::memcpy(sheet.dmFormName, kFormBorderless, sizeof kFormBorderless);
    const HDC dc = CreateDCA(nullptr, nullptr, Target().c_str(), &sheet);
    const DOCINFOA info{sizeof info, "Prova", nullptr, nullptr, 0};
    EXPECT_GT(StartDocA(dc, &info), 0);
    EXPECT_GT(StartPage(dc), 0);
    LEADTOOLS::PrintBitmapExt(dc, page.Get(), 0, 0, GetDeviceCaps(dc, HORZRES), GetDeviceCaps(dc, VERTRES),
                              0);
    EXPECT_GT(EndPage(dc), 0);
    EXPECT_GT(EndDoc(dc), 0);
    DeleteDC(dc);
    const Picture shown = Render(Target(), {0, 0, size.cx, size.cy}, kDpi, 1);
    for (int y = 5; y < size.cy; y += 20)
      for (int x = 5; x < size.cx; x += 20)
        ASSERT_NEAR(shown.rgb[static_cast<std::size_t>((y * shown.width + x) * 3)], upright.Red(x, y), 8)
            << orientation << ": " << x << ", " << y;
  }
}

TEST_F(PassingOn, AFileThatHasChangedIsNotRead) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  Write(kForms[0]);
  Loaded page(Path("page"));
  std::ofstream(Path("page"), std::ios::app) << "more";
  Print(page.Get());
  EXPECT_EQ(Read(Extracted("-j", "jpg")).find("more"), std::string::npos);
  const Loaded shown(Extracted("-png", "png"));
  EXPECT_NEAR(shown.Red(50, 50), page.Red(50, 50), 12);
}

}  // namespace
