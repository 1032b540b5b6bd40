#include "imaging/codecs/tiff_write.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <vector>

#include "imaging/codecs/rows.h"
#include "imaging/codecs/tiff_handle.h"

namespace imaging {
namespace {

/// libtiff over a target. Its messages stay here: warnings are dropped, the first error is kept.
class TiffWriter {
 public:
  TiffWriter(TiffTarget& target, const char* mode) : m_target(target) {
    CheckRoomForTiff();
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                   TIFFOpenOptionsFree);
    if (options == nullptr) return;
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), DropWarning, nullptr);
    m_tiff = TIFFClientOpenExt("", mode, this, Read, Write, Seek, KeepOpen, Size, RefuseMap, IgnoreUnmap,
                               options.get());
  }
  ~TiffWriter() {
    m_refusing = !m_complete;  // the library would try again to write what is left of a page
    if (m_tiff != nullptr) TIFFClose(m_tiff);
  }
  TiffWriter(const TiffWriter&) = delete;
  TiffWriter& operator=(const TiffWriter&) = delete;

  TIFF* Get() const { return m_tiff; }
  const std::string& FirstError() const { return m_firstError; }
  bool Complete() {
    m_complete = TIFFWriteDirectory(m_tiff) != 0;
    return m_complete && m_firstError.empty();
  }

 private:
  static TiffWriter& Self(thandle_t client) { return *static_cast<TiffWriter*>(client); }
  static tmsize_t Read(thandle_t client, void* bytes, tmsize_t size) {
    TiffWriter& self = Self(client);
    if (size <= 0) return 0;
    const std::size_t got = self.m_target.ReadAt(
        self.m_position, {static_cast<std::uint8_t*>(bytes), static_cast<std::size_t>(size)});
    self.m_position += static_cast<std::int64_t>(got);
    return static_cast<tmsize_t>(got);
  }
  static tmsize_t Write(thandle_t client, void* bytes, tmsize_t size) {
    TiffWriter& self = Self(client);
    if (self.m_refusing) return -1;
    if (size <= 0) return 0;
    if (!self.m_target.WriteAt(self.m_position,
                               {static_cast<const std::uint8_t*>(bytes), static_cast<std::size_t>(size)}))
      return -1;
    self.m_position += size;
    return size;
  }
  static toff_t Seek(thandle_t client, toff_t offset, int whence) {
    TiffWriter& self = Self(client);
    const std::int64_t base = whence == SEEK_SET   ? 0
                              : whence == SEEK_CUR ? self.m_position
                                                   : self.m_target.Size();
    self.m_position = base + static_cast<std::int64_t>(offset);
    return static_cast<toff_t>(self.m_position);
  }
  static toff_t Size(thandle_t client) { return static_cast<toff_t>(Self(client).m_target.Size()); }
  static int KeepOpen(thandle_t /*client*/) { return 0; }
  static int RefuseMap(thandle_t /*client*/, void** /*base*/, toff_t* /*size*/) { return 0; }
  static void IgnoreUnmap(thandle_t /*client*/, void* /*base*/, toff_t /*size*/) {}
  static int DropWarning(TIFF* /*tiff*/, void* /*client*/, const char* /*module*/, const char* /*format*/,
                         va_list /*args*/) {
    return 1;
  }
  static int KeepError(TIFF* /*tiff*/, void* client, const char* /*module*/, const char* format,
                       va_list args) {
    TiffWriter& self = Self(client);
    if (!self.m_firstError.empty()) return 1;
    char text[256];
    std::vsnprintf(text, sizeof text, format, args);
    self.m_firstError = text[0] != '\0' ? text : "error in the TIFF library";
    return 1;
  }

  TiffTarget& m_target;
  TIFF* m_tiff = nullptr;
  std::int64_t m_position = 0;
  std::string m_firstError;
  bool m_complete = false;
  bool m_refusing = false;
};

/// How the colours of a page are told, and what that asks of its rows.
struct TiffColors {
  std::uint16_t photometric = PHOTOMETRIC_RGB;
  std::uint8_t flip = 0;  ///< 0xff: bits are turned over
};

int Brightness(const RGBQUAD& color) {
  return 3 * color.rgbRed + 6 * color.rgbGreen + color.rgbBlue;
}

/// Bilevel pages take white as 0: fax software reads no other and often doesn't look. Two other colours are
/// kept in a table, the lighter one first for the same reason.
TiffColors BilevelColorsOf(const PixelStorage& pixels) {
  const BilevelColors colors{pixels.Palette()[0], pixels.Palette()[1]};
  const bool secondIsLighter = Brightness(colors.one) > Brightness(colors.zero);
  return {static_cast<std::uint16_t>(colors.BlackAndWhite() ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_PALETTE),
          static_cast<std::uint8_t>(secondIsLighter ? 0xff : 0)};
}

TiffColors ColorsOf(const PixelStorage& pixels) {
  if (pixels.Bits() >= 24) return {PHOTOMETRIC_RGB, 0};
  if (pixels.Bits() == 1) return BilevelColorsOf(pixels);
  return {static_cast<std::uint16_t>(HasLinearGrays(pixels) ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_PALETTE),
          0};
}

