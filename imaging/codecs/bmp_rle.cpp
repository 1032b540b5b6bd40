#include "imaging/codecs/bmp_rle.h"

#include <array>
#include <cstring>

namespace imaging {
namespace {

// What follows a zero count.
enum : unsigned { kEndOfLine = 0, kEndOfBitmap = 1, kDelta = 2 };

class RleDecoder {
 public:
  RleDecoder(const Source& source, std::int64_t offset, BmpRle kind, bool topDown, PixelStorage& pixels)
      : m_reader(source, offset), m_kind(kind), m_topDown(topDown), m_pixels(pixels) {}

  void Run() {
    while (m_line < m_pixels.Height() && !m_reader.AtEnd()) {
      const unsigned count = m_reader.U8();
      const unsigned second = m_reader.U8();
      if (m_reader.AtEnd()) return;
      if (count != 0) {
        Encoded(count, second);
      } else if (second == kEndOfLine) {
        m_column = 0;
        ++m_line;
      } else if (second == kEndOfBitmap) {
        return;
      } else if (second == kDelta) {
        m_column += m_reader.U8();
        m_line += m_reader.U8();
      } else {
        Absolute(second);
      }
    }
  }

 private:
  void Encoded(unsigned count, unsigned second) {
    if (m_kind == BmpRle::kRle24) {
      const std::array color = {static_cast<std::uint8_t>(second), m_reader.U8(), m_reader.U8()};
      for (unsigned i = 0; i < count; ++i) PutColor(color);
      return;
    }
    for (unsigned i = 0; i < count; ++i) PutIndex(m_kind == BmpRle::kRle8 ? second : Half(second, i));
  }

  /// Pixels one by one; the stream continues at an even byte.
  void Absolute(unsigned count) {
    unsigned bytes = count;
    if (m_kind == BmpRle::kRle24) {
      bytes = count * 3;
      for (unsigned i = 0; i < count; ++i) {
        const std::uint8_t blue = m_reader.U8();
        const std::uint8_t green = m_reader.U8();
        PutColor({blue, green, m_reader.U8()});
      }
    } else if (m_kind == BmpRle::kRle8) {
      for (unsigned i = 0; i < count; ++i) PutIndex(m_reader.U8());
    } else {
      bytes = (count + 1) / 2;
      unsigned pair = 0;
      for (unsigned i = 0; i < count; ++i) {
        if (i % 2 == 0) pair = m_reader.U8();
        PutIndex(Half(pair, i));
      }
    }
    if (bytes % 2 != 0) m_reader.U8();
  }

  static unsigned Half(unsigned pair, unsigned index) { return index % 2 == 0 ? pair >> 4 : pair & 15; }

  std::uint8_t* Row() { return m_pixels.Row(m_topDown ? m_line : m_pixels.Height() - 1 - m_line); }

  void PutIndex(unsigned index) {
    const int x = m_column++;
    if (x >= m_pixels.Width() || m_line >= m_pixels.Height()) return;
    if (m_pixels.Bits() == 8)
      Row()[x] = static_cast<std::uint8_t>(index);
    else
      Row()[x / 2] = static_cast<std::uint8_t>(Row()[x / 2] | index << (x % 2 == 0 ? 4 : 0));
  }

  void PutColor(const std::array<std::uint8_t, 3>& color) {
    const int x = m_column++;
    if (x >= m_pixels.Width() || m_line >= m_pixels.Height()) return;
    std::memcpy(Row() + static_cast<std::ptrdiff_t>(x) * 3, color.data(), color.size());
  }

  ByteReader m_reader;
  BmpRle m_kind;
  bool m_topDown;
  PixelStorage& m_pixels;
  int m_column = 0;  ///< may lie past the edge, but counts bytes of a stream and so stays small
  int m_line = 0;
};

}  // namespace

bool DecodeBmpRle(const Source& source, std::int64_t offset, BmpRle kind, bool topDown,
                  PixelStorage& pixels) {
  if (offset >= source.Size()) return false;
  for (int y = 0; y < pixels.Height(); ++y) std::memset(pixels.Row(y), 0, pixels.RowBytes());
  RleDecoder(source, offset, kind, topDown, pixels).Run();
  return true;
}

}  // namespace imaging
