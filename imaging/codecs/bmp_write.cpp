#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/writer.h"

namespace imaging {
namespace {

constexpr std::size_t kHeaderBytes = 14 + 40;  // file header and BITMAPINFOHEADER
enum : std::uint32_t { kRgb = 0, kRle8 = 1, kRle4 = 2 };

void PutU16(std::uint8_t* at, std::uint32_t value) {
  at[0] = static_cast<std::uint8_t>(value);
  at[1] = static_cast<std::uint8_t>(value >> 8);
}
void PutU32(std::uint8_t* at, std::uint32_t value) {
  PutU16(at, value);
  PutU16(at + 2, value >> 16);
}

std::uint32_t PerMetre(int dotsPerInch) {
  const double dots = dotsPerInch > 0 ? dotsPerInch / kMetresPerInch : 0;
  return static_cast<std::uint32_t>(std::lround(std::min<double>(dots, INT32_MAX)));
}

std::uint32_t CompressionOf(const PixelStorage& pixels) {
  return pixels.Bits() == 8 ? kRle8 : pixels.Bits() == 4 ? kRle4 : kRgb;
}

/// File header, BITMAPINFOHEADER and colour table.
std::vector<std::uint8_t> MakeHeader(const SavedPage& page, std::uint32_t dataBytes) {
  const PixelStorage& pixels = page.pixels;
  const std::uint32_t colors = pixels.Bits() <= 8 ? 1U << pixels.Bits() : 0;
  std::vector<std::uint8_t> header(kHeaderBytes + std::size_t{4} * colors);
  const auto size = static_cast<std::uint32_t>(header.size());
  header[0] = 'B';
  header[1] = 'M';
  PutU32(&header[2], size + dataBytes);
  PutU32(&header[10], size);
  std::uint8_t* fields = &header[14];
  PutU32(fields, 40);
  PutU32(fields + 4, static_cast<std::uint32_t>(pixels.Width()));
  PutU32(fields + 8, static_cast<std::uint32_t>(pixels.Height()));  // above 0: the last row comes first
  PutU16(fields + 12, 1);
  PutU16(fields + 14, static_cast<std::uint32_t>(pixels.Bits()));
  PutU32(fields + 16, CompressionOf(pixels));
  PutU32(fields + 20, dataBytes);
  PutU32(fields + 24, PerMetre(page.xResolution));
  PutU32(fields + 28, PerMetre(page.yResolution));
  PutU32(fields + 32, colors);
  for (std::uint32_t i = 0; i < colors; ++i) {
    const RGBQUAD& color = pixels.Palette()[i];
    std::uint8_t* entry = &header[kHeaderBytes + std::size_t{4} * i];
    entry[0] = color.rgbBlue;
    entry[1] = color.rgbGreen;
    entry[2] = color.rgbRed;
  }
  return header;
}

/// Codes the rows of 4 and 8 bits. A run of 4 bits is two indices in turns.
class RleEncoder {
 public:
  explicit RleEncoder(const PixelStorage& pixels)
      : m_pixels(pixels),
        m_half(pixels.Bits() == 4),
        m_period(m_half ? 2 : 1),
        m_worthwhile(m_half ? 8 : 4),
        m_row(static_cast<std::size_t>(pixels.Width())) {}

  /// The code of a row, without an end; valid until the next call.
  const std::vector<std::uint8_t>& Encode(int y) {
    m_coded.clear();
    Unpack(m_pixels.Row(y));
    const int width = m_pixels.Width();
    for (int x = 0; x < width;) {
      const int run = Run(x, width, kMostRun);
      if (run >= m_worthwhile || x + run == width) {
        PutRun(x, run);
        x += run;
        continue;
      }
      const int end = LiteralEnd(x);
      PutLiteral(x, end);
      x = end;
    }
    return m_coded;
  }

 private:
  static constexpr int kMostRun = 255;
  static constexpr int kMostLiteral = 252;  // a multiple of 4, so that only the last one is padded
  static constexpr int kLeastLiteral = 3;   // fewer would be an escape of another meaning

  void Unpack(const std::uint8_t* row) {
    if (!m_half) {
      std::memcpy(m_row.data(), row, m_row.size());
      return;
    }
    for (std::size_t x = 0; x < m_row.size(); ++x)
      m_row[x] = static_cast<std::uint8_t>(x % 2 == 0 ? row[x / 2] >> 4 : row[x / 2] & 15);
  }

