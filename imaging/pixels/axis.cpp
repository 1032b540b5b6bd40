#include "imaging/pixels/axis.h"

#include <algorithm>
#include <bit>

namespace imaging {

int BoxAxis::FractionFor(int length, int size, int totalBits) {
  const unsigned pixels = Averages(length, size) ? static_cast<unsigned>(length / size) + 2 : 2;
  return std::clamp(totalBits - static_cast<int>(std::bit_width(pixels)), 0, 14);
}

BoxAxis::BoxAxis(int length, int size, int fraction) : m_length(length), m_size(size), m_fraction(fraction) {
  const std::int64_t full = std::int64_t{1} << fraction;
  m_sum = static_cast<std::uint32_t>(Averages(length, size) ? (m_length * full + m_size / 2) / m_size : full);
}

BoxSpan BoxAxis::At(int position) const {
  const std::int64_t full = std::int64_t{1} << m_fraction;
  if (!Averages(static_cast<int>(m_length), static_cast<int>(m_size)))
    return {Nearest(position, static_cast<int>(m_length), static_cast<int>(m_size)), 0, m_sum, 0};
  // The interval begins and ends at these multiples of 1 / size of a source pixel.
  const std::int64_t begin = position * m_length;
  const std::int64_t end = begin + m_length;
  const std::int64_t first = begin / m_size;
  const std::int64_t count = end / m_size - first - 1;
  if (count < 0) return {static_cast<std::int32_t>(first), 0, m_sum, 0};  // inside one source pixel
  const std::int64_t firstWeight = ((m_size - begin % m_size) * full + m_size / 2) / m_size;
  // All roundings are to the nearest, so what the sum leaves is never below 0, and 0 where the interval ends
  // with a whole pixel.
  const std::int64_t lastWeight = m_sum - firstWeight - count * full;
  return {static_cast<std::int32_t>(first), static_cast<std::int32_t>(count),
          static_cast<std::uint32_t>(firstWeight), static_cast<std::uint32_t>(lastWeight)};
}

}  // namespace imaging
