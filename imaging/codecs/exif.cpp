#include "imaging/codecs/exif.h"

#include <algorithm>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/tiff_directory.h"

namespace imaging {
namespace {

enum : unsigned {
  kTagOrientation = 0x112,
  kTagXResolution = 0x11a,
  kTagYResolution = 0x11b,
  kTagUnit = 0x128
};
enum : unsigned { kUnitInch = 2, kUnitCentimetre = 3 };
// Field types, TIFF 6.0, section 2.
enum : unsigned {
  kTypeByte = 1,
  kTypeShort = 3,
  kTypeLong = 4,
  kTypeRational = 5,
  kTypeSignedByte = 6,
  kTypeSignedShort = 8,
  kTypeSignedLong = 9,
  kTypeSignedRational = 10
};

/// Numbers of a small TIFF structure in memory; what lies outside reads as 0.
class Fields {
 public:
  explicit Fields(std::span<const std::uint8_t> bytes) : m_bytes(bytes), m_bigEndian(bytes[0] == 'M') {}

  unsigned U16(std::size_t at) const {
    if (at > m_bytes.size() || m_bytes.size() - at < 2) return 0;
    return m_bigEndian ? m_bytes[at] << 8U | m_bytes[at + 1] : m_bytes[at + 1] << 8U | m_bytes[at];
  }
  std::uint32_t U32(std::size_t at) const {
    const std::uint32_t first = U16(at);
    const std::uint32_t second = U16(at + 2);
    return m_bigEndian ? first << 16 | second : second << 16 | first;
  }
  /// The first value of a directory entry, of whatever type and count a writer chose; 0 if it is no number.
  double Value(std::size_t entry) const {
    const unsigned type = U16(entry + 2);
    const std::size_t size = SizeOf(type);
    if (size == 0) return 0;
    return ValueAt(IsInPlace(entry, size) ? entry + 8 : U32(entry + 8), type);
  }

 private:
  /// Some writers count more values than the one that they put in place; then what should tell where the
  /// values are leads into the header or out of the block.
  bool IsInPlace(std::size_t entry, std::size_t size) const {
    constexpr std::size_t kRoom = 4;
    constexpr std::size_t kHeader = 8;
    if (size * std::max<std::uint64_t>(1, U32(entry + 4)) <= kRoom) return true;
    const std::size_t offset = U32(entry + 8);
    return size <= kRoom && (offset <= kHeader || offset + size > m_bytes.size());
  }
  static std::size_t SizeOf(unsigned type) {
    switch (type) {
      case kTypeByte:
      case kTypeSignedByte:
        return 1;
      case kTypeShort:
      case kTypeSignedShort:
        return 2;
      case kTypeLong:
      case kTypeSignedLong:
        return 4;
      case kTypeRational:
      case kTypeSignedRational:
        return 8;
      default:
        return 0;
    }
  }
  double ValueAt(std::size_t at, unsigned type) const {
    switch (type) {
      case kTypeByte:
        return at < m_bytes.size() ? m_bytes[at] : 0;
      case kTypeSignedByte:
        return at < m_bytes.size() ? static_cast<std::int8_t>(m_bytes[at]) : 0;
      case kTypeShort:
        return U16(at);
      case kTypeSignedShort:
        return static_cast<std::int16_t>(U16(at));
      case kTypeLong:
        return U32(at);
      case kTypeSignedLong:
        return Signed(at);
      case kTypeRational:
        return Quotient(U32(at), U32(at + 4));
      default:
        return Quotient(Signed(at), Signed(at + 4));
    }
  }
  double Signed(std::size_t at) const { return static_cast<std::int32_t>(U32(at)); }
  static double Quotient(double numerator, double denominator) {
    return denominator == 0 ? 0 : numerator / denominator;
  }

  std::span<const std::uint8_t> m_bytes;
  bool m_bigEndian;
};

}  // namespace

ExifData ReadExif(std::span<const std::uint8_t> tiff) {
  ExifData exif;
  if (!HasTiffSignature(tiff)) return exif;
  const Fields fields(tiff);
  const std::size_t directory = fields.U32(4);
  const unsigned count = fields.U16(directory);
  unsigned unit = kUnitInch;
  double xDensity = 0;
  double yDensity = 0;
  for (unsigned i = 0; i < count; ++i) {
    const std::size_t entry = directory + 2 + std::size_t{12} * i;
    if (entry + 12 > tiff.size()) break;
    const double value = fields.Value(entry);
    switch (fields.U16(entry)) {
      case kTagOrientation:
        exif.orientation = value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
        break;
      case kTagXResolution:
        xDensity = value;
        break;
      case kTagYResolution:
        yDensity = value;
        break;
      case kTagUnit:
        unit = static_cast<unsigned>(std::clamp(value, 0.0, 255.0));
        break;
      default:
        break;
    }
  }
  if (unit != kUnitInch && unit != kUnitCentimetre) return exif;
  const double perInch = unit == kUnitCentimetre ? kCentimetresPerInch : 1;
  exif.xResolution = DotsPerInch(xDensity * perInch);
  exif.yResolution = DotsPerInch(yDensity * perInch);
  return exif;
}

}  // namespace imaging