  std::uint8_t At(int x) const { return m_row[static_cast<std::size_t>(x)]; }

  /// Pixels from x on that one run can hold, at most so many.
  int Run(int x, int end, int most) const {
    const int last = std::min(end, x + most);
    int next = std::min(x + m_period, last);
    while (next < last && At(next) == At(next - m_period)) ++next;
    return next - x;
  }

  int LiteralEnd(int x) const {
    const int last = std::min(m_pixels.Width(), x + kMostLiteral);
    int end = x + 1;
    while (end < last && Run(end, m_pixels.Width(), m_worthwhile) < m_worthwhile) ++end;
    return end;
  }

  void PutRun(int x, int count) {
    m_coded.push_back(static_cast<std::uint8_t>(count));
    const int second = count > 1 ? At(x + m_period - 1) : 0;
    m_coded.push_back(static_cast<std::uint8_t>(m_half ? At(x) << 4 | second : At(x)));
  }

  void PutLiteral(int x, int end) {
    if (end - x < kLeastLiteral) {
      while (x < end) {
        const int run = Run(x, end, kMostRun);
        PutRun(x, run);
        x += run;
      }
      return;
    }
    m_coded.push_back(0);
    m_coded.push_back(static_cast<std::uint8_t>(end - x));
    const std::size_t start = m_coded.size();
    for (; x < end; x += m_period) {
      const int second = m_half && x + 1 < end ? At(x + 1) : 0;
      m_coded.push_back(static_cast<std::uint8_t>(m_half ? At(x) << 4 | second : At(x)));
    }
    if ((m_coded.size() - start) % 2 != 0) m_coded.push_back(0);  // the code goes on at an even byte
  }

  const PixelStorage& m_pixels;
  bool m_half;
  int m_period;
  int m_worthwhile;  ///< from this length on a run pays within a literal stretch
  std::vector<std::uint8_t> m_row;
  std::vector<std::uint8_t> m_coded;
};

bool WriteRle(TargetFile& file, const SavedPage& page) {
  static constexpr std::array<std::uint8_t, 2> kEndOfLine = {0, 0};
  static constexpr std::array<std::uint8_t, 2> kEndOfBitmap = {0, 1};
  // The size is told in the header, which is written over once it is known.
  if (!file.Append(MakeHeader(page, 0))) return false;
  RleEncoder encoder(page.pixels);
  std::size_t size = 0;
  for (int y = page.pixels.Height() - 1; y >= 0; --y) {
    const auto& coded = encoder.Encode(y);
    const auto& end = y == 0 ? kEndOfBitmap : kEndOfLine;
    if (!file.Append(coded) || !file.Append(end)) return false;
    size += coded.size() + end.size();
  }
  return file.Flush() && file.File().WriteAt(0, MakeHeader(page, static_cast<std::uint32_t>(size)));
}

void SwapRedAndBlue(std::uint8_t* row, int width, int bytes) {
  for (int x = 0; x < width; ++x, row += bytes) std::swap(row[0], row[2]);
}

/// Rows are padded to 4 bytes; 24 and 32 bits stand blue first.
bool WritePlain(TargetFile& file, const SavedPage& page) {
  const PixelStorage& pixels = page.pixels;
  const std::size_t pitch = (pixels.RowBytes() + 3) / 4 * 4;
  const auto size = static_cast<std::uint32_t>(pitch * static_cast<std::size_t>(pixels.Height()));
  if (!file.Append(MakeHeader(page, size))) return false;
  std::vector<std::uint8_t> row(pitch);
  for (int y = pixels.Height() - 1; y >= 0; --y) {
    std::memcpy(row.data(), pixels.Row(y), pixels.RowBytes());
    if (page.order == 0 && pixels.Bits() >= 24) SwapRedAndBlue(row.data(), pixels.Width(), pixels.Bits() / 8);
    if (!file.Append(row)) return false;
  }
  return true;
}

}  // namespace

/// A page of at most 2 GB, which no coding here makes twice as large, so all sizes fit their 32 bits.
void WriteBmp(TargetFile& file, const SavedPage& page) {
  const bool coded = CompressionOf(page.pixels) != kRgb;
  if (!(coded ? WriteRle(file, page) : WritePlain(file, page))) file.FailWriting("");
}

}  // namespace imaging
