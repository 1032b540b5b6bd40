#include "imaging/codecs/exif.h"

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
enum : unsigned { kTypeShort = 3, kTypeRational = 5 };

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
  double Rational(std::size_t at) const {
    const std::uint32_t denominator = U32(at + 4);
    return denominator == 0 ? 0 : static_cast<double>(U32(at)) / denominator;
  }

 private:
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
    const unsigned type = fields.U16(entry + 2);
    const unsigned number = type == kTypeShort ? fields.U16(entry + 8) : 0;
    const double real = type == kTypeRational ? fields.Rational(fields.U32(entry + 8)) : 0;
    switch (fields.U16(entry)) {
      case kTagOrientation:
        exif.orientation = number >= 1 && number <= 8 ? static_cast<int>(number) : 1;
        break;
      case kTagXResolution:
        xDensity = real;
        break;
      case kTagYResolution:
        yDensity = real;
        break;
      case kTagUnit:
        unit = number;
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
