#include "imaging/codecs/tiff_decode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "imaging/codecs/rows.h"
#include "imaging/codecs/tiff_bands.h"
#include "imaging/codecs/tiff_samples.h"
#include "imaging/core/exception.h"

namespace imaging {
namespace {

using Row = std::uint8_t*;
using Packed = const std::uint8_t*;

// Rows that are held as they are stored

/// Depth in memory of a page whose packed rows need no conversion, 0 if they do.
int DirectBits(const TiffLayout& layout) {
  if (layout.separatePlanes || layout.sampleFormat == SAMPLEFORMAT_IEEEFP) return 0;
  const bool levels = layout.photometric <= PHOTOMETRIC_MINISBLACK || layout.Palette();
  if (levels && layout.samples == 1 && (layout.bitsPerSample == 4 || layout.bitsPerSample == 8))
    return layout.bitsPerSample;
  const bool rgb = layout.photometric == PHOTOMETRIC_RGB || layout.photometric == PHOTOMETRIC_YCBCR;
  if (!rgb || layout.bitsPerSample != 8) return 0;
  if (layout.samples == 3) return 24;
  return layout.samples == 4 && layout.alpha == TiffAlpha::kStraight ? 32 : 0;
}

/// Lets the library write each row where it belongs; false at the first fault. Uncompressed strips are read
/// faster as a whole.
bool ReadRowsInPlace(const TiffHandle& tiff, const TiffLayout& layout, PixelStorage& pixels,
                     const DecodeWish& wish) {
  if (layout.tiled || layout.MinIsWhite() || layout.compression == COMPRESSION_NONE) return false;
  if (static_cast<std::size_t>(TIFFScanlineSize(tiff.Get())) != pixels.RowBytes()) return false;
  for (int y = 0; y < layout.height; ++y) {
    if (TIFFReadScanline(tiff.Get(), pixels.Row(y), static_cast<std::uint32_t>(y), 0) != 1) return false;
    wish.Reached(pixels, 0, y + 1);
  }
  return true;
}

std::unique_ptr<PixelStorage> DecodeDirect(const TiffHandle& tiff, const TiffLayout& layout, int bits,
                                           const DecodeWish& wish) {
  std::vector<RGBQUAD> colors;
  if (layout.Palette()) colors = ReadTiffColors(tiff, layout);
  TiffBands bands(tiff, layout);
  auto pixels = PixelStorage::Create(layout.width, layout.height, bits);
  SetPalette(*pixels, colors);
  if (ReadRowsInPlace(tiff, layout, *pixels, wish)) return pixels;
  const std::uint8_t flip = layout.MinIsWhite() ? 0xff : 0;
  while (bands.Next()) {
    for (int y = bands.FirstRow(); y < bands.EndRow(); ++y)
      CopyBits(bands.Row(y), pixels->Row(y), pixels->RowBytes(), flip);
    wish.Reached(*pixels, 0, bands.EndRow());
  }
  return pixels;
}

// Everything else, by way of one byte a sample

struct Conversion {
  const TiffLayout& layout;
  std::vector<RGBQUAD> colors;

