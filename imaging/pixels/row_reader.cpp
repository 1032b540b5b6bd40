#include "imaging/pixels/row_reader.h"

#include <cstring>

#include "imaging/pixels/kernels.h"

namespace imaging {
namespace {

bool IsOpaque(const std::uint8_t* pixels, std::size_t count) {
  std::uint8_t all = 255;
  for (std::size_t i = 0; i < count; ++i) all &= pixels[4 * i + 3];
  return all == 255;
}

}  // namespace

void FlattenOnWhite(std::uint8_t* out, const std::uint8_t* pixels, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned alpha = pixels[4 * i + 3];
    for (std::size_t c = 0; c < 3; ++c)
      out[4 * i + c] =
          static_cast<std::uint8_t>((pixels[4 * i + c] * alpha + 255 * (255 - alpha) + 127) / 255);
    out[4 * i + 3] = 255;
  }
}

RowReader::RowReader(const PixelStorage& storage, Alpha alpha)
    : RowReader(storage, alpha, 0, storage.Height()) {}

RowReader::RowReader(const PixelStorage& storage, Alpha alpha, int firstRow, int rows)
    : m_storage(storage), m_alpha(alpha) {
  storage.MakeRows(firstRow, rows);
  if (storage.Bits() >= 24) {
    m_channels = storage.Bits() / 8;
    m_direct = true;
    return;
  }
  for (unsigned i = 0; i < 1U << storage.HeldBits(); ++i) {
    const RGBQUAD& color = storage.Palette()[storage.IndexOf(i)];
    if (color.rgbBlue != color.rgbGreen || color.rgbGreen != color.rgbRed) m_channels = 4;
    m_grays[i] = color.rgbGreen;
    m_colors[i] = 0xff000000U | static_cast<unsigned>(color.rgbRed) << 16 |
                  static_cast<unsigned>(color.rgbGreen) << 8 | color.rgbBlue;
  }
  m_direct = storage.HeldBits() == 8 && storage.IsLinearGray();
}

const std::uint8_t* RowReader::Read(int row, int first, int count, std::uint8_t* scratch) const {
  const std::uint8_t* pixels = m_storage.ReadyRow(row);
  if (!m_direct) {
    LookUp(pixels, first, count, scratch);
    return scratch;
  }
  pixels += static_cast<std::ptrdiff_t>(first) * m_channels;
  if (m_channels < 4 || m_alpha == Alpha::Keep || IsOpaque(pixels, static_cast<std::size_t>(count)))
    return pixels;
  FlattenOnWhite(scratch, pixels, static_cast<std::size_t>(count));
  return scratch;
}

void RowReader::LookUp(const std::uint8_t* row, int first, int count, std::uint8_t* out) const {
  const auto look = [&](auto index) {
    if (m_channels == 1) {
      for (int i = 0; i < count; ++i) out[i] = m_grays[index(first + i)];
    } else {
      for (int i = 0; i < count; ++i)
        std::memcpy(out + static_cast<std::ptrdiff_t>(i) * 4, &m_colors[index(first + i)], 4);
    }
  };
  switch (m_storage.HeldBits()) {
    case 1:
      if (m_channels == 1)
        FastKernels().expandBits(out, row, static_cast<std::size_t>(first), static_cast<std::size_t>(count),
                                 m_grays[0], m_grays[1]);
      else
        look([row](int x) { return static_cast<std::size_t>(row[x / 8] >> (7 - x % 8) & 1); });
      break;
    case 4:
      look([row](int x) { return static_cast<std::size_t>(row[x / 2] >> (x % 2 == 0 ? 4 : 0) & 15); });
      break;
    default:
      look([row](int x) { return static_cast<std::size_t>(row[x]); });
      break;
  }
}

}  // namespace imaging
