#include <algorithm>
#include <cstring>
#include <vector>

#include "imaging/codecs/rows.h"
#include "imaging/codecs/tiff_decode.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

/// The library's converter for one page, ended with its scope.
class RgbaConverter {
 public:
  RgbaConverter(const TiffHandle& tiff, const TiffLayout& layout) : m_layout(layout) {
    char reason[1024] = "";
    constexpr int kStopOnError = 1;
    m_begun = TIFFRGBAImageBegin(&m_image, tiff.Get(), kStopOnError, reason) != 0;
    if (!m_begun) Fail(kErrorUnsupported, "%s, page %d: %s", tiff.File().Name().c_str(), tiff.Page(), reason);
    // Rows come as they are stored; turning is the caller's business.
    m_image.orientation = ORIENTATION_TOPLEFT;
    m_image.req_orientation = ORIENTATION_TOPLEFT;
  }
  ~RgbaConverter() { TIFFRGBAImageEnd(&m_image); }
  RgbaConverter(const RgbaConverter&) = delete;
  RgbaConverter& operator=(const RgbaConverter&) = delete;

  bool Read(int firstRow, int rows, std::vector<std::uint32_t>& raster) {
    m_image.row_offset = firstRow;
    m_image.col_offset = 0;
    return TIFFRGBAImageGet(&m_image, raster.data(), static_cast<std::uint32_t>(m_layout.width),
                            static_cast<std::uint32_t>(rows)) != 0;
  }

 private:
  const TiffLayout& m_layout;
  TIFFRGBAImage m_image{};
  bool m_begun = false;
};

void StoreRow(const std::uint32_t* raster, std::uint8_t* row, int width, int bytes) {
  for (int x = 0; x < width; ++x, row += bytes) {
    const std::uint32_t pixel = raster[x];
    const std::uint32_t alpha = TIFFGetA(pixel);
    row[0] = static_cast<std::uint8_t>(TIFFGetR(pixel));
    row[1] = static_cast<std::uint8_t>(TIFFGetG(pixel));
    row[2] = static_cast<std::uint8_t>(TIFFGetB(pixel));
    if (bytes != 4) continue;
    for (int i = 0; i < 3; ++i) row[i] = Unassociate(row[i], alpha);  // the library multiplies by alpha
    row[3] = static_cast<std::uint8_t>(alpha);
  }
}

}  // namespace

bool NeedsTiffColorConversion(const TiffLayout& layout) {
  switch (layout.photometric) {
    case PHOTOMETRIC_YCBCR:  // the JPEG decoder itself delivers RGB
      return layout.compression != COMPRESSION_JPEG || layout.separatePlanes || layout.bitsPerSample != 8;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
    case PHOTOMETRIC_ITULAB:
    case PHOTOMETRIC_LOGL:
    case PHOTOMETRIC_LOGLUV:
      return true;
    default:
      return layout.compression == COMPRESSION_OJPEG;
  }
}

std::unique_ptr<PixelStorage> ConvertTiffPage(const TiffHandle& tiff, const TiffLayout& layout) {
  RgbaConverter converter(tiff, layout);
  const int bandHeight = std::min(layout.bandHeight, layout.height);
  const std::int64_t bandBytes = std::int64_t{4} * layout.width * bandHeight;
  if (bandBytes > Limit().codecBytes)
    Fail(kErrorLimit, "%s, page %d: strips of %d rows are too large", tiff.File().Name().c_str(), tiff.Page(),
         bandHeight);
  const int bytes = layout.alpha == TiffAlpha::kNone ? 3 : 4;
  auto pixels = PixelStorage::Create(layout.width, layout.height, bytes * 8);
  std::vector<std::uint32_t> raster(static_cast<std::size_t>(bandBytes / 4));
  bool anything = false;
  for (int first = 0; first < layout.height; first += bandHeight) {
    const int rows = std::min(bandHeight, layout.height - first);
    const bool decoded = converter.Read(first, rows, raster);
    anything = anything || decoded;
    for (int row = 0; row < rows; ++row) {
      if (decoded)
        StoreRow(raster.data() + static_cast<std::ptrdiff_t>(row) * layout.width, pixels->Row(first + row),
                 layout.width, bytes);
      else
        std::memset(pixels->Row(first + row), 0xff, pixels->RowBytes());
    }
  }
  if (!anything) tiff.FailDecoding();
  return pixels;
}

}  // namespace imaging
