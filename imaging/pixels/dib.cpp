#include "imaging/pixels/dib.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "imaging/core/exception.h"
#include "platform/base/bitmapinfo.h"
#include "platform/base/global_memory.h"

namespace imaging {
namespace {

constexpr double kMetersPerInch = 0.0254;

/// Keeps a global memory block at its address.
class Lock {
 public:
  explicit Lock(HGLOBAL memory) : m_memory(memory), m_data(static_cast<std::uint8_t*>(GlobalLock(memory))) {}
  ~Lock() {
    if (m_data != nullptr) GlobalUnlock(m_memory);
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  std::uint8_t* Data() const { return m_data; }

 private:
  HGLOBAL m_memory;
  std::uint8_t* m_data;
};

std::int64_t DibPitch(std::int64_t width, int bits) {
  return (width * bits + 31) / 32 * 4;
}

void ExchangeRedBlue(std::uint8_t* row, int width, std::size_t step) {
  for (int x = 0; x < width; ++x, row += step) std::swap(row[0], row[2]);
}

LONG ToPixelsPerMeter(int dotsPerInch) {
  return static_cast<LONG>(std::lround(dotsPerInch / kMetersPerInch));
}

int ToDotsPerInch(LONG pixelsPerMeter) {
  return pixelsPerMeter <= 0 ? 0 : static_cast<int>(std::lround(pixelsPerMeter * kMetersPerInch));
}

struct DibLayout {
  BITMAPINFOHEADER header;
  int height;  ///< without the sign
  std::size_t colorsAt;
  std::size_t colors;
  std::size_t rowsAt;
  std::size_t pitch;
};

void CheckHeader(const BITMAPINFOHEADER& header) {
  const int bits = header.biBitCount;
  if (header.biWidth < 1 || header.biHeight == 0 || header.biHeight == INT32_MIN)
    Fail(kErrorCorrupt, "A device-independent bitmap of %d by %d pixels is damaged", header.biWidth,
         header.biHeight);
  if (header.biPlanes != 1)
    Fail(kErrorCorrupt, "A device-independent bitmap of %d planes is damaged", header.biPlanes);
  if (header.biCompression != BI_RGB)
    Fail(kErrorUnsupported, "A device-independent bitmap with compression %u isn't read",
         header.biCompression);
  if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
    Fail(kErrorUnsupported, "A device-independent bitmap of %d bits per pixel isn't read", bits);
}

DibLayout ReadLayout(const std::uint8_t* data, std::size_t size) {
  DibLayout layout{};
  if (size < sizeof layout.header)
    Fail(kErrorCorrupt, "A device-independent bitmap of %zu bytes is damaged", size);
  std::memcpy(&layout.header, data, sizeof layout.header);
  const BITMAPINFOHEADER& header = layout.header;
  if (header.biSize < sizeof header || header.biSize > size)
    Fail(kErrorCorrupt, "A device-independent bitmap with a header of %u bytes is damaged", header.biSize);
  CheckHeader(header);
  const std::size_t all = header.biBitCount <= 8 ? std::size_t{1} << header.biBitCount : 0;
  if (all != 0 && header.biClrUsed > all)
    Fail(kErrorCorrupt, "A device-independent bitmap with a table of %u colours is damaged",
         header.biClrUsed);
  layout.height = std::abs(header.biHeight);
  layout.colorsAt = header.biSize;
  layout.colors = header.biClrUsed != 0 ? header.biClrUsed : all;
  layout.rowsAt = layout.colorsAt + layout.colors * sizeof(RGBQUAD);
  layout.pitch = static_cast<std::size_t>(DibPitch(header.biWidth, header.biBitCount));
  // Divided, since the product of a hostile header need not fit.
  if (layout.rowsAt > size || (size - layout.rowsAt) / layout.pitch < static_cast<std::size_t>(layout.height))
    Fail(kErrorCorrupt, "A device-independent bitmap of %d by %d pixels is longer than its %zu bytes",
         header.biWidth, layout.height, size);
  return layout;
}

/// Five bits each of red, green and blue from the highest down, as uncompressed blocks of 16 bits have them.
void Expand555(std::uint8_t* out, const std::uint8_t* row, int width) {
  const auto widen = [](unsigned level) { return static_cast<std::uint8_t>(level << 3 | level >> 2); };
  for (int x = 0; x < width; ++x, row += 2, out += 3) {
    const unsigned pixel = row[0] | static_cast<unsigned>(row[1]) << 8;
    out[0] = widen(pixel & 31);
    out[1] = widen(pixel >> 5 & 31);
    out[2] = widen(pixel >> 10 & 31);
  }
}

/// Programs that know no alpha leave the fourth byte 0 throughout; such a picture is opaque.
void MakeOpaqueIfBlank(PixelStorage& pixels) {
  const PixelStorage& seen = pixels;
  for (int y = 0; y < seen.Height(); ++y)
    for (int x = 0; x < seen.Width(); ++x)
      if (seen.Row(y)[4 * x + 3] != 0) return;
  for (int y = 0; y < seen.Height(); ++y) {
    std::uint8_t* row = pixels.Row(y);
    for (int x = 0; x < seen.Width(); ++x) row[4 * x + 3] = 255;
  }
}

std::unique_ptr<PixelStorage> ReadPixels(const std::uint8_t* data, const DibLayout& layout) {
  const int bits = layout.header.biBitCount == 16 ? 24 : layout.header.biBitCount;
  auto pixels = PixelStorage::Create(layout.header.biWidth, layout.height, bits);
  if (bits <= 8) {
    auto& palette = pixels->Palette();
    std::fill(palette.begin(), palette.end(), RGBQUAD{});
    std::memcpy(palette.data(), data + layout.colorsAt, layout.colors * sizeof(RGBQUAD));
  }
  for (int y = 0; y < layout.height; ++y) {
    const int stored = layout.header.biHeight > 0 ? layout.height - 1 - y : y;
    const std::uint8_t* row = data + layout.rowsAt + layout.pitch * static_cast<std::size_t>(stored);
    if (layout.header.biBitCount == 16)
      Expand555(pixels->Row(y), row, pixels->Width());
    else
      std::memcpy(pixels->Row(y), row, pixels->RowBytes());
  }
  if (bits == 32) MakeOpaqueIfBlank(*pixels);
  return pixels;
}

}  // namespace

HGLOBAL MakeDib(const Bitmap& bitmap, const PixelStorage& pixels) {
  const int bits = pixels.Bits();
  const std::size_t colors = bits <= 8 ? std::size_t{1} << bits : 0;
  const auto pitch = static_cast<std::size_t>(DibPitch(pixels.Width(), bits));
  const std::size_t rows = pitch * static_cast<std::size_t>(pixels.Height());
  const std::size_t rowsAt = sizeof(BITMAPINFOHEADER) + colors * sizeof(RGBQUAD);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, rowsAt + rows);
  const Lock lock(memory);
  std::uint8_t* data = lock.Data();
  if (data == nullptr)
    Fail(kErrorNoMemory, "Not enough memory for a copy of an image of %d by %d pixels", pixels.Width(),
         pixels.Height());

