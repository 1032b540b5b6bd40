#include "imaging/codecs/tiff_samples.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace imaging {
namespace {

/// IEEE 754 binary16; 24-bit floats have the same shape with 7 exponent and 16 fraction bits.
double SmallFloat(std::uint32_t value, int exponentBits, int fractionBits) {
  const auto fraction = static_cast<double>(value & ((1U << fractionBits) - 1));
  const int exponent = static_cast<int>(value >> fractionBits & ((1U << exponentBits) - 1));
  const bool negative = (value >> (exponentBits + fractionBits) & 1) != 0;
  const int bias = (1 << (exponentBits - 1)) - 1;
  if (exponent == (1 << exponentBits) - 1) return std::nan("");
  const double significand = exponent == 0 ? fraction : fraction + static_cast<double>(1U << fractionBits);
  const double size = std::ldexp(significand, std::max(exponent, 1) - bias - fractionBits);
  return negative ? -size : size;
}

}  // namespace

TiffSamples::TiffSamples(const TiffLayout& layout)
    : m_bits(layout.bitsPerSample),
      m_format(layout.sampleFormat),
      m_most(m_bits == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << m_bits) - 1),
      // Signed bytes are in practice unsigned ones under a wrong tag; only wider samples are taken at their
      // word.
      m_signFlip(m_format == SAMPLEFORMAT_INT && m_bits > 8 ? std::uint64_t{1} << (m_bits - 1) : 0) {
  const bool floatWidth = m_bits == 16 || m_bits == 24 || m_bits == 32 || m_bits == 64;
  if (Floats() && !floatWidth) m_format = SAMPLEFORMAT_UINT;
}

std::uint64_t TiffSamples::Whole(const std::uint8_t* packed, std::size_t index) const {
  switch (m_bits) {
    case 8:
      return packed[index];
    case 16: {
      std::uint16_t value = 0;
      std::memcpy(&value, packed + index * 2, sizeof value);
      return value;
    }
    case 24: {
      const std::uint8_t* bytes = packed + index * 3;
      return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 |
             static_cast<std::uint32_t>(bytes[2]) << 16;
    }
    case 32: {
      std::uint32_t value = 0;
      std::memcpy(&value, packed + index * 4, sizeof value);
      return value;
    }
    case 64: {
      std::uint64_t value = 0;
      std::memcpy(&value, packed + index * 8, sizeof value);
      return value;
    }
    default:
      break;
  }
  std::uint64_t value = 0;
  const std::size_t first = index * static_cast<std::size_t>(m_bits);
  for (int left = m_bits, at = 0; left > 0;) {
    const std::size_t bit = first + static_cast<std::size_t>(at);
    const int room = 8 - static_cast<int>(bit % 8);
    const int take = std::min(room, left);
    value = value << take | ((packed[bit / 8] >> (room - take)) & ((1U << take) - 1));
    at += take;
    left -= take;
  }
  return value;
}

double TiffSamples::Float(const std::uint8_t* packed, std::size_t index) const {
  const std::uint64_t bits = Whole(packed, index);
  switch (m_bits) {
    case 16:
      return SmallFloat(static_cast<std::uint32_t>(bits), 5, 10);
    case 24:
      return SmallFloat(static_cast<std::uint32_t>(bits), 7, 16);
    case 32:
      return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    default:
      return std::bit_cast<double>(bits);
  }
}

void TiffSamples::Measure(const std::uint8_t* packed, std::size_t count, SampleRange& range) const {
  for (std::size_t i = 0; i < count; ++i) {
    const double value = Float(packed, i);
    if (!std::isfinite(value)) continue;
    range.low = std::min(range.low, value);
    range.high = std::max(range.high, value);
  }
}

std::uint8_t TiffSamples::Scale(std::uint64_t value) const {
  if (m_bits > 16) return static_cast<std::uint8_t>((value ^ m_signFlip) >> (m_bits - 8));
  return static_cast<std::uint8_t>(((value ^ m_signFlip) * 255 + m_most / 2) / m_most);
}

void TiffSamples::ToBytes(const std::uint8_t* packed, std::size_t count, std::uint8_t* target,
                          std::size_t stride) const {
  if (Floats()) {
    const double scale = 255 / (m_range.high - m_range.low);
    for (std::size_t i = 0; i < count; ++i) {
      const double level = (Float(packed, i) - m_range.low) * scale;
      target[i * stride] = level > 0 ? static_cast<std::uint8_t>(std::lround(std::min(level, 255.0))) : 0;
    }
    return;
  }
  if (m_bits == 8) {
    if (stride == 1) {
      std::memcpy(target, packed, count);
      return;
    }
    for (std::size_t i = 0; i < count; ++i) target[i * stride] = packed[i];
    return;
  }
  for (std::size_t i = 0; i < count; ++i) target[i * stride] = Scale(Whole(packed, i));
}

void TiffSamples::ToIndices(const std::uint8_t* packed, std::size_t count, std::uint16_t* target,
                            std::size_t stride) const {
  for (std::size_t i = 0; i < count; ++i) target[i * stride] = static_cast<std::uint16_t>(Whole(packed, i));
}

}  // namespace imaging
