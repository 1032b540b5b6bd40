#include "imaging/codecs/jpeg_lossless.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "imaging/codecs/rows.h"
#include "imaging/core/exception.h"
#include "imaging/core/waiting.h"

namespace imaging {
namespace {

// Markers, T.81, table B.1.
enum : unsigned {
  kSof3 = 0xc3,
  kDht = 0xc4,
  kRst0 = 0xd0,
  kEoi = 0xd9,
  kSos = 0xda,
  kDri = 0xdd,
  kTem = 0x01
};
constexpr unsigned kRestarts = 8;

/// The bits of a scan, without the zeros stuffed behind bytes of ones (F.2.2.5). Past the end of the coded
/// data all bits are 0.
class ScanBits {
 public:
  explicit ScanBits(ByteReader& reader) : m_reader(reader) {}

  unsigned Peek16() {
    if (m_have < 16) Fill();
    return static_cast<unsigned>(m_bits >> 48);
  }
  void Skip(int count) {
    m_bits <<= count;
    m_have -= count;
  }
  unsigned Take(int count) {
    const unsigned value = Peek16() >> (16 - count);
    Skip(count);
    return value;
  }
  /// Whether more was read than there is.
  bool PastEnd() const { return m_marker != 0 && m_have < m_padding; }
  /// The marker that ended the data.
  unsigned Marker() const { return m_marker; }
  /// Goes on behind a restart marker. False if the data doesn't end at one.
  bool Restart() {
    Peek16();
    if (m_marker < kRst0 || m_marker >= kRst0 + kRestarts) return false;
    m_bits = 0;
    m_have = m_padding = 0;
    m_marker = 0;
    return true;
  }

 private:
  void Fill() {
    while (m_have <= 48) {
      unsigned byte = m_marker == 0 ? m_reader.U8() : 0;
      if (byte == 0xff) {
        while ((m_marker = m_reader.U8()) == 0xff && !m_reader.AtEnd()) {
        }
        if (m_marker != 0) byte = 0;
      }
      if (m_reader.AtEnd() && m_marker == 0) m_marker = kEoi;
      if (m_marker != 0) m_padding += 8;
      m_bits |= std::uint64_t{byte} << (56 - m_have);
      m_have += 8;
    }
  }

  ByteReader& m_reader;
  std::uint64_t m_bits = 0;
  int m_have = 0;
  int m_padding = 0;
  unsigned m_marker = 0;
};

/// A Huffman table (annex C), by the next sixteen bits of the data.
class DifferenceTable {
 public:
  /// False for a table that can't be.
  bool Read(ByteReader& reader) {
    std::array<std::uint8_t, 16> counts{};
    reader.Read(counts);
    m_entries.assign(1U << 16, {});
    std::size_t at = 0;
    for (int length = 1; length <= 16; ++length)
      for (int i = counts[static_cast<std::size_t>(length) - 1]; i > 0; --i) {
        const Entry entry{reader.U8(), static_cast<std::uint8_t>(length)};
        const std::size_t span = std::size_t{1} << (16 - length);
        if (at + span > m_entries.size() || entry.category > 16) return false;
        std::fill_n(m_entries.begin() + static_cast<std::ptrdiff_t>(at), span, entry);
        at += span;
      }
    return !reader.AtEnd();
  }
  bool Defined() const { return !m_entries.empty(); }

  /// A difference (H.1.2.2); a code that can't be counts as 0.
  int Next(ScanBits& bits) const {
    constexpr int kWholeRange = 16;
    const Entry entry = m_entries[bits.Peek16()];
    bits.Skip(entry.length);
    if (entry.category == 0) return 0;
    if (entry.category == kWholeRange) return 1 << 15;
    const int value = static_cast<int>(bits.Take(entry.category));
    return value >= 1 << (entry.category - 1) ? value : value + 1 - (1 << entry.category);
  }