  const BITMAPINFOHEADER header{sizeof(BITMAPINFOHEADER),
                                pixels.Width(),
                                pixels.Height(),
                                1,
                                static_cast<WORD>(bits),
                                BI_RGB,
                                static_cast<DWORD>(rows),
                                ToPixelsPerMeter(bitmap.XResolution),
                                ToPixelsPerMeter(bitmap.YResolution),
                                static_cast<DWORD>(colors),
                                0};
  std::memcpy(data, &header, sizeof header);
  std::memcpy(data + sizeof header, pixels.Palette().data(), colors * sizeof(RGBQUAD));
  for (int y = 0; y < pixels.Height(); ++y) {
    std::uint8_t* out = data + rowsAt + pitch * static_cast<std::size_t>(pixels.Height() - 1 - y);
    pixels.CopyRow(y, out);
    std::memset(out + pixels.RowBytes(), 0, pitch - pixels.RowBytes());
    if (bits >= 24 && bitmap.Order == 0)
      ExchangeRedBlue(out, pixels.Width(), static_cast<std::size_t>(bits / 8));
  }
  return memory;
}

Bitmap BitmapFromDib(HGLOBAL memory) {
  const Lock lock(memory);
  if (lock.Data() == nullptr)
    Fail(kErrorInvalidParameter, "There is no device-independent bitmap behind the handle");
  const DibLayout layout = ReadLayout(lock.Data(), GlobalSize(memory));
  Bitmap bitmap = EmptyBitmap(0, 0, 1);
  Adopt(bitmap, ReadPixels(lock.Data(), layout));
  bitmap.XResolution = ToDotsPerInch(layout.header.biXPelsPerMeter);
  bitmap.YResolution = ToDotsPerInch(layout.header.biYPelsPerMeter);
  return bitmap;
}

}  // namespace imaging
