#include "platform/spooler/detail/image_rows.h"

#include <cstdlib>
#include <cstring>

namespace platform {
namespace {

std::size_t PackedBytes(std::size_t width, int bits) {
  return bits > 8 ? width * 3 : (width * static_cast<std::size_t>(bits) + 7) / 8;
}

}  // namespace

bool IsImage(const PrinterImage& image) {
  const bool numbers = image.bits == 1 || image.bits == 4 || image.bits == 8;
  if (!numbers && image.bits != 24 && image.bits != 32) return false;
  if (numbers && (image.colors.empty() || image.colors.size() > std::size_t{1} << image.bits)) return false;
  if (image.top == nullptr || image.width <= 0 || image.height <= 0) return false;
  const std::int64_t bytes = (std::int64_t{image.width} * image.bits + 7) / 8;
  return image.height == 1 || std::abs(image.stride) >= bytes;
}

ImageRows::ImageRows(const PrinterImage& image, const RECT& part)
    : m_image(image),
      m_part(part),
      m_row(PackedBytes(static_cast<std::size_t>(part.right - part.left), image.bits)) {}

std::span<std::uint8_t> ImageRows::Read(int y) {
  if (m_image.mayGoOn && !m_image.mayGoOn()) throw ImageEnded();
  const std::uint8_t* row = m_image.top + std::ptrdiff_t{m_part.top + y} * m_image.stride;
  if (m_image.bits > 8)
    ReadColors(row);
  else
    ReadNumbers(row);
  return m_row;
}

void ImageRows::ReadNumbers(const std::uint8_t* row) {
  const std::size_t firstBit = static_cast<std::size_t>(m_part.left) * static_cast<std::size_t>(m_image.bits);
  const std::size_t bits =
      static_cast<std::size_t>(m_part.right - m_part.left) * static_cast<std::size_t>(m_image.bits);
  const std::uint8_t* from = row + firstBit / 8;
  const unsigned shift = firstBit % 8;
  if (shift == 0) {
    std::memcpy(m_row.data(), from, m_row.size());
  } else {
    // Bytes of the source that hold pixels of the part; none behind them is touched.
    const std::size_t sourceBytes = (shift + bits + 7) / 8;
    for (std::size_t i = 0; i < m_row.size(); ++i) {
      const unsigned next = i + 1 < sourceBytes ? from[i + 1] : 0U;
      m_row[i] = static_cast<std::uint8_t>(from[i] << shift | next >> (8 - shift));
    }
  }
  const unsigned rest = bits % 8;
  if (rest != 0) m_row.back() &= static_cast<std::uint8_t>(0xff00U >> rest);
}

void ImageRows::ReadColors(const std::uint8_t* row) {
  const std::size_t step = static_cast<std::size_t>(m_image.bits) / 8;
  const std::uint8_t* from = row + static_cast<std::size_t>(m_part.left) * step;
  const std::size_t red = m_image.blueFirst ? 2 : 0;
  for (std::size_t i = 0; i < m_row.size(); i += 3, from += step) {
    m_row[i] = from[red];
    m_row[i + 1] = from[1];
    m_row[i + 2] = from[2 - red];
  }
}

}  // namespace platform
