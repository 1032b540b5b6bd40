#include <QtGui/QPainter>
#include <cmath>
#include <cstring>
#include <new>

#include "platform/graphics/detail/dc_record.h"
#include "platform/graphics/detail/dib.h"

using platform::BitmapRecord;

namespace {

// More than any screen or page needs, few enough for 32-bit sizes everywhere below.
constexpr std::int64_t kMostBytes = std::int64_t{1} << 31;
constexpr int kMostEdge = 1 << 20;

constexpr std::uint32_t kBilevelColors[] = {platform::kBlack, platform::kWhite};

bool IsBilevel(const platform::DcRecord* dc) {
  const auto* bitmap = dc == nullptr ? nullptr : platform::ObjectAs<BitmapRecord>(dc->state.bitmap);
  return bitmap != nullptr && bitmap->raster.bits == 1;
}

}  // namespace

bool platform::AllocateBitmap(BitmapRecord& bitmap, int width, int height, int bits, double scale) {
  if (width <= 0 || height <= 0 || width > kMostEdge || height > kMostEdge) return false;
  const int pixelWidth = static_cast<int>(std::ceil(width * scale));
  const int pixelHeight = static_cast<int>(std::ceil(height * scale));
  const std::int64_t rowBytes = RowBytes(pixelWidth, bits);
  if (rowBytes * pixelHeight > kMostBytes) return false;
  try {
    bitmap.words.resize(static_cast<std::size_t>(rowBytes / 4 * pixelHeight));
  } catch (const std::bad_alloc&) {
    return false;
  }
  bitmap.width = width;
  bitmap.height = height;
  bitmap.scale = scale;
  bitmap.raster = {.top = reinterpret_cast<BYTE*>(bitmap.words.data()),
                   .stride = static_cast<std::ptrdiff_t>(rowBytes),
                   .width = pixelWidth,
                   .height = pixelHeight,
                   .bits = bits};
  if (bits == 1) {
    bitmap.raster.colors = kBilevelColors;
    bitmap.raster.colorCount = 2;
    bitmap.raster.bilevelDevice = true;
  }
  return true;
}

HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height) {
  const platform::DcRecord* record = platform::FindDc(dc);
  if (record == nullptr) return nullptr;
  BitmapRecord bitmap;
  // Bilevel bitmaps are masks for exact copies, so they keep one pixel a unit.
  const bool bilevel = IsBilevel(record);
  if (!AllocateBitmap(bitmap, width, height, bilevel ? 1 : 32, bilevel ? 1 : platform::ScaleOf(*record)))
    return nullptr;
  return platform::AddObject<HBITMAP>(std::move(bitmap));
}

HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits) {
  BitmapRecord bitmap;
  if (planes != 1 || (bitsPerPixel != 1 && bitsPerPixel != 32)) return nullptr;
  if (!platform::AllocateBitmap(bitmap, width, height, static_cast<int>(bitsPerPixel))) return nullptr;
  if (bits != nullptr) {
    const std::size_t rowBytes = (static_cast<std::size_t>(width) * bitsPerPixel + 15) / 16 * 2;
    for (int y = 0; y < height; ++y)
      std::memcpy(bitmap.raster.Row(y),
                  static_cast<const BYTE*>(bits) + static_cast<std::size_t>(y) * rowBytes, rowBytes);
  }
  return platform::AddObject<HBITMAP>(std::move(bitmap));
}

HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section, DWORD) {
  if (bits != nullptr) *bits = nullptr;
  const auto format = platform::ReadDibFormat(info, usage, platform::FindDc(dc));
  if (!format || section != nullptr) return nullptr;
  BitmapRecord bitmap;
  if (!platform::AllocateBitmap(bitmap, format->width, format->height, format->bits)) return nullptr;
  void* const memory = bitmap.words.data();
  bitmap.section = true;
  bitmap.colors = format->colors;
  platform::Raster& raster = bitmap.raster;
  raster.colors = bitmap.colors.data();
  raster.colorCount = static_cast<int>(bitmap.colors.size());
  raster.masks = format->masks;
  raster.bilevelDevice = false;
  if (!format->topDown) {
    raster.top = raster.Row(raster.height - 1);
    raster.stride = -raster.stride;
  }
  if (bits != nullptr) *bits = memory;
  return platform::AddObject<HBITMAP>(std::move(bitmap));
}

namespace platform {

QImage ImageOfBitmap(HBITMAP handle) {
  const auto* bitmap = ObjectAs<BitmapRecord>(handle);
  if (bitmap == nullptr) return {};
  const Raster& raster = bitmap->raster;
  if (raster.bilevelDevice) {
    QImage image(raster.width, raster.height, QImage::Format_Mono);
    image.setColorTable({kBlack, kWhite});
    for (int y = 0; y < raster.height && !image.isNull(); ++y)
      std::memcpy(image.scanLine(y), raster.Row(y), static_cast<std::size_t>((raster.width + 7) / 8));
    return image;
  }
  QImage image(raster.width, raster.height, QImage::Format_RGB32);
  for (int y = 0; y < raster.height && !image.isNull(); ++y)
    ReadRow(raster, 0, y, raster.width, reinterpret_cast<std::uint32_t*>(image.scanLine(y)));
  image.setDevicePixelRatio(bitmap->scale);
  return image;
}

HBITMAP BitmapFromImage(const QImage& source, COLORREF background) {
  BitmapRecord bitmap;
  if (!AllocateBitmap(bitmap, source.width(), source.height(), 32)) return nullptr;
  const Raster& raster = bitmap.raster;
  QImage target(raster.top, raster.width, raster.height, raster.stride, QImage::Format_RGB32);
  target.fill(PixelOf(background));
  QPainter(&target).drawImage(target.rect(), source, source.rect());
  return AddObject<HBITMAP>(std::move(bitmap));
}

}  // namespace platform
