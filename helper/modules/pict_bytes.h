#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "helper/module.h"

namespace helper {

/// Thrown where the file ends; what was decoded before is kept.
struct EndOfPict {};

struct PictRect {
  int top = 0;
  int left = 0;
  int bottom = 0;
  int right = 0;
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool IsEmpty() const { return right <= left || bottom <= top; }
  bool operator==(const PictRect&) const = default;
};

/// The opcodes and their operands, big endian.
class PictBytes {
 public:
  explicit PictBytes(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}
  std::size_t Place() const { return m_at; }
  std::span<const std::uint8_t> Take(std::size_t count) {
    if (count > m_bytes.size() - m_at) throw EndOfPict();
    m_at += count;
    return m_bytes.subspan(m_at - count, count);
  }
  void Skip(std::size_t count) { Take(count); }
  std::uint32_t Unsigned(std::size_t count) {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : Take(count)) value = value << 8 | byte;
    return value;
  }
  int Byte() { return static_cast<int>(Unsigned(1)); }
  int Word() { return static_cast<int>(Unsigned(2)); }
  int Short() { return static_cast<std::int16_t>(Unsigned(2)); }
  PictRect Rect() {
    PictRect rect;
    rect.top = Short();
    rect.left = Short();
    rect.bottom = Short();
    rect.right = Short();
    return rect;
  }
  /// A region or a polygon: its length, which counts itself, and its bounds first.
  PictRect SkipRegion() {
    constexpr int kSmallest = 10;
    const int length = Word();
    const PictRect bounds = Rect();
    if (length < kSmallest) throw EndOfPict();
    Skip(static_cast<std::size_t>(length - kSmallest));
    return bounds;
  }

 private:
  std::span<const std::uint8_t> m_bytes;
  std::size_t m_at = 0;
};

}  // namespace helper
