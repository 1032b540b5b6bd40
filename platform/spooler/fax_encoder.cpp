#include "platform/spooler/detail/fax_encoder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "platform/base/fax_codes.h"

namespace platform {
namespace {

// Repeats of the width behind the changes, so that looking a few changes ahead needs no test for the end.
constexpr std::size_t kGuards = 4;
constexpr int kWordBits = 64;

// Mode codes, ITU-T T.6, table 1.
constexpr FaxCode kPass = {0b0001, 4};
constexpr FaxCode kHorizontal = {0b001, 3};
constexpr FaxCode kVertical[] = {{0b0000010, 7}, {0b000010, 6}, {0b010, 3},    {0b1, 1},
                                 {0b011, 3},     {0b000011, 6}, {0b0000011, 7}};  // a1 - b1 from -3 to 3
constexpr int kFarthestVertical = 3;
constexpr FaxCode kEndOfLine = {0b000000000001, 12};

std::uint64_t BigEndian(const std::uint8_t* bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  return word;
}

}  // namespace

FaxEncoder::FaxEncoder(int width, int blackBit)
    : m_width(width),
      m_invert(blackBit != 0 ? 0 : ~std::uint64_t{0}),
      m_changes(static_cast<std::size_t>(width) + kGuards, width),
      m_above(static_cast<std::size_t>(width) + kGuards, width) {}

void FaxEncoder::FindChanges(const std::uint8_t* row) {
  int* out = m_changes.data();
  std::uint64_t before = 0;  // the pixel before, in the high bit; a row begins behind a white one
  for (int x = 0; x < m_width; x += kWordBits) {
    const int bits = std::min(m_width - x, kWordBits);
    std::uint64_t word = 0;
    if (bits == kWordBits) {
      word = BigEndian(row + x / 8);
    } else {
      std::uint8_t tail[8] = {};
      std::memcpy(tail, row + x / 8, static_cast<std::size_t>((bits + 7) / 8));
      word = BigEndian(tail);
    }
    word ^= m_invert;
    std::uint64_t changed = word ^ (word >> 1 | before);
    if (bits < kWordBits) changed &= ~std::uint64_t{0} << (kWordBits - bits);
    before = word << 63;
    while (changed != 0) {
      const int at = std::countl_zero(changed);
      *out++ = x + at;
      changed &= ~(std::uint64_t{1} << (kWordBits - 1 - at));
    }
  }
  m_changeCount = static_cast<std::size_t>(out - m_changes.data());
  std::fill_n(out, kGuards, m_width);
}

void FaxEncoder::AddRow(const std::uint8_t* row) {
  FindChanges(row);
  // The most that a row takes: a pair of single pixels in horizontal mode, 12 bits.
  const std::size_t room = static_cast<std::size_t>(m_width) + 64;
  if (m_output.size() - m_size < room) m_output.resize(std::max(m_output.size() * 2, m_size + room));
  if (m_changeCount == m_aboveCount &&
      std::equal(m_changes.begin(), m_changes.begin() + static_cast<std::ptrdiff_t>(m_changeCount),
                 m_above.begin()))
    PutOnes(m_changeCount + 1);  // every change, and the end of the row, straight below those above
  else
    CodeRow();
  std::swap(m_changes, m_above);
  m_aboveCount = m_changeCount;
}

// ITU-T T.6, 2.2.1: a0 is the last coded position, a1 the next change of this row, b1 the first change above,
// right of a0, to the colour opposite to a0's, b2 the one behind b1.
void FaxEncoder::CodeRow() {
  const int* next = m_changes.data();
  const int* const above = m_above.data();
  std::size_t b = 0;  // index of b1; even ones change to black
  int a0 = -1;        // before the first pixel
  bool black = false;
  while (a0 < m_width) {
    while (above[b] <= a0 && above[b] < m_width) b += 2;
    const int a1 = next[0];
    const int b1 = above[b];
    const int b2 = above[b + 1];
    const int distance = a1 - b1;
    if (b2 < a1) {
      Put(kPass.bits, kPass.length);
      a0 = b2;
    } else if (distance >= -kFarthestVertical && distance <= kFarthestVertical) {
      const FaxCode code = kVertical[distance + kFarthestVertical];
      Put(code.bits, code.length);
      a0 = a1;
      ++next;
      black = !black;
      b = b > 0 ? b - 1 : 1;
    } else {
      Put(kHorizontal.bits, kHorizontal.length);
      PutRun(a1 - std::max(a0, 0), black);
      PutRun(next[1] - a1, !black);
      a0 = next[1];
      next += 2;  // past the end only when the row is done
    }
  }
}

void FaxEncoder::PutOnes(std::size_t count) {
  constexpr int kAtOnce = 16;
  for (; count >= kAtOnce; count -= kAtOnce) Put(0xffff, kAtOnce);
  if (count > 0) Put((1U << count) - 1, static_cast<int>(count));
}

void FaxEncoder::PutRun(int run, bool black) {
  const auto put = [this](FaxCode code) { Put(code.bits, code.length); };
  for (; run >= kLongestMakeUp + kMakeUpStep; run -= kLongestMakeUp) put(MakeUpCode(kLongestMakeUp, black));
  if (run >= kMakeUpStep) put(MakeUpCode(run / kMakeUpStep * kMakeUpStep, black));
  put(TerminatingCode(run % kMakeUpStep, black));
}

void FaxEncoder::Flush32() {
  m_bitCount -= 32;
  const auto word = static_cast<std::uint32_t>(m_bits >> m_bitCount);
  for (int shift = 24; shift >= 0; shift -= 8) m_output[m_size++] = static_cast<std::uint8_t>(word >> shift);
}

std::span<const std::uint8_t> FaxEncoder::Drain() {
  const std::size_t size = std::exchange(m_size, 0);
  return {m_output.data(), size};
}

std::span<const std::uint8_t> FaxEncoder::Finish() {
  m_output.resize(m_size + 16);
  Put(kEndOfLine.bits, kEndOfLine.length);
  Put(kEndOfLine.bits, kEndOfLine.length);
  Put(0, (8 - m_bitCount % 8) % 8);
  for (; m_bitCount > 0; m_bitCount -= 8)
    m_output[m_size++] = static_cast<std::uint8_t>(m_bits >> (m_bitCount - 8));
  return {m_output.data(), m_size};
}

}  // namespace platform
