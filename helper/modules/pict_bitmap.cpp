#include "helper/modules/pict_bitmap.h"

#include <algorithm>

namespace helper {
namespace {

constexpr int kPixmapFlag = 0x8000;
constexpr int kRowBytesMask = 0x3fff;
constexpr int kLeastPackedRow = 8;     // shorter rows are never packed
constexpr int kMostByteCounted = 250;  // longer rows have a count of two bytes
constexpr std::int64_t kMostBytes = 500'000'000;

enum PackType { kDefault, kUnpacked, kNoPadding, kWords, kComponents };

struct Layout {
  int rowBytes = 0;
  int packType = kDefault;
  int components = 1;
  bool direct = false;
};

/// Run lengths of units of one or two bytes. What is missing stays 0, what is too much is left out.
void Unpack(std::span<const std::uint8_t> packed, std::size_t unit, std::vector<std::uint8_t>& row) {
  constexpr int kRun = 128;
  std::size_t from = 0;
  std::size_t to = 0;
  while (from < packed.size() && to < row.size()) {
    const int code = packed[from++];
    if (code == kRun) continue;
    const bool run = code > kRun;
    const std::size_t count = static_cast<std::size_t>(run ? 257 - code : code + 1) * unit;
    const std::size_t there = std::min(run ? unit : count, packed.size() - from);
    if (run && there < unit) return;
    for (std::size_t i = 0; i < count && to < row.size(); ++i) {
      if (!run && i >= there) return;
      row[to++] = packed[from + (run ? i % unit : i)];
    }
    from += there;
  }
}

void ReadColors(PictBytes& bytes, PictBitmap& bitmap) {
  constexpr std::uint32_t kByPlace = 0x8000;
  bytes.Skip(4);
  const bool byPlace = (bytes.Unsigned(2) & kByPlace) != 0;
  const int last = bytes.Word();
  for (int i = 0; i <= last; ++i) {
    const std::uint32_t value = bytes.Unsigned(2);
    std::uint32_t color = 0;
    for (int channel = 0; channel < 3; ++channel) color = color << 8 | bytes.Unsigned(2) >> 8;
    bitmap.colors[(byPlace ? static_cast<std::uint32_t>(i) : value) & 0xff] = color;
  }
}

Layout ReadHeader(PictBytes& bytes, int opcode, PictBitmap& bitmap) {
  Layout layout;
  layout.direct = opcode >= 0x9a;
  if (layout.direct) bytes.Skip(4);
  const int rowBytes = bytes.Word();
  layout.rowBytes = rowBytes & kRowBytesMask;
  bitmap.bounds = bytes.Rect();
  bitmap.colors[0] = 0xffffff;
  if ((rowBytes & kPixmapFlag) == 0 && !layout.direct) return layout;
  bytes.Skip(2);
  layout.packType = bytes.Word();
  bytes.Skip(14);  // packed size, resolution, kind of pixels
  bitmap.bits = bytes.Word();
  layout.components = bytes.Word();
  bytes.Skip(14);
  if (!layout.direct) ReadColors(bytes, bitmap);
  return layout;
}

void Check(const PictBitmap& bitmap, const Layout& layout) {
  const bool known = layout.direct
                         ? bitmap.bits == 16 || bitmap.bits == 24 || bitmap.bits == 32
                         : bitmap.bits == 1 || bitmap.bits == 2 || bitmap.bits == 4 || bitmap.bits == 8;
  if (!known || layout.packType > kComponents)
    throw Failure(Status::kUnsupported, "bitmaps of this kind can't be shown");
  if (bitmap.bounds.IsEmpty()) throw Failure(Status::kCorrupt, "a bitmap is empty");
  if (static_cast<std::int64_t>(bitmap.bounds.Width()) * bitmap.bounds.Height() * 3 > kMostBytes)
    throw Failure(Status::kTooLarge, "a bitmap is too large");
}

/// The rows of one bitmap, one after another.
class Rows {
 public:
  Rows(PictBytes& bytes, const Layout& layout, bool packed, PictBitmap& bitmap)
      : m_bytes(bytes),
        m_layout(layout),
        m_bitmap(bitmap),
        m_width(static_cast<std::size_t>(bitmap.bounds.Width())) {
    m_packType = layout.packType;
    if (m_packType == kDefault) m_packType = bitmap.bits == 16 ? kWords : kComponents;
    if (!packed || layout.rowBytes < kLeastPackedRow) m_packType = kUnpacked;
    bitmap.packed = m_packType != kUnpacked && m_packType != kNoPadding;
    const std::size_t planes = layout.components == 4 ? 4 : 3;
    const auto stored = static_cast<std::size_t>(layout.rowBytes);
    m_row.resize(layout.direct && m_packType == kComponents  ? planes * m_width
                 : layout.direct && m_packType == kNoPadding ? 3 * m_width
                                                             : stored);
    if (!layout.direct || m_bitmap.bits == 16) m_row.resize(stored);
  }