 private:
  struct Entry {
    std::uint8_t category = 0;
    std::uint8_t length = 16;
  };
  std::vector<Entry> m_entries;
};

/// Table H.1, from the samples to the left, above, and above to the left.
int Predict(int predictor, int a, int b, int c) {
  switch (predictor) {
    case 1:
      return a;
    case 2:
      return b;
    case 3:
      return c;
    case 4:
      return a + b - c;
    case 5:
      return a + ((b - c) >> 1);
    case 6:
      return b + ((a - c) >> 1);
    default:
      return (a + b) >> 1;
  }
}

struct ScanComponent {
  int index = 0;  ///< in the frame
  const DifferenceTable* table = nullptr;
  std::vector<std::uint16_t> row;
  std::vector<std::uint16_t> above;
};

void RequireFrame(const Source& source, const JpegHeader& header) {
  bool alike = true;
  for (std::size_t i = 1; i < static_cast<std::size_t>(std::min(header.components, 4)); ++i)
    alike = alike && header.horizontal[i] == header.horizontal[0] && header.vertical[i] == header.vertical[0];
  const bool known =
      header.precision >= 2 && header.precision <= 16 && header.components >= 1 && header.components <= 4;
  if (!known || !alike || header.arithmetic)
    Fail(kErrorUnsupported, "%s: lossless JPEG of this kind can't be decoded", source.Name().c_str());
}

class LosslessDecoder {
 public:
  LosslessDecoder(const Source& source, const JpegHeader& header, const LosslessRow& take)
      : m_header(header), m_take(take), m_reader(source, 2) {}

  int Decode() {
    m_rows.assign(static_cast<std::size_t>(m_header.components), 0);
    while (!m_reader.AtEnd()) {
      const unsigned marker = NextMarker();
      if (marker == kEoi) break;
      if (marker == kTem || (marker >= kRst0 && marker < kRst0 + kRestarts)) continue;
      const int length = m_reader.BigU16();
      const std::int64_t end = m_reader.Position() + length - 2;
      if (length < 2 || (marker == kDht && !ReadTables(end))) break;
      if (marker == kDri) m_restartInterval = m_reader.BigU16();
      if (marker == kSos) {
        if (!DecodeScan(end)) break;
      } else {
        m_reader.Seek(end);
      }
    }
    return *std::min_element(m_rows.begin(), m_rows.end());
  }

 private:
  unsigned NextMarker() {
    while (m_marker == 0 && !m_reader.AtEnd()) {
      if (m_reader.U8() != 0xff) continue;
      while ((m_marker = m_reader.U8()) == 0xff && !m_reader.AtEnd()) {
      }
    }
    return std::exchange(m_marker, 0U);
  }

  bool ReadTables(std::int64_t end) {
    while (m_reader.Position() < end && !m_reader.AtEnd()) {
      const unsigned place = m_reader.U8() & 15U;
      if (place >= m_tables.size() || !m_tables[place].Read(m_reader)) return false;
    }
    return true;
  }

  /// B.2.3
  bool ReadScanHeader() {
    m_scan.clear();
    for (int count = m_reader.U8(); count > 0; --count) {
      const int id = m_reader.U8();
      const unsigned place = m_reader.U8() >> 4;
      const auto* const end = m_header.ids.begin() + m_header.components;
      const auto* const component = std::find(m_header.ids.begin(), end, id);
      if (component == end || place >= m_tables.size() || !m_tables[place].Defined()) return false;
      const auto width = static_cast<std::size_t>(m_header.width);
      m_scan.push_back({static_cast<int>(component - m_header.ids.begin()), &m_tables[place],
                        std::vector<std::uint16_t>(width), std::vector<std::uint16_t>(width)});
    }
    m_predictor = m_reader.U8();
    m_reader.U8();
    m_shift = static_cast<int>(m_reader.U8() & 15U);
    return !m_scan.empty() && m_predictor >= 1 && m_predictor <= 7 && m_shift < m_header.precision;
  }