  int Bits() const {
    if (layout.alpha != TiffAlpha::kNone) return 32;
    if (layout.Palette()) return layout.bitsPerSample <= 8 ? 8 : 24;
    return layout.colorSamples >= 3 ? 24 : 8;
  }
  Rgb Color(const std::uint8_t* samples) const;
  void ConvertRow(const std::uint8_t* samples, Row row) const;
  void LookUpRow(const std::uint16_t* samples, Row row) const;
};

Rgb Conversion::Color(const std::uint8_t* samples) const {
  if (layout.photometric == PHOTOMETRIC_SEPARATED) {
    const bool single = layout.colorSamples < 3;
    return InkToRgb(single ? 0 : samples[0], single ? 0 : samples[1], single ? 0 : samples[2],
                    single                     ? samples[0]
                    : layout.colorSamples == 4 ? samples[3]
                                               : 0);
  }
  if (layout.colorSamples >= 3) return {samples[0], samples[1], samples[2]};
  const std::uint8_t level = layout.MinIsWhite() ? static_cast<std::uint8_t>(~samples[0]) : samples[0];
  return {level, level, level};
}

void Conversion::ConvertRow(const std::uint8_t* samples, Row row) const {
  const int bytes = Bits() / 8;
  for (int x = 0; x < layout.width; ++x, samples += layout.samples, row += bytes) {
    const Rgb color = Color(samples);
    row[0] = color.red;
    if (bytes == 1) continue;
    row[1] = color.green;
    row[2] = color.blue;
    if (bytes != 4) continue;
    const std::uint8_t alpha = samples[layout.colorSamples];
    row[3] = alpha;
    if (layout.alpha != TiffAlpha::kAssociated) continue;
    for (int i = 0; i < 3; ++i) row[i] = Unassociate(row[i], alpha);
  }
}

void Conversion::LookUpRow(const std::uint16_t* samples, Row row) const {
  const int bytes = Bits() / 8;
  const auto most = static_cast<unsigned>(colors.size() - 1);
  for (int x = 0; x < layout.width; ++x, samples += layout.samples, row += bytes) {
    if (bytes == 1) {
      row[0] = static_cast<std::uint8_t>(samples[0]);
      continue;
    }
    const RGBQUAD& color = colors[std::min<unsigned>(samples[0], most)];
    row[0] = color.rgbRed;
    row[1] = color.rgbGreen;
    row[2] = color.rgbBlue;
    if (bytes == 4) row[3] = static_cast<std::uint8_t>(samples[1] * 255U / most);
  }
}

/// Floats within 0 .. 1 keep their levels; a page that goes beyond is stretched over what it holds.
SampleRange MeasureRange(TiffBands& bands, const TiffLayout& layout, const TiffSamples& samples) {
  SampleRange range;
  const int planes = layout.separatePlanes ? layout.samples : 1;
  const auto count =
      static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.samples / planes);
  while (bands.Next())
    for (int y = bands.FirstRow(); y < bands.EndRow(); ++y)
      for (int plane = 0; plane < planes; ++plane) samples.Measure(bands.Row(y, plane), count, range);
  bands.Rewind();
  return range;
}

/// Gathers the samples of a row from its planes, interleaved, by a member of TiffSamples.
template <typename T>
void Interleave(const TiffBands& bands, int y, const TiffLayout& layout, const TiffSamples& samples,
                std::vector<T>& row,
                void (TiffSamples::*unpack)(const std::uint8_t*, std::size_t, T*, std::size_t) const) {
  const auto width = static_cast<std::size_t>(layout.width);
  const auto perPixel = static_cast<std::size_t>(layout.samples);
  if (!layout.separatePlanes) {
    (samples.*unpack)(bands.Row(y), width * perPixel, row.data(), 1);
    return;
  }
  for (std::size_t plane = 0; plane < perPixel; ++plane)
    (samples.*unpack)(bands.Row(y, static_cast<int>(plane)), width, row.data() + plane, perPixel);
}

std::unique_ptr<PixelStorage> DecodeConverted(const TiffHandle& tiff, const TiffLayout& layout,
                                              const DecodeWish& wish) {
  Conversion conversion{layout, {}};
  if (layout.Palette()) conversion.colors = ReadTiffColors(tiff, layout);
  TiffSamples samples(layout);
  TiffBands bands(tiff, layout);
  if (samples.Floats() && !layout.Palette()) samples.SetRange(MeasureRange(bands, layout, samples));
  auto pixels = PixelStorage::Create(layout.width, layout.height, conversion.Bits());
  if (conversion.Bits() == 8) SetPalette(*pixels, conversion.colors);

  const auto perRow = static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.samples);
  std::vector<std::uint8_t> levels(layout.Palette() ? 0 : perRow);
  std::vector<std::uint16_t> indices(layout.Palette() ? perRow : 0);
  while (bands.Next()) {
    for (int y = bands.FirstRow(); y < bands.EndRow(); ++y) {
      if (layout.Palette()) {
        Interleave(bands, y, layout, samples, indices, &TiffSamples::ToIndices);
        conversion.LookUpRow(indices.data(), pixels->Row(y));
      } else {
        Interleave(bands, y, layout, samples, levels, &TiffSamples::ToBytes);
        conversion.ConvertRow(levels.data(), pixels->Row(y));
      }
    }
    wish.Reached(*pixels, 0, bands.EndRow());
  }
  return pixels;
}

}  // namespace

std::vector<RGBQUAD> ReadTiffColors(const TiffHandle& tiff, const TiffLayout& layout) {
  std::uint16_t* red = nullptr;
  std::uint16_t* green = nullptr;
  std::uint16_t* blue = nullptr;
  if (layout.bitsPerSample > 16 || TIFFGetField(tiff.Get(), TIFFTAG_COLORMAP, &red, &green, &blue) == 0)
    Fail(kErrorCorrupt, "%s, page %d: palette image without colour table", tiff.File().Name().c_str(),
         tiff.Page());
  const std::size_t count = std::size_t{1} << layout.bitsPerSample;
  // Some writers put 8-bit values into the 16-bit table.
  std::uint16_t most = 0;
  for (std::size_t i = 0; i < count; ++i) most = std::max({most, red[i], green[i], blue[i]});
  const int shift = most > 255 ? 8 : 0;
  std::vector<RGBQUAD> colors(count);
  for (std::size_t i = 0; i < count; ++i)
    colors[i] = {static_cast<BYTE>(blue[i] >> shift), static_cast<BYTE>(green[i] >> shift),
                 static_cast<BYTE>(red[i] >> shift), 0};
  return colors;
}

std::unique_ptr<PixelStorage> DecodeTiffPage(const TiffHandle& tiff, const TiffLayout& layout,
                                             const DecodeWish& wish, FaxOutcome& fax) {
  if (layout.Bilevel()) return DecodeBilevelTiff(tiff, layout, wish, fax);
  const int direct = DirectBits(layout);
  return direct != 0 ? DecodeDirect(tiff, layout, direct, wish) : DecodeConverted(tiff, layout, wish);
}

}  // namespace imaging
