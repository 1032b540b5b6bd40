#include "orientation_tag.h"

#include <algorithm>
#include <array>
#include <set>
#include <stdexcept>
#include <string_view>

namespace {

constexpr int kOrientation = 274;  // the tag, of TIFF and of Exif
constexpr int kShort = 3;
constexpr int kLong = 4;

/// The structure of a TIFF, whole file or Exif block: numbers in its own byte order, in the classic layout or
/// that of files beyond 4 GB. Reads beyond the end throw std::out_of_range.
class TiffBytes {
 public:
  /// False if it isn't one.
  static std::optional<TiffBytes> Open(Bytes bytes) {
    if (bytes.size() < 8 || bytes[0] != bytes[1] || (bytes[0] != 'I' && bytes[0] != 'M')) return std::nullopt;
    TiffBytes tiff(std::move(bytes));
    constexpr std::uint64_t kClassic = 42;
    constexpr std::uint64_t kBig = 43;
    const std::uint64_t version = tiff.Read(2, 2);
    if (version != kClassic && version != kBig) return std::nullopt;
    tiff.m_big = version == kBig;
    return tiff;
  }

  /// Turns the pages from the first directory on, or the first one alone.
  void Turn(int quarters, bool all) {
    std::set<std::uint64_t> seen;
    std::uint64_t link = m_big ? 8 : 4;
    for (std::uint64_t directory = Read(link, OffsetBytes());
         directory != 0 && seen.insert(directory).second;) {
      directory = TurnDirectory(link, directory, quarters);
      link = directory + CountBytes() + Read(directory, CountBytes()) * EntryBytes();
      if (!all) return;
      directory = Read(link, OffsetBytes());
    }
  }
  Bytes Take() { return std::move(m_bytes); }

 private:
  explicit TiffBytes(Bytes bytes) : m_bytes(std::move(bytes)) {}

  std::uint64_t OffsetBytes() const { return m_big ? 8 : 4; }
  std::uint64_t CountBytes() const { return m_big ? 8 : 2; }
  std::uint64_t EntryBytes() const { return m_big ? 20 : 12; }

  std::uint64_t Read(std::uint64_t at, std::uint64_t count) const {
    if (at > m_bytes.size() || count > m_bytes.size() - at) throw std::out_of_range("TIFF");
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < count; ++i)
      value = value << 8 | m_bytes[at + (m_bytes[0] == 'M' ? i : count - 1 - i)];
    return value;
  }
  void Write(std::uint64_t at, std::uint64_t count, std::uint64_t value) {
    if (at > m_bytes.size() || count > m_bytes.size() - at) throw std::out_of_range("TIFF");
    for (std::uint64_t i = 0; i < count; ++i, value >>= 8)
      m_bytes[at + (m_bytes[0] == 'M' ? count - 1 - i : i)] = static_cast<std::uint8_t>(value);
  }

  /// Where the directory lies afterwards; link is what points to it.
  std::uint64_t TurnDirectory(std::uint64_t link, std::uint64_t directory, int quarters) {
    const std::uint64_t count = Read(directory, CountBytes());
    std::uint64_t entry = 0;
    std::uint64_t smaller = 0;  // the entries stand in the order of their tags, in most files
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t at = directory + CountBytes() + i * EntryBytes();
      const std::uint64_t tag = Read(at, 2);
      if (tag == kOrientation) entry = at;
      if (tag < kOrientation) smaller = i + 1;
    }
    if (entry == 0) return WithNewEntry(link, directory, smaller, TurnedOrientation(1, quarters));
    const std::uint64_t width = Read(entry + 2, 2) == kLong ? 4 : 2;
    const std::uint64_t value = entry + 4 + OffsetBytes();
    const auto turned = TurnedOrientation(static_cast<int>(Read(value, width)), quarters);
    Write(value, width, static_cast<std::uint64_t>(turned));
    return directory;
  }

  /// A directory can't grow where it lies: a longer copy stands at the end, with what follows it in the
  /// chain.
  std::uint64_t WithNewEntry(std::uint64_t link, std::uint64_t directory, std::uint64_t index,
                             int orientation) {
    const std::uint64_t count = Read(directory, CountBytes());
    const std::uint64_t before = CountBytes() + index * EntryBytes();
    const std::uint64_t whole = CountBytes() + count * EntryBytes() + OffsetBytes();
    Read(directory + whole - OffsetBytes(), OffsetBytes());
    const auto from = [&](std::uint64_t at) {
      return m_bytes.begin() + static_cast<std::ptrdiff_t>(directory + at);
    };
    Bytes longer(from(0), from(before));
    longer.resize(longer.size() + EntryBytes());
    longer.insert(longer.end(), from(before), from(whole));
    if (m_bytes.size() % 2 != 0) m_bytes.push_back(0);  // directories begin at a word
    const std::uint64_t place = m_bytes.size();
    if (!m_big && place + longer.size() > UINT32_MAX) throw std::out_of_range("TIFF");
    m_bytes.insert(m_bytes.end(), longer.begin(), longer.end());
    Write(place, CountBytes(), count + 1);
    Write(place + before, 2, kOrientation);
    Write(place + before + 2, 2, kShort);
    Write(place + before + 4, OffsetBytes(), 1);
    Write(place + before + 4 + OffsetBytes(), 2, static_cast<std::uint64_t>(orientation));
    Write(link, OffsetBytes(), place);
    return place;
  }

  Bytes m_bytes;
  bool m_big = false;
};

