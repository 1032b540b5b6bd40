#include "platform/graphics/detail/dib.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

using platform::BlitSource;
using platform::DcRecord;
using platform::DibFormat;
using platform::FindDc;

namespace {

constexpr int kMostEdge = 1 << 26;  // positions beyond it hold nothing; keeps sums within 32 bits

bool IsKnownDepth(int bits) {
  return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

// Colour table entries, or numbers of palette entries in their place.
std::vector<std::uint32_t> ReadColors(const BYTE* table, std::size_t count, UINT usage, const DcRecord* dc) {
  std::vector<std::uint32_t> colors(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (usage == DIB_PAL_COLORS && dc != nullptr) {
      WORD index = 0;
      std::memcpy(&index, table + i * sizeof index, sizeof index);
      colors[i] = platform::ResolveColor(*dc, 0x01000000U | index);
    } else {
      RGBQUAD quad = {};
      std::memcpy(&quad, table + i * sizeof quad, sizeof quad);
      colors[i] = platform::PixelOf(RGB(quad.rgbRed, quad.rgbGreen, quad.rgbBlue));
    }
  }
  return colors;
}

platform::Raster RasterOf(const DibFormat& format, const void* bits, int rows) {
  platform::Raster raster;
  // Only read from: rasters serve both directions and so hold a plain pointer.
  raster.top = const_cast<BYTE*>(static_cast<const BYTE*>(bits));
  raster.stride = static_cast<std::ptrdiff_t>(platform::RowBytes(format.width, format.bits));
  raster.width = format.width;
  raster.height = rows;
  raster.bits = format.bits;
  raster.colors = format.colors.data();
  raster.colorCount = static_cast<int>(format.colors.size());
  raster.masks = format.masks;
  if (!format.topDown) {
    raster.top = raster.Row(rows - 1);
    raster.stride = -raster.stride;
  }
  return raster;
}

bool IsNear(std::int64_t position) {
  return std::abs(position) <= kMostEdge;
}

}  // namespace

std::optional<DibFormat> platform::ReadDibFormat(const BITMAPINFO* info, UINT usage, const DcRecord* dc) {
  if (info == nullptr) return std::nullopt;
  BITMAPINFOHEADER head = {};
  std::memcpy(&head, info, sizeof head);
  const bool masked = head.biCompression == BI_BITFIELDS && (head.biBitCount == 16 || head.biBitCount == 32);
  if (head.biSize < sizeof head || !IsKnownDepth(head.biBitCount) ||
      (head.biCompression != BI_RGB && !masked))
    return std::nullopt;
  DibFormat format;
  format.width = head.biWidth;
  format.height =
      static_cast<int>(std::min<std::int64_t>(std::abs(std::int64_t{head.biHeight}), kMostEdge + 1));
  format.bits = head.biBitCount;
  format.topDown = head.biHeight < 0;
  if (format.width <= 0 || format.width > kMostEdge || format.height == 0 || format.height > kMostEdge)
    return std::nullopt;
  const BYTE* behind = reinterpret_cast<const BYTE*>(info) + head.biSize;
  if (masked) {
    // The masks follow a plain header; longer headers hold them at the same place.
    std::memcpy(format.masks.data(), reinterpret_cast<const BYTE*>(info) + sizeof head, sizeof format.masks);
    if (format.masks == std::array<std::uint32_t, 3>{0xff0000, 0xff00, 0xff} && format.bits == 32)
      format.masks = {};
  }
  if (format.bits <= 8) {
    const std::size_t most = std::size_t{1} << format.bits;
    const std::size_t count = head.biClrUsed == 0 ? most : std::min<std::size_t>(head.biClrUsed, most);
    format.colors = ReadColors(behind, count, usage, dc);
  }
  return format;
}

int StretchDIBits(HDC dc, int x, int y, int width, int height, int sourceX, int sourceY, int sourceWidth,
                  int sourceHeight, const void* bits, const BITMAPINFO* info, UINT usage, DWORD operation) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return 0;
  const auto format = platform::ReadDibFormat(info, usage, record);
  if (!format) return 0;
  const unsigned table = platform::TruthTable(operation);
  if (!platform::UsesSource(table)) return PatBlt(dc, x, y, width, height, operation) ? format->height : 0;
  const std::int64_t w = std::abs(std::int64_t{sourceWidth});
  const std::int64_t h = std::abs(std::int64_t{sourceHeight});
  const std::int64_t left = std::min<std::int64_t>(sourceX, std::int64_t{sourceX} + sourceWidth);
  const std::int64_t low = std::min<std::int64_t>(sourceY, std::int64_t{sourceY} + sourceHeight);
  const std::int64_t top = format->topDown ? low : format->height - low - h;
  if (bits == nullptr || !IsNear(w) || !IsNear(h) || !IsNear(left) || !IsNear(top)) return 0;
  BlitSource source;
  source.raster = RasterOf(*format, bits, format->height);
  source.pixels =
      QRect(static_cast<int>(left), static_cast<int>(top), static_cast<int>(w), static_cast<int>(h));
  source.mirrorX = (width < 0) != (sourceWidth < 0);
  source.mirrorY = (height < 0) != (sourceHeight < 0);
  const QRect units = platform::UnitsOf(*record, x, y, width, height);
  return platform::BlitUnits(*record, units, source, table) ? format->height : 0;
}
