#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <numeric>
#include <vector>

#include "imaging/pixels/eight_rows.h"
#include "imaging/pixels/kernels.h"
#include "imaging/pixels/reduce.h"

// Reductions of two-level images for any processor: packed blocks of 2, 4 and 8 by sums within bytes, sixteen
// bytes at a time; all others by the counts of their columns.

namespace imaging {
namespace {

using eight_rows::Bytes;
using eight_rows::Words;

Bytes All(unsigned byte) {
  return Bytes{} + static_cast<std::uint8_t>(byte);
}
/// The bits of each byte shifted down, those of the mask alone.
Bytes Down(Bytes bytes, int bits, unsigned mask) {
  return reinterpret_cast<Bytes>(reinterpret_cast<Words>(bytes) >> bits) & All(mask);
}
/// The set bits of each pair of a byte's bits, of each four, and of all.
Bytes CountPairs(Bytes bits) {
  return bits - Down(bits, 1, 0x55);
}
Bytes CountFours(Bytes bits) {
  const Bytes pairs = CountPairs(bits);
  return (pairs & All(0x33)) + Down(pairs, 2, 0x33);
}
Bytes CountAll(Bytes bits) {
  const Bytes fours = CountFours(bits);
  return (fours & All(15)) + Down(fours, 4, 15);
}

/// count * 255 / n^2, cut off, of n = 2, 4 and 8. That is count * 256 / n^2, less 1 unless it is 0; the byte
/// overflows where it must.
template <int N>
Bytes GrayOf(Bytes counts) {
  constexpr int kFactor = 256 / (N * N);
  const auto shifted = reinterpret_cast<Bytes>(reinterpret_cast<Words>(counts) * std::uint16_t{kFactor});
  return (shifted & All(256 - kFactor)) + reinterpret_cast<Bytes>(counts != Bytes{});
}

/// Sixteen bytes of each row of a row of blocks; all ones in flip count the clear bits.
struct Rows {
  const std::uint8_t* at;
  std::ptrdiff_t pitch;
  Bytes flip;
  Bytes operator[](int y) const { return eight_rows::Load<Bytes>(at + y * pitch) ^ flip; }
};

template <int N>
void ReducePacked(const Rows& rows, std::uint8_t* out);

template <>
void ReducePacked<2>(const Rows& rows, std::uint8_t* out) {
  const Bytes upper = CountPairs(rows[0]);
  const Bytes lower = CountPairs(rows[1]);
  const Bytes even = Down(upper, 2, 0x33) + Down(lower, 2, 0x33);
  const Bytes odd = (upper & All(0x33)) + (lower & All(0x33));
  const Bytes first = GrayOf<2>(Down(even, 4, 15));
  const Bytes second = GrayOf<2>(Down(odd, 4, 15));
  const Bytes third = GrayOf<2>(even & All(15));
  const Bytes fourth = GrayOf<2>(odd & All(15));
  const auto low = reinterpret_cast<Words>(eight_rows::Low(first, second));
  const auto high = reinterpret_cast<Words>(eight_rows::High(first, second));
  const auto nextLow = reinterpret_cast<Words>(eight_rows::Low(third, fourth));
  const auto nextHigh = reinterpret_cast<Words>(eight_rows::High(third, fourth));
  const Words blocks[] = {eight_rows::Low(low, nextLow), eight_rows::High(low, nextLow),
                          eight_rows::Low(high, nextHigh), eight_rows::High(high, nextHigh)};
  std::memcpy(out, blocks, sizeof blocks);
}

template <>
void ReducePacked<4>(const Rows& rows, std::uint8_t* out) {
  Bytes first{};
  Bytes second{};
  for (int y = 0; y < 4; ++y) {
    const Bytes fours = CountFours(rows[y]);
    first += Down(fours, 4, 15);
    second += fours & All(15);
  }
  first = GrayOf<4>(first);
  second = GrayOf<4>(second);
  const Bytes blocks[] = {eight_rows::Low(first, second), eight_rows::High(first, second)};
  std::memcpy(out, blocks, sizeof blocks);
}

template <>
void ReducePacked<8>(const Rows& rows, std::uint8_t* out) {
  Bytes counts{};
  for (int y = 0; y < 8; ++y) counts += CountAll(rows[y]);
  const Bytes blocks = GrayOf<8>(counts);
  std::memcpy(out, &blocks, sizeof blocks);
}

template <int N>
void ReduceAllPacked(const TwoLevelBlocks& blocks) {
  constexpr int kOutputs = static_cast<int>(sizeof(Bytes)) * 8 / N;
  const Bytes flip = All(blocks.invert ? 255 : 0);
  for (int y = 0; y < blocks.height; ++y) {
    Rows rows{blocks.source + std::ptrdiff_t{y} * N * blocks.sourcePitch, blocks.sourcePitch, flip};
    std::uint8_t* target = blocks.target + y * blocks.targetPitch;
    int x = 0;
    for (; x + kOutputs <= blocks.width; x += kOutputs, rows.at += sizeof(Bytes))
      ReducePacked<N>(rows, target + x);
    if (x == blocks.width) continue;
    std::array<std::uint8_t, kOutputs> rest;
    ReducePacked<N>(rows, rest.data());
    std::copy_n(rest.begin(), blocks.width - x, target + x);
  }
}

/// The set pixels of each column of a row of blocks.
template <typename Count>
void AddRow(const std::uint8_t* row, int bits, Count* counts, std::size_t columns) {
  if (bits == 8)
    for (std::size_t x = 0; x < columns; ++x)
      counts[x] = static_cast<Count>(counts[x] + (row[x] != 0 ? 1 : 0));
  else
    for (std::size_t x = 0; x < columns; ++x)
      counts[x] = static_cast<Count>(counts[x] + (row[x / 8] >> (7 - x % 8) & 1));
}

void CountColumns(const TwoLevelBlocks& blocks, const std::uint8_t* rows, std::vector<std::uint8_t>& counts) {
  const std::size_t columns =
      static_cast<std::size_t>(blocks.width) * static_cast<std::size_t>(blocks.divisor);
  if (blocks.bits == 1) {
    PlainKernels().countBits(counts.data(), rows, blocks.sourcePitch, blocks.divisor, (columns + 7) / 8);
    return;
  }
  std::fill_n(counts.begin(), columns, std::uint8_t{0});
  for (int i = 0; i < blocks.divisor; ++i, rows += blocks.sourcePitch)
    AddRow(rows, 8, counts.data(), columns);
}

/// The sum of up to 255 bytes of at most 255, of which eight at a time are read; lastMask has the bits of
/// those of the last eight that count.
unsigned SumOf(const std::uint8_t* bytes, int count, std::uint64_t lastMask) {
  constexpr std::uint64_t kEven = 0x00ff00ff00ff00ff;
  const auto read = [](const std::uint8_t* at) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, at, sizeof eight);
    return eight;
  };
  std::uint64_t sums = 0;
  for (; count > 8; count -= 8, bytes += 8) {
    const std::uint64_t eight = read(bytes);
    sums += (eight & kEven) + (eight >> 8 & kEven);
  }
  const std::uint64_t last = read(bytes) & lastMask;
  sums += (last & kEven) + (last >> 8 & kEven);
  return static_cast<unsigned>(sums * 0x0001000100010001 >> 48);
}

