#include "imaging/codecs/writer.h"

#include <algorithm>
#include <iterator>

#include "imaging/codecs/codec.h"
#include "imaging/core/exception.h"

namespace imaging {
namespace {

struct Writer {
  const char* name;
  void (*write)(TargetFile& file, const SavedPage& page);
  void (*append)(const char* path, const SavedPage& page, int number);  ///< null: files of one page
  int format;
  int mostBits;  ///< per pixel
};

constexpr Writer kWriters[] = {
    {"PNG", WritePng, nullptr, kFormatPng, 32},
    {"Windows bitmap", WriteBmp, nullptr, kFormatBmpRle, 32},
    {"JPEG", WriteExifJpeg, nullptr, kFormatExifJpeg422, 32},
    {"TIFF with group 3 coding", WriteTiffG3, AppendTiffG3, kFormatTiffG3OneDimensional, 1},
    {"TIFF with PackBits coding", WriteTiffPackBits, AppendTiffPackBits, kFormatTiffPackBits, 32},
};

}  // namespace

bool HasLinearGrays(const PixelStorage& pixels) {
  if (pixels.Bits() > 8) return false;
  const int most = (1 << pixels.Bits()) - 1;
  for (int i = 0; i <= most; ++i) {
    const RGBQUAD& color = pixels.Palette()[static_cast<std::size_t>(i)];
    const int level = i * 255 / most;
    if (color.rgbRed != level || color.rgbGreen != level || color.rgbBlue != level) return false;
  }
  return true;
}

void SavePage(const char* path, const SavedPage& page, int format, int number) {
  const auto* writer = std::find_if(std::begin(kWriters), std::end(kWriters),
                                    [format](const Writer& candidate) { return candidate.format == format; });
  if (writer == std::end(kWriters))
    Fail(kErrorUnsupported, "%s: files of format %d can't be written", path, format);
  if (page.pixels.Bits() > writer->mostBits)
    Fail(kErrorUnsupported, "%s: %s holds pages of %d bit, not of %d", path, writer->name, writer->mostBits,
         page.pixels.Bits());
  if (number < 1) Fail(kErrorInvalidParameter, "%s: there is no page %d", path, number);
  if (number > 1) {
    if (writer->append == nullptr) Fail(kErrorUnsupported, "%s: a %s file has one page", path, writer->name);
    writer->append(path, page, number);
    return;
  }
  TargetFile file(path);
  writer->write(file, page);
  file.Complete();
}

}  // namespace imaging
