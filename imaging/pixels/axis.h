#pragma once

#include <cstdint>

namespace imaging {

/// The source pixels of one result pixel along one axis, with whole-numbered weights that add up to
/// BoxAxis::Sum for every result pixel, so that an even area stays exactly even.
struct BoxSpan {
  std::int32_t first;  ///< source pixel with the weight firstWeight
  std::int32_t full;   ///< how many pixels of weight 2^fraction follow
  std::uint32_t firstWeight;
  std::uint32_t lastWeight;  ///< of pixel first + 1 + full; 0: that pixel isn't touched
};

/// How source pixels (length of them) lie on result pixels (size of them) along one axis. A reduction
/// averages the source interval below each result pixel, its ends weighted by the part covered. So does an
/// enlargement by less than half: with pixels repeated here and not there, strokes of one width would come
/// out in two. Otherwise a result pixel takes the source pixel below its centre.
class BoxAxis {
 public:
  /// fraction: bits of a full pixel's weight.
  BoxAxis(int length, int size, int fraction);
  static bool Averages(int length, int size) {
    return size < length || (size > length && std::int64_t{2} * size < std::int64_t{3} * length);
  }
  /// The most weight bits, up to 14, with which total bits hold all sums of weights.
  static int FractionFor(int length, int size, int totalBits);
  /// The source pixel below the centre of a result pixel.
  static int Nearest(int position, int length, int size) {
    return static_cast<int>((2 * static_cast<std::int64_t>(position) + 1) * length /
                            (2 * static_cast<std::int64_t>(size)));
  }

  BoxSpan At(int position) const;
  std::uint32_t Sum() const { return m_sum; }
  int Fraction() const { return m_fraction; }

 private:
  std::int64_t m_length;
  std::int64_t m_size;
  int m_fraction;
  std::uint32_t m_sum;
};

}  // namespace imaging