  bool DecodeScan(std::int64_t end) {
    if (!ReadScanHeader() || m_restartInterval % static_cast<unsigned>(m_header.width) != 0) return false;
    m_reader.Seek(end);
    ScanBits bits(m_reader);
    const int restartRows = static_cast<int>(m_restartInterval) / m_header.width;
    for (int y = 0; y < m_header.height; ++y) {
      FailIfEndWanted();
      const bool first = y == 0 || (restartRows != 0 && y % restartRows == 0);
      if (first && y != 0 && !bits.Restart()) return false;
      DecodeRow(bits, first);
      if (bits.PastEnd()) return false;
      for (ScanComponent& component : m_scan) Deliver(component, y);
    }
    bits.Peek16();
    m_marker = bits.Marker();
    return true;
  }

  /// H.1.2.1: the first sample is predicted as half the range, its row by the left neighbour, the first
  /// column by the one above.
  void DecodeRow(ScanBits& bits, bool first) {
    const int half = 1 << (m_header.precision - m_shift - 1);
    for (int x = 0; x < m_header.width; ++x)
      for (ScanComponent& component : m_scan) {
        const auto at = static_cast<std::size_t>(x);
        int prediction = half;
        if (x > 0 && first)
          prediction = component.row[at - 1];
        else if (x > 0)
          prediction =
              Predict(m_predictor, component.row[at - 1], component.above[at], component.above[at - 1]);
        else if (!first)
          prediction = component.above[0];
        component.row[at] = static_cast<std::uint16_t>(prediction + component.table->Next(bits));
      }
  }

  void Deliver(ScanComponent& component, int y) {
    std::swap(component.row, component.above);
    m_rows[static_cast<std::size_t>(component.index)] = y + 1;
    if (m_shift == 0) return m_take(component.index, y, component.above);
    std::transform(component.above.begin(), component.above.end(), component.row.begin(),
                   [this](std::uint16_t sample) { return static_cast<std::uint16_t>(sample << m_shift); });
    m_take(component.index, y, component.row);
  }

  const JpegHeader& m_header;
  const LosslessRow& m_take;
  ByteReader m_reader;
  std::array<DifferenceTable, 4> m_tables;
  std::vector<ScanComponent> m_scan;
  std::vector<int> m_rows;
  unsigned m_marker = 0;
  unsigned m_restartInterval = 0;  ///< samples
  int m_predictor = 1;
  int m_shift = 0;
};

}  // namespace

int DecodeLosslessJpeg(const Source& source, const JpegHeader& header, const LosslessRow& take) {
  RequireFrame(source, header);
  return LosslessDecoder(source, header, take).Decode();
}

int DecodeLosslessInto(const Source& source, const JpegHeader& header, PixelStorage& pixels, int left,
                       int top) {
  RequireFrame(source, header);
  const int channels = pixels.Bits() / 8;
  if (header.components != channels)
    Fail(kErrorUnsupported, "%s: lossless JPEG with %d components", source.Name().c_str(), header.components);
  std::vector<std::uint8_t> levels(std::size_t{1} << header.precision);
  for (std::size_t i = 0; i < levels.size(); ++i) levels[i] = ScaleLevel(i, levels.size() - 1);
  const int width = std::min(header.width, pixels.Width() - left);
  const auto mask = static_cast<std::uint16_t>(levels.size() - 1);
  return DecodeLosslessJpeg(
      source, header, [&](int component, int y, std::span<const std::uint16_t> samples) {
        if (top + y >= pixels.Height()) return;
        std::uint8_t* target = pixels.Row(top + y) + static_cast<std::ptrdiff_t>(left) * channels + component;
        for (int x = 0; x < width; ++x, target += channels)
          *target = levels[samples[static_cast<std::size_t>(x)] & mask];
      });
}

}  // namespace imaging