  void Next() {
    if (m_bitmap.packed) {
      std::fill(m_row.begin(), m_row.end(), std::uint8_t{0});
      const std::size_t count = m_bytes.Unsigned(m_layout.rowBytes > kMostByteCounted ? 2 : 1);
      Unpack(m_bytes.Take(count), m_bitmap.bits == 16 ? 2 : 1, m_row);
    } else {
      const auto row = m_bytes.Take(m_row.size());
      std::copy(row.begin(), row.end(), m_row.begin());
    }
    for (std::size_t x = 0; x < m_width; ++x) {
      if (m_layout.direct)
        AddColor(x);
      else
        AddIndex(x);
    }
    ++m_bitmap.rows;
  }

 private:
  std::uint8_t At(std::size_t place) const { return place < m_row.size() ? m_row[place] : 0; }

  void AddIndex(std::size_t x) {
    const std::size_t bit = x * static_cast<std::size_t>(m_bitmap.bits);
    const int shift = 8 - m_bitmap.bits - static_cast<int>(bit % 8);
    m_bitmap.pixels.push_back(static_cast<std::uint8_t>(At(bit / 8) >> shift & ((1 << m_bitmap.bits) - 1)));
  }

  void AddColor(std::size_t x) {
    if (m_bitmap.bits == 16) {
      const int pixel = At(2 * x) << 8 | At(2 * x + 1);
      for (const int shift : {10, 5, 0}) {
        const int level = pixel >> shift & 31;
        m_bitmap.pixels.push_back(static_cast<std::uint8_t>(level << 3 | level >> 2));
      }
      return;
    }
    const bool planar = m_packType == kComponents;
    const std::size_t first = m_layout.components == 4 ? 1 : 0;  // alpha stands first
    for (std::size_t i = 0; i < 3; ++i)
      m_bitmap.pixels.push_back(planar                     ? At((first + i) * m_width + x)
                                : m_packType == kNoPadding ? At(3 * x + i)
                                                           : At(4 * x + 1 + i));
  }

  PictBytes& m_bytes;
  const Layout& m_layout;
  PictBitmap& m_bitmap;
  std::size_t m_width;
  int m_packType;
  std::vector<std::uint8_t> m_row;
};

}  // namespace

PictBitmap ReadPictPixels(PictBytes& bytes) {
  constexpr int kPackedRect = 0x98;  // whose header is the same
  constexpr std::int64_t kMostPixels = 1 << 20;
  PictBitmap bitmap;
  const Layout layout = ReadHeader(bytes, kPackedRect, bitmap);
  Check(bitmap, layout);
  if (static_cast<std::int64_t>(bitmap.bounds.Width()) * bitmap.bounds.Height() > kMostPixels)
    throw Failure(Status::kTooLarge, "a pattern is too large");
  Rows rows(bytes, layout, true, bitmap);
  while (bitmap.rows < bitmap.bounds.Height()) rows.Next();
  return bitmap;
}

PictBitmap ReadPictBitmap(PictBytes& bytes, int opcode) {
  PictBitmap bitmap;
  const Layout layout = ReadHeader(bytes, opcode, bitmap);
  bitmap.source = bytes.Rect();
  bitmap.target = bytes.Rect();
  bitmap.transferMode = bytes.Word();
  if (opcode % 2 != 0) bytes.SkipRegion();
  Check(bitmap, layout);
  Rows rows(bytes, layout, opcode >= 0x98, bitmap);
  try {
    while (bitmap.rows < bitmap.bounds.Height()) rows.Next();
  } catch (const EndOfPict&) {
    if (bitmap.rows == 0) throw;
  }
  if (bitmap.bits == 32) bitmap.bits = 24;  // the fourth byte is padding, or an alpha that nothing draws with
  return bitmap;
}

}  // namespace helper