/// The table holds 16 bits a colour; the library copies it.
void SetColorMap(TIFF* tiff, const PixelStorage& pixels, std::uint8_t flip) {
  std::array<std::array<std::uint16_t, 256>, 3> map{};
  constexpr int kTo16Bits = 257;
  const std::size_t last = (std::size_t{1} << pixels.Bits()) - 1;
  for (std::size_t i = 0; i <= last; ++i) {
    const RGBQUAD& color = pixels.Palette()[flip != 0 ? last - i : i];
    map[0][i] = static_cast<std::uint16_t>(color.rgbRed * kTo16Bits);
    map[1][i] = static_cast<std::uint16_t>(color.rgbGreen * kTo16Bits);
    map[2][i] = static_cast<std::uint16_t>(color.rgbBlue * kTo16Bits);
  }
  TIFFSetField(tiff, TIFFTAG_COLORMAP, map[0].data(), map[1].data(), map[2].data());
}

/// Where nothing is known the standard still wants the fields: no unit then, and square pixels.
void SetResolution(TIFF* tiff, const SavedPage& page) {
  const bool unknown = page.xResolution <= 0 && page.yResolution <= 0;
  TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, unknown ? RESUNIT_NONE : RESUNIT_INCH);
  if (unknown || page.xResolution > 0)
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, unknown ? 1.0 : static_cast<double>(page.xResolution));
  if (unknown || page.yResolution > 0)
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, unknown ? 1.0 : static_cast<double>(page.yResolution));
}

/// A fax page is one strip, which is what fax software expects; others have strips of about 64 KB.
void SetCoding(TIFF* tiff, const PixelStorage& pixels, TiffCoding coding) {
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, static_cast<int>(coding));
  if (coding == TiffCoding::kG3) {
    TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, 0);  // one dimension, ends of line not aligned to bytes
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, pixels.Height());
    return;
  }
  constexpr std::size_t kStripBytes = 65536;
  const auto rows = static_cast<int>(std::max<std::size_t>(kStripBytes / pixels.RowBytes(), 1));
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, std::min(rows, pixels.Height()));
}

void SetFields(TIFF* tiff, const SavedPage& page, TiffCoding coding, const TiffColors& colors, int number) {
  const PixelStorage& pixels = page.pixels;
  TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, pixels.Width());
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, pixels.Height());
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, std::min(pixels.Bits(), 8));
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, std::max(pixels.Bits() / 8, 1));
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, colors.photometric);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, page.Orientation());
  if (pixels.Bits() == 32) {
    std::uint16_t kind = EXTRASAMPLE_UNASSALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
  }
  if (colors.photometric == PHOTOMETRIC_PALETTE) SetColorMap(tiff, pixels, colors.flip);
  SetCoding(tiff, pixels, coding);
  SetResolution(tiff, page);
  // The count of all pages isn't known yet, which is told by 0 (TIFF 6.0, section 12).
  constexpr int kMostNumber = 65535;
  TIFFSetField(tiff, TIFFTAG_PAGENUMBER, std::min(number - 1, kMostNumber), 0);
}

void CopyRow(const SavedPage& page, int y, std::uint8_t flip, std::vector<std::uint8_t>& row) {
  const PixelStorage& pixels = page.pixels;
  CopyBits(pixels.Row(y), row.data(), pixels.RowBytes(), flip);
  if (pixels.Bits() < 24 || page.order == 0) return;
  const auto bytes = static_cast<std::size_t>(pixels.Bits() / 8);
  for (std::size_t at = 0; at + 2 < row.size(); at += bytes) std::swap(row[at], row[at + 2]);
}

}  // namespace

bool WriteTiffPage(TiffTarget& target, const char* mode, const SavedPage& page, TiffCoding coding, int number,
                   std::string& text) {
  const TiffColors colors = ColorsOf(page.pixels);
  TiffWriter writer(target, mode);
  bool good = writer.Get() != nullptr;
  if (good) SetFields(writer.Get(), page, coding, colors, number);
  std::vector<std::uint8_t> row(page.pixels.RowBytes());
  for (int y = 0; good && y < page.pixels.Height(); ++y) {
    CopyRow(page, y, colors.flip, row);
    good = TIFFWriteScanline(writer.Get(), row.data(), static_cast<std::uint32_t>(y), 0) == 1;
  }
  good = good && writer.Complete();
  text = writer.FirstError().empty() ? "error in the TIFF library" : writer.FirstError();
  return good;
}

namespace {

class NewTiff final : public TiffTarget {
 public:
  explicit NewTiff(OutputFile& file) : m_file(file) {}
  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) override {
    return m_file.ReadAt(offset, target);
  }
  bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> bytes) override {
    return m_file.WriteAt(offset, bytes);
  }
  std::int64_t Size() override { return m_file.Size(); }

 private:
  OutputFile& m_file;
};

void WriteFirstPage(TargetFile& file, const SavedPage& page, TiffCoding coding) {
  NewTiff target(file.File());
  std::string text;
  if (!WriteTiffPage(target, "wl", page, coding, 1, text)) file.FailWriting(text.c_str());
}

}  // namespace

void WriteTiffG3(TargetFile& file, const SavedPage& page) {
  WriteFirstPage(file, page, TiffCoding::kG3);
}

void WriteTiffPackBits(TargetFile& file, const SavedPage& page) {
  WriteFirstPage(file, page, TiffCoding::kPackBits);
}

}  // namespace imaging
