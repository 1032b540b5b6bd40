#include "imaging/codecs/gif_canvas.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <optional>
#include <utility>

#include "imaging/codecs/rows.h"

namespace imaging {
namespace {

constexpr int kBytes = 4;  // of a pixel

std::size_t BytesOf(LONG pixels) {
  return static_cast<std::size_t>(pixels) * kBytes;
}

/// The colours of a screen in the order in which they are met.
class ColorTable {
 public:
  /// The index of an opaque pixel; none once there are more than 256 colours.
  std::optional<std::uint8_t> IndexOf(std::uint32_t pixel) {
    std::size_t slot = pixel * 0x9e3779b1U >> (32 - kSlotBits);
    for (; m_pixels[slot] != pixel; slot = (slot + 1) % kSlots) {
      if (m_pixels[slot] != 0) continue;  // an opaque pixel isn't 0
      if (m_colors.size() == 256) return std::nullopt;
      m_pixels[slot] = pixel;
      m_indices[slot] = static_cast<std::uint8_t>(m_colors.size());
      std::array<std::uint8_t, kBytes> bytes;
      std::memcpy(bytes.data(), &pixel, sizeof pixel);
      m_colors.push_back({bytes[2], bytes[1], bytes[0], 0});
      break;
    }
    return m_indices[slot];
  }
  std::span<const RGBQUAD> Colors() const { return m_colors; }

 private:
  static constexpr unsigned kSlotBits = 10;
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;
  std::array<std::uint32_t, kSlots> m_pixels{};
  std::array<std::uint8_t, kSlots> m_indices{};
  std::vector<RGBQUAD> m_colors;
};

}  // namespace

GifCanvas::GifCanvas(int width, int height) : m_pixels(PixelStorage::Create(width, height, kBytes * 8)) {
  for (int y = 0; y < height; ++y) std::memset(m_pixels->Row(y), 0, m_pixels->RowBytes());
}

GifCanvas::GifCanvas(const PixelStorage& pixels)
    : m_pixels(PixelStorage::Create(pixels.Width(), pixels.Height(), kBytes * 8)) {
  for (int y = 0; y < pixels.Height(); ++y) std::memcpy(m_pixels->Row(y), pixels.Row(y), pixels.RowBytes());
}

void GifCanvas::DrawLine(int left, int y, std::span<const std::uint8_t> indices,
                         std::span<const RGBQUAD, 256> colors, int transparent) {
  if (y >= m_pixels->Height() || left >= m_pixels->Width()) return;
  const auto room = static_cast<std::size_t>(m_pixels->Width() - left);
  std::uint8_t* pixel = m_pixels->Row(y) + static_cast<std::ptrdiff_t>(left) * kBytes;
  for (const std::uint8_t index : indices.first(std::min(indices.size(), room))) {
    const bool clear = index == transparent;
    if (!clear || pixel[3] == 0) {
      pixel[0] = colors[index].rgbRed;
      pixel[1] = colors[index].rgbGreen;
      pixel[2] = colors[index].rgbBlue;
      pixel[3] = clear ? 0 : 0xff;
    }
    pixel += kBytes;
  }
}

RECT GifCanvas::Within(const RECT& area) const {
  const LONG right = std::min<LONG>(area.right, m_pixels->Width());
  const LONG bottom = std::min<LONG>(area.bottom, m_pixels->Height());
  return {std::min(area.left, right), std::min(area.top, bottom), right, bottom};
}

void GifCanvas::Clear(const RECT& area) {
  const RECT cleared = Within(area);
  for (LONG y = cleared.top; y < cleared.bottom; ++y)
    std::memset(m_pixels->Row(y) + BytesOf(cleared.left), 0, BytesOf(cleared.right - cleared.left));
}

std::vector<std::uint8_t> GifCanvas::Save(const RECT& area) const {
  const RECT kept = Within(area);
  const PixelStorage& pixels = *m_pixels;
  std::vector<std::uint8_t> saved;
  saved.reserve(BytesOf((kept.right - kept.left) * (kept.bottom - kept.top)));
  for (LONG y = kept.top; y < kept.bottom; ++y)
    saved.insert(saved.end(), pixels.Row(y) + BytesOf(kept.left), pixels.Row(y) + BytesOf(kept.right));
  return saved;
}

void GifCanvas::Restore(const RECT& area, const std::vector<std::uint8_t>& saved) {
  const RECT kept = Within(area);
  auto from = saved.begin();
  for (LONG y = kept.top; y < kept.bottom; ++y) {
    const auto end = from + (kept.right - kept.left) * kBytes;
    std::copy(from, end, m_pixels->Row(y) + BytesOf(kept.left));
    from = end;
  }
}

std::unique_ptr<PixelStorage> ReduceToPalette(const PixelStorage& screen) {
  ColorTable table;
  auto reduced = PixelStorage::Create(screen.Width(), screen.Height(), 8);
  std::uint32_t last = 0;
  std::uint8_t lastIndex = 0;
  for (int y = 0; y < screen.Height(); ++y) {
    const std::uint8_t* bytes = screen.Row(y);
    std::uint8_t* out = reduced->Row(y);
    for (int x = 0; x < screen.Width(); ++x, bytes += kBytes) {
      if (bytes[3] != 0xff) return nullptr;
      std::uint32_t pixel = 0;
      std::memcpy(&pixel, bytes, sizeof pixel);
      if (pixel != last) {
        const auto index = table.IndexOf(pixel);
        if (!index) return nullptr;
        last = pixel;
        lastIndex = *index;
      }
      out[x] = lastIndex;
    }
  }
  SetPalette(*reduced, table.Colors());
  return reduced;
}

GifScreens::GifScreens(int width, int height) {
  constexpr std::size_t kMostBytes = 64'000'000;
  m_room = kMostBytes / std::max<std::size_t>(1, BytesOf(width) * static_cast<std::size_t>(height));
}

void GifScreens::Keep(int number, std::unique_ptr<PixelStorage> screen) {
  m_screens.insert_or_assign(number, std::move(screen));
  Thin();
}

void GifScreens::KeepLast(int number, std::unique_ptr<PixelStorage> screen) {
  if (m_last % m_step != 0) m_screens.erase(m_last);
  m_last = number;
  Keep(number, std::move(screen));
}

const PixelStorage* GifScreens::Latest(int first, int last, int& number) const {
  const auto behind = m_screens.upper_bound(last);
  if (behind == m_screens.begin()) return nullptr;
  const auto found = std::prev(behind);
  if (found->first < first) return nullptr;
  number = found->first;
  return found->second.get();
}

/// Every second one goes until the rest fits.
void GifScreens::Thin() {
  while (m_screens.size() > m_room) {
    m_step *= 2;
    std::erase_if(m_screens,
                  [this](const auto& entry) { return entry.first % m_step != 0 && entry.first != m_last; });
  }
}

}  // namespace imaging