/// All ones in so many bytes from the first in memory on, 1 to 8.
std::uint64_t FirstBytes(int count) {
  std::array<std::uint8_t, 8> bytes{};
  std::fill_n(bytes.begin(), count, std::uint8_t{255});
  std::uint64_t mask = 0;
  std::memcpy(&mask, bytes.data(), sizeof mask);
  return mask;
}

/// For divisors up to 255, whose counts are bytes.
void ReduceByColumns(const TwoLevelBlocks& blocks) {
  constexpr std::size_t kReadTooMuch = 8;
  const int n = blocks.divisor;
  std::vector<std::uint8_t> gray = GrayTable(n);
  if (blocks.invert) std::reverse(gray.begin(), gray.end());
  const std::uint64_t lastMask = FirstBytes((n - 1) % 8 + 1);
  std::vector<std::uint8_t> counts(static_cast<std::size_t>(blocks.width) * static_cast<std::size_t>(n) +
                                   2 * kReadTooMuch);
  for (int y = 0; y < blocks.height; ++y) {
    CountColumns(blocks, blocks.source + std::ptrdiff_t{y} * n * blocks.sourcePitch, counts);
    const std::uint8_t* column = counts.data();
    std::uint8_t* target = blocks.target + y * blocks.targetPitch;
    if (n == 2)
      for (int x = 0; x < blocks.width; ++x, column += 2)
        target[x] = gray[std::size_t{column[0]} + column[1]];
    else
      for (int x = 0; x < blocks.width; ++x, column += n) target[x] = gray[SumOf(column, n, lastMask)];
  }
}

/// For the few larger ones.
void ReduceByWideColumns(const TwoLevelBlocks& blocks) {
  const auto n = static_cast<std::size_t>(blocks.divisor);
  const std::uint64_t pixels = std::uint64_t{n} * n;
  std::vector<std::uint32_t> counts(static_cast<std::size_t>(blocks.width) * n);
  const std::uint8_t* row = blocks.source;
  for (int y = 0; y < blocks.height; ++y) {
    std::fill(counts.begin(), counts.end(), 0);
    for (std::size_t i = 0; i < n; ++i, row += blocks.sourcePitch)
      AddRow(row, blocks.bits, counts.data(), counts.size());
    std::uint8_t* target = blocks.target + y * blocks.targetPitch;
    for (auto block = counts.begin(); block != counts.end(); block += blocks.divisor) {
      const std::uint64_t set = std::accumulate(block, block + blocks.divisor, std::uint64_t{0});
      *target++ = static_cast<std::uint8_t>((blocks.invert ? pixels - set : set) * 255 / pixels);
    }
  }
}

}  // namespace

std::vector<std::uint8_t> GrayTable(int divisor) {
  const std::size_t pixels = static_cast<std::size_t>(divisor) * static_cast<std::size_t>(divisor);
  std::vector<std::uint8_t> gray(pixels + 1);
  for (std::size_t count = 0; count <= pixels; ++count)
    gray[count] = static_cast<std::uint8_t>(count * 255 / pixels);
  return gray;
}

void ReduceBlocksPlain(const TwoLevelBlocks& blocks) {
  if (blocks.bits == 1 && blocks.divisor == 2)
    ReduceAllPacked<2>(blocks);
  else if (blocks.bits == 1 && blocks.divisor == 4)
    ReduceAllPacked<4>(blocks);
  else if (blocks.bits == 1 && blocks.divisor == 8)
    ReduceAllPacked<8>(blocks);
  else if (blocks.divisor <= std::numeric_limits<std::uint8_t>::max())
    ReduceByColumns(blocks);
  else
    ReduceByWideColumns(blocks);
}

}  // namespace imaging
