#include "helper/modules/exif_density.h"

#include <cmath>

namespace helper {
namespace {

/// Numbers of either byte order; 0 behind the end.
class Fields {
 public:
  explicit Fields(std::span<const std::uint8_t> bytes)
      : m_bytes(bytes), m_big(!bytes.empty() && bytes[0] == 'M') {}
  std::uint32_t At(std::size_t offset, std::size_t count) const {
    std::uint32_t value = 0;
    if (offset > m_bytes.size() || m_bytes.size() - offset < count) return 0;
    for (std::size_t i = 0; i < count; ++i)
      value = value << 8 | m_bytes[offset + (m_big ? i : count - 1 - i)];
    return value;
  }
  double Rational(std::size_t offset) const {
    const std::uint32_t below = At(offset + 4, 4);
    return below == 0 ? 0 : static_cast<double>(At(offset, 4)) / below;
  }

 private:
  std::span<const std::uint8_t> m_bytes;
  bool m_big;
};

int DotsPerInch(double value, std::uint32_t unit) {
  constexpr std::uint32_t kCentimetre = 3;
  constexpr double kMost = 100'000;
  const double dots = value * (unit == kCentimetre ? 2.54 : 1);
  return dots >= 1 && dots <= kMost ? static_cast<int>(std::lround(dots)) : 0;
}

}  // namespace

void ReadExifDensity(std::span<const std::uint8_t> tiff, PageRecord& record) {
  constexpr std::size_t kEntryBytes = 12;
  const Fields fields(tiff);
  const std::size_t directory = fields.At(4, 4);
  double x = 0;
  double y = 0;
  std::uint32_t unit = 2;
  for (std::size_t i = 0; i < fields.At(directory, 2); ++i) {
    const std::size_t entry = directory + 2 + i * kEntryBytes;
    switch (fields.At(entry, 2)) {
      case 0x11a:
        x = fields.Rational(fields.At(entry + 8, 4));
        break;
      case 0x11b:
        y = fields.Rational(fields.At(entry + 8, 4));
        break;
      case 0x128:
        unit = fields.At(entry + 8, 2);
        break;
      default:
        break;
    }
  }
  // Without a unit the two tell the shape of a pixel only.
  if (unit < 2) return;
  record.xResolution = DotsPerInch(x, unit);
  record.yResolution = DotsPerInch(y, unit);
}

}  // namespace helper
