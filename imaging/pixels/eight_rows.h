#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// Eight rows side by side and apart again, in vectors of 16 bytes, which every processor that this is built
// for has (the compiler makes single steps of them where one hasn't).

namespace imaging::eight_rows {

using Words = std::uint16_t __attribute__((vector_size(16)));
using Bytes = std::uint8_t __attribute__((vector_size(16)));

template <typename Vector>
Vector Load(const void* at) {
  Vector vector;
  std::memcpy(&vector, at, sizeof vector);
  return vector;
}

inline Words Low(Words a, Words b) {
  return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}
inline Words High(Words a, Words b) {
  return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}
inline Bytes Low(Bytes a, Bytes b) {
  return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
inline Bytes High(Bytes a, Bytes b) {
  return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}

/// One round of interleaving what stands four vectors apart: the index of an element turns by one bit.
template <typename Vector>
void Round(Vector (&out)[8], const Vector (&in)[8]) {
  for (int k = 0; k < 4; ++k) {
    out[2 * k] = Low(in[k], in[k + 4]);
    out[2 * k + 1] = High(in[k], in[k + 4]);
  }
}

/// out[8 i + r] = row r [i]. stride: elements from row to row. Blocks of 8 by 8 are transposed by three
/// rounds.
inline void Interleave(std::uint16_t* out, const std::uint16_t* sums, std::ptrdiff_t stride,
                       std::size_t count) {
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    Words a[8];
    Words b[8];
    for (int r = 0; r < 8; ++r) a[r] = Load<Words>(sums + i + r * stride);
    Round(b, a);
    Round(a, b);
    Round(b, a);
    std::memcpy(out + 8 * i, b, sizeof b);
  }
  for (; i < count; ++i)
    for (std::size_t r = 0; r < 8; ++r) out[8 * i + r] = sums[i + r * static_cast<std::size_t>(stride)];
}

/// out row r [i] = bytes[8 i + r], of the first rows of eight. Blocks of 16 by 8 bytes take four rounds,
/// which turn the index by four of its seven bits.
inline void Deinterleave(std::uint8_t* out, std::ptrdiff_t stride, const std::uint8_t* bytes,
                         std::size_t count, int rows) {
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    Bytes a[8];
    Bytes b[8];
    std::memcpy(a, bytes + 8 * i, sizeof a);
    Round(b, a);
    Round(a, b);
    Round(b, a);
    Round(a, b);
    for (int r = 0; r < rows; ++r) std::memcpy(out + r * stride + i, &a[r], sizeof a[r]);
  }
  for (int r = 0; r < rows; ++r)
    for (std::size_t k = i; k < count; ++k) out[r * stride + k] = bytes[8 * k + static_cast<std::size_t>(r)];
}

}  // namespace imaging::eight_rows
