// The coder against libtiff's decoder: what goes in comes out, in no more bytes than libtiff takes.

#include <gtest/gtest.h>
#include <tiffio.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "platform/spooler/detail/fax_encoder.h"

namespace {

using Rows = std::vector<std::vector<std::uint8_t>>;

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, CloseTiff>;

class TemporaryName {
 public:
  TemporaryName() { close(mkstemp(m_name)); }
  ~TemporaryName() { unlink(m_name); }
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;
  const char* Get() const { return m_name; }

 private:
  char m_name[32] = "/tmp/fax-XXXXXX";
};

void SetFields(TIFF* tiff, int width, std::size_t height, int photometric) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<int>(height));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<int>(height));
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
}

/// libtiff's fax black is a 1 with the photometric "min is white".
Rows Decode(std::span<const std::uint8_t> coded, int width, std::size_t height) {
  const TemporaryName name;
  {
    const Tiff tiff(TIFFOpen(name.Get(), "w"));
    SetFields(tiff.get(), width, height, PHOTOMETRIC_MINISWHITE);
    std::vector<std::uint8_t> copy(coded.begin(), coded.end());
    TIFFWriteRawStrip(tiff.get(), 0, copy.data(), static_cast<tmsize_t>(copy.size()));
  }
  const Tiff tiff(TIFFOpen(name.Get(), "r"));
  Rows rows(height, std::vector<std::uint8_t>((static_cast<std::size_t>(width) + 7) / 8));
  for (std::size_t y = 0; y < height; ++y)
    if (TIFFReadScanline(tiff.get(), rows[y].data(), static_cast<std::uint32_t>(y)) != 1) return {};
  return rows;
}

std::size_t SizeByLibtiff(const Rows& rows, int width) {
  const TemporaryName name;
  {
    const Tiff tiff(TIFFOpen(name.Get(), "w"));
    SetFields(tiff.get(), width, rows.size(), PHOTOMETRIC_MINISWHITE);
    for (std::size_t y = 0; y < rows.size(); ++y) {
      std::vector<std::uint8_t> row = rows[y];
      TIFFWriteScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(y));
    }
  }
  const Tiff tiff(TIFFOpen(name.Get(), "r"));
  return static_cast<std::size_t>(TIFFRawStripSize(tiff.get(), 0));
}

using Paint = std::function<bool(int x, int y, std::mt19937& random)>;

struct Pattern {
  const char* name;
  Paint black;
};

const Pattern kPatterns[] = {
    {"white", [](int, int, auto&) { return false; }},
    {"black", [](int, int, auto&) { return true; }},
    {"checks", [](int x, int y, auto&) { return (x + y) % 2 == 0; }},
    {"noise", [](int, int, auto& random) { return random() % 2 == 0; }},
    {"specks", [](int, int, auto& random) { return random() % 50 == 0; }},
    {"slopes that step by up to four dots", [](int x, int y, auto&) { return (x + y * (y % 5)) % 37 < 11; }},
    {"bars", [](int x, int y, auto&) { return x % 200 < 90 && y % 7 != 0; }},
    {"edges at both ends", [](int x, int y, auto&) { return x == 0 || (y % 3 == 1 && x % 8 == 7); }},
    {"runs of all lengths", [](int x, int y, auto&) { return x > y * 13 && x < y * 29; }},
};

}  // namespace

TEST(FaxEncoder, LibtiffReadsWhatWasWritten) {
  TIFFSetWarningHandler(nullptr);
  std::mt19937 random(7);
  for (const int width : {1, 7, 8, 63, 64, 65, 129, 1728, 2480, 6001})
    for (const Pattern& pattern : kPatterns)
      for (const int blackBit : {0, 1}) {
        SCOPED_TRACE(std::string(pattern.name) + ", width " + std::to_string(width) + ", black " +
                     std::to_string(blackBit));
        constexpr int kHeight = 120;
        Rows rows(kHeight, std::vector<std::uint8_t>((static_cast<std::size_t>(width) + 7) / 8));
        for (int y = 0; y < kHeight; ++y)
          for (int x = 0; x < width; ++x)
            if (pattern.black(x, y, random))
              rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x / 8)] |=
                  static_cast<std::uint8_t>(0x80 >> x % 8);
        platform::FaxEncoder encoder(width, blackBit);
        for (const auto& row : rows) {
          std::vector<std::uint8_t> given = row;
          if (blackBit == 0)
            for (std::uint8_t& byte : given) byte = static_cast<std::uint8_t>(~byte);
          encoder.AddRow(given.data());  // bits behind the last pixel are whatever they are
        }
        const auto coded = encoder.Finish();
        const Rows decoded = Decode(coded, width, rows.size());
        ASSERT_EQ(decoded.size(), rows.size());
        for (std::size_t y = 0; y < rows.size(); ++y) ASSERT_EQ(decoded[y], rows[y]) << "row " << y;
        EXPECT_LE(coded.size(), SizeByLibtiff(rows, width) + 1);
      }
}
