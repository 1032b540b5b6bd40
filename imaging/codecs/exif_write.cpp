#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "imaging/codecs/exif.h"

namespace imaging {
namespace {

enum : unsigned { kShort = 3, kLong = 4, kRational = 5, kUndefined = 7 };

/// A little-endian directory (TIFF 6.0, section 2). Entries are added in rising order of their tags; values
/// of more than four bytes follow the directory.
class Directory {
 public:
  void Short(unsigned tag, std::uint32_t value) { Entry(tag, kShort, 1, value); }
  void Long(unsigned tag, std::uint32_t value) { Entry(tag, kLong, 1, value); }
  void Undefined(unsigned tag, std::uint32_t bytes) { Entry(tag, kUndefined, 4, bytes); }
  void Rational(unsigned tag, int value) {
    m_far.push_back(m_entries.size());
    Entry(tag, kRational, 1, static_cast<std::uint32_t>(value));
  }
  std::size_t Size() const { return 2 + kEntry * m_entries.size() + 4 + 8 * m_far.size(); }
  std::size_t Count() const { return m_entries.size(); }
  void SetValue(std::size_t entry, std::size_t value) {
    m_entries[entry].value = static_cast<std::uint32_t>(value);
  }

  /// offset is that of the directory in the block.
  void Write(std::vector<std::uint8_t>& out, std::size_t offset) const {
    Put(out, m_entries.size(), 2);
    std::size_t far = 0;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
      const Field& field = m_entries[i];
      Put(out, field.tag, 2);
      Put(out, field.type, 2);
      Put(out, field.count, 4);
      Put(out, field.type == kRational ? offset + Size() - 8 * (m_far.size() - far++) : field.value, 4);
    }
    Put(out, 0, 4);  // no further directory
    for (const std::size_t i : m_far) {
      Put(out, m_entries[i].value, 4);
      Put(out, 1, 4);
    }
  }

  static void Put(std::vector<std::uint8_t>& out, std::size_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<std::uint8_t>(value >> 8 * i));
  }

 private:
  static constexpr std::size_t kEntry = 12;
  struct Field {
    unsigned tag;
    unsigned type;
    std::uint32_t count;
    std::uint32_t value;
  };
  void Entry(unsigned tag, unsigned type, std::uint32_t count, std::uint32_t value) {
    m_entries.push_back({tag, type, count, value});
  }

  std::vector<Field> m_entries;
  std::vector<std::size_t> m_far;  ///< entries whose value follows the directory
};

constexpr std::uint32_t Ascii(const char (&text)[5]) {
  std::uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<unsigned char>(text[i]);
  return value;
}

/// An unknown resolution is left out: the 72 dots of the standard's advice would be taken for a known one.
Directory MainDirectory(const ExifData& exif) {
  constexpr unsigned kInch = 2;
  constexpr unsigned kCentred = 1;  // where the coder's averaging of two columns puts the chroma samples
  Directory directory;
  directory.Short(0x112, static_cast<std::uint32_t>(exif.orientation));
  if (exif.xResolution > 0) directory.Rational(0x11a, exif.xResolution);
  if (exif.yResolution > 0) directory.Rational(0x11b, exif.yResolution);
  if (exif.xResolution > 0 || exif.yResolution > 0) directory.Short(0x128, kInch);
  directory.Short(0x213, kCentred);
  directory.Long(0x8769, 0);  // where the Exif directory is
  return directory;
}

/// The fields that Exif 2.3 (4.6.8, table 17) wants in every compressed picture.
Directory ExifDirectory(int width, int height) {
  constexpr std::uint32_t kYCbCr = 0x00030201;
  constexpr unsigned kSrgb = 1;
  Directory directory;
  directory.Undefined(0x9000, Ascii("0230"));
  directory.Undefined(0x9101, kYCbCr);
  directory.Undefined(0xa000, Ascii("0100"));
  directory.Short(0xa001, kSrgb);
  directory.Long(0xa002, static_cast<std::uint32_t>(width));
  directory.Long(0xa003, static_cast<std::uint32_t>(height));
  return directory;
}

}  // namespace

std::vector<std::uint8_t> MakeExifSegment(const ExifData& exif, int width, int height) {
  constexpr std::size_t kFirstDirectory = 8;
  Directory main = MainDirectory(exif);
  const std::size_t second = kFirstDirectory + main.Size();
  main.SetValue(main.Count() - 1, second);
  std::vector<std::uint8_t> tiff = {'I', 'I', 42, 0, kFirstDirectory, 0, 0, 0};
  main.Write(tiff, kFirstDirectory);
  ExifDirectory(width, height).Write(tiff, second);
  constexpr std::array<std::uint8_t, 6> kName = {'E', 'x', 'i', 'f', 0, 0};
  std::vector<std::uint8_t> segment(kName.size() + tiff.size());
  std::copy(tiff.begin(), tiff.end(), std::copy(kName.begin(), kName.end(), segment.begin()));
  return segment;
}

}  // namespace imaging