// JPEG: markers with segments, up to the first scan.

constexpr std::string_view kExifName("Exif\0\0", 6);
constexpr std::uint8_t kMark = 0xff;
constexpr std::uint8_t kApp0 = 0xe0;
constexpr std::uint8_t kApp1 = 0xe1;
constexpr std::uint8_t kScan = 0xda;
constexpr std::size_t kLongestSegment = 0xffff;

struct Segment {
  std::size_t at;    ///< of its marker
  std::size_t size;  ///< marker included
  std::uint8_t kind;
};

std::optional<Segment> SegmentAt(const Bytes& file, std::size_t at) {
  if (at + 4 > file.size() || file[at] != kMark || file[at + 1] == kScan) return std::nullopt;
  const Segment segment{at, 2 + (std::size_t{file[at + 2]} << 8 | file[at + 3]), file[at + 1]};
  return at + segment.size <= file.size() ? std::optional(segment) : std::nullopt;
}

bool IsExif(const Bytes& file, const Segment& segment) {
  return segment.kind == kApp1 && segment.size >= 4 + kExifName.size() &&
         std::equal(kExifName.begin(), kExifName.end(),
                    file.begin() + static_cast<std::ptrdiff_t>(segment.at + 4));
}

/// A directory with nothing in it, for pictures without Exif data.
Bytes EmptyExif() {
  return {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0};
}

void Put(Bytes& file, const Segment& replaced, const Bytes& exif) {
  const std::size_t length = 2 + kExifName.size() + exif.size();
  if (length > kLongestSegment) throw std::out_of_range("Exif");
  Bytes segment(length + 2);
  segment[0] = kMark;
  segment[1] = kApp1;
  segment[2] = static_cast<std::uint8_t>(length >> 8);
  segment[3] = static_cast<std::uint8_t>(length & 0xff);
  std::ranges::copy(exif, std::ranges::copy(kExifName, segment.begin() + 4).out);
  const auto at = file.begin() + static_cast<std::ptrdiff_t>(replaced.at);
  file.insert(file.erase(at, at + static_cast<std::ptrdiff_t>(replaced.size)), segment.begin(),
              segment.end());
}

}  // namespace

int TurnedOrientation(int orientation, int quarters) {
  // Each cycle is one picture, turned clockwise step by step: upright ones, and mirrored ones.
  constexpr std::array<std::array<int, 4>, 2> kCycles = {{{1, 6, 3, 8}, {2, 7, 4, 5}}};
  for (const auto& cycle : kCycles) {
    const auto at = std::ranges::find(cycle, orientation);
    if (at == cycle.end()) continue;
    const auto step = (at - cycle.begin() + quarters) % 4;
    return cycle[static_cast<std::size_t>((step + 4) % 4)];
  }
  return TurnedOrientation(1, quarters);  // a number that means nothing
}

std::optional<Bytes> TurnedTiff(Bytes file, int quarters) {
  auto tiff = TiffBytes::Open(std::move(file));
  if (!tiff) return std::nullopt;
  try {
    tiff->Turn(quarters, true);
  } catch (const std::out_of_range&) {
    return std::nullopt;
  }
  return tiff->Take();
}

std::optional<Bytes> TurnedJpeg(Bytes file, int quarters) {
  constexpr std::array<std::uint8_t, 3> kStart = {kMark, 0xd8, kMark};
  if (file.size() < kStart.size() || !std::equal(kStart.begin(), kStart.end(), file.begin()))
    return std::nullopt;
  Segment place{2, 0, 0};  // in front of everything, but behind the segment that makes it a JFIF file
  Bytes exif = EmptyExif();
  for (auto segment = SegmentAt(file, 2); segment; segment = SegmentAt(file, segment->at + segment->size)) {
    if (segment->kind == kApp0 && segment->at == 2) place.at = segment->at + segment->size;
    if (!IsExif(file, *segment)) continue;
    place = *segment;
    const auto from = file.begin() + static_cast<std::ptrdiff_t>(segment->at + 4 + kExifName.size());
    exif.assign(from, file.begin() + static_cast<std::ptrdiff_t>(segment->at + segment->size));
    break;
  }
  auto tiff = TiffBytes::Open(std::move(exif));
  if (!tiff) return std::nullopt;
  try {
    tiff->Turn(quarters, false);
    Put(file, place, tiff->Take());
  } catch (const std::out_of_range&) {
    return std::nullopt;
  }
  return file;
}
