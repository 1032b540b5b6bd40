#pragma once

#include <tiffio.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// Pages made with libtiff itself, so that what the window shows is checked against an independent writer.
namespace test_pages {

struct Page {
  int width;
  int height;
  int bits = 1;  ///< 1 (white is 0), 8 (grey) or 24
  float xDpi = 0;
  float yDpi = 0;
  /// Brightness 0 to 255 at a pixel; of 1 bit 0 is black, of 24 bits red has it, green half of it, blue none.
  std::function<int(int x, int y)> level = [](int, int) { return 255; };
  int orientation = ORIENTATION_TOPLEFT;
};

inline std::vector<std::uint8_t> RowOf(const Page& page, int y) {
  std::vector<std::uint8_t> row(static_cast<std::size_t>(page.width * page.bits + 7) / 8);
  for (int x = 0; x < page.width; ++x) {
    const int level = page.level(x, y);
    const auto at = static_cast<std::size_t>(x);
    if (page.bits == 1 && level == 0) row[at / 8] = static_cast<std::uint8_t>(row[at / 8] | 0x80 >> at % 8);
    if (page.bits == 8) row[at] = static_cast<std::uint8_t>(level);
    if (page.bits == 24) {
      row[3 * at] = static_cast<std::uint8_t>(level);
      row[3 * at + 1] = static_cast<std::uint8_t>(level / 2);
    }
  }
  return row;
}

inline void WritePage(TIFF* tiff, const Page& page) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, page.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, page.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, page.bits == 1 ? 1 : 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, page.bits == 24 ? 3 : 1);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
               page.bits == 1   ? PHOTOMETRIC_MINISWHITE
               : page.bits == 8 ? PHOTOMETRIC_MINISBLACK
                                : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, page.bits == 1 ? COMPRESSION_CCITTFAX4 : COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, page.height);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, page.orientation);
  if (page.xDpi > 0) {
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, page.xDpi);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, page.yDpi);
  }
  for (int y = 0; y < page.height; ++y) {
    auto row = RowOf(page, y);
    TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0);
  }
  TIFFWriteDirectory(tiff);
}

inline void Write(const std::string& path, const std::vector<Page>& pages) {
  const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "w"), TIFFClose);
  for (const Page& page : pages) WritePage(tiff.get(), page);
}

}  // namespace test_pages
