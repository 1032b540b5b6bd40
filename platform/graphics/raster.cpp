#include "platform/graphics/detail/raster.h"

#include <bit>
#include <cstring>
#include <limits>

namespace platform {
namespace {

std::uint32_t ColorNumber(const Raster& raster, unsigned number) {
  return number < static_cast<unsigned>(raster.colorCount) ? raster.colors[number] : kBlack;
}

unsigned NumberAt(const BYTE* row, int x, int bits) {
  if (bits == 8) return row[x];
  if (bits == 4) return row[x / 2] >> (x % 2 == 0 ? 4 : 0) & 15U;
  return row[x / 8] >> (7 - x % 8) & 1U;
}

void PutNumber(BYTE* row, int x, int bits, unsigned number) {
  if (bits == 8) {
    row[x] = static_cast<BYTE>(number);
    return;
  }
  BYTE& cell = row[bits == 4 ? x / 2 : x / 8];
  const int shift = bits == 4 ? (x % 2 == 0 ? 4 : 0) : 7 - x % 8;
  const unsigned field = (bits == 4 ? 15U : 1U) << shift;
  cell = static_cast<BYTE>((cell & ~field) | (number << shift & field));
}

// 16 bits without masks hold five bits a colour.
std::array<std::uint32_t, 3> MasksOf(const Raster& raster) {
  if (raster.masks[0] != 0 || raster.masks[1] != 0 || raster.masks[2] != 0) return raster.masks;
  return raster.bits == 16 ? std::array<std::uint32_t, 3>{0x7c00, 0x3e0, 0x1f}
                           : std::array<std::uint32_t, 3>{0xff0000, 0xff00, 0xff};
}

// A field of any width widened or narrowed to 8 bits, its greatest value to 255.
std::uint32_t FieldToByte(std::uint32_t value, std::uint32_t mask) {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  const std::uint64_t top = mask >> shift;
  return static_cast<std::uint32_t>((std::uint64_t{(value & mask) >> shift} * 255 + top / 2) / top);
}

std::uint32_t ByteToField(std::uint32_t byte, std::uint32_t mask) {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  const std::uint64_t top = mask >> shift;
  return static_cast<std::uint32_t>((byte * top + 127) / 255) << shift & mask;
}

void ReadMasked(const Raster& raster, const BYTE* row, int x, int count, std::uint32_t* pixels) {
  const auto masks = MasksOf(raster);
  const int bytes = raster.bits / 8;
  for (int i = 0; i < count; ++i) {
    std::uint32_t value = 0;
    std::memcpy(&value, row + static_cast<std::ptrdiff_t>(x + i) * bytes, static_cast<std::size_t>(bytes));
    pixels[i] = kOpaque | FieldToByte(value, masks[0]) << 16 | FieldToByte(value, masks[1]) << 8 |
                FieldToByte(value, masks[2]);
  }
}

}  // namespace

void ReadRow(const Raster& raster, int x, int y, int count, std::uint32_t* pixels) {
  const BYTE* row = raster.Row(y);
  if (raster.IsPlain32()) {
    const BYTE* from = row + static_cast<std::ptrdiff_t>(x) * 4;
    for (int i = 0; i < count; ++i) {
      std::uint32_t pixel = 0;  // rows of blocks from files stand at any address
      std::memcpy(&pixel, from + static_cast<std::ptrdiff_t>(i) * 4, sizeof pixel);
      pixels[i] = pixel | kOpaque;
    }
  } else if (raster.bits == 24) {
    const BYTE* from = row + static_cast<std::ptrdiff_t>(x) * 3;
    for (int i = 0; i < count; ++i, from += 3)
      pixels[i] = kOpaque | static_cast<std::uint32_t>(from[2]) << 16 |
                  static_cast<std::uint32_t>(from[1]) << 8 | from[0];
  } else if (raster.bits == 16 || raster.bits == 32) {
    ReadMasked(raster, row, x, count, pixels);
  } else {
    for (int i = 0; i < count; ++i) pixels[i] = ColorNumber(raster, NumberAt(row, x + i, raster.bits));
  }
}

int RowWriter::Match(std::uint32_t pixel) {
  if (m_matched.empty()) m_matched.resize(kMemory);
  Matched& memory = m_matched[(pixel * 2654435761U) >> 22];
  if (memory.pixel == pixel) return memory.number;
  int best = 0;
  int least = std::numeric_limits<int>::max();
  for (int i = 0; i < m_raster.colorCount && least != 0; ++i) {
    const std::uint32_t color = m_raster.colors[i];
    int distance = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const int gap = static_cast<int>(pixel >> shift & 0xff) - static_cast<int>(color >> shift & 0xff);
      distance += gap * gap;
    }
    if (distance < least) {
      least = distance;
      best = i;
    }
  }
  memory = {pixel, best};
  return best;
}

void RowWriter::WriteNumbers(BYTE* row, int x, int count, const std::uint32_t* pixels) {
  for (int i = 0; i < count; ++i)
    PutNumber(row, x + i, m_raster.bits, static_cast<unsigned>(Match(pixels[i] | kOpaque)));
}

void RowWriter::WriteMasked(BYTE* row, int x, int count, const std::uint32_t* pixels) const {
  const auto masks = MasksOf(m_raster);
  const int bytes = m_raster.bits / 8;
  for (int i = 0; i < count; ++i) {
    const std::uint32_t value = ByteToField(pixels[i] >> 16 & 0xff, masks[0]) |
                                ByteToField(pixels[i] >> 8 & 0xff, masks[1]) |
                                ByteToField(pixels[i] & 0xff, masks[2]);
    std::memcpy(row + static_cast<std::ptrdiff_t>(x + i) * bytes, &value, static_cast<std::size_t>(bytes));
  }
}

void RowWriter::Write(int x, int y, int count, const std::uint32_t* pixels) {
  BYTE* row = m_raster.Row(y);
  if (m_raster.IsPlain32()) {
    std::memcpy(row + static_cast<std::ptrdiff_t>(x) * 4, pixels, static_cast<std::size_t>(count) * 4);
  } else if (m_raster.bits == 24) {
    BYTE* to = row + static_cast<std::ptrdiff_t>(x) * 3;
    for (int i = 0; i < count; ++i, to += 3) {
      to[0] = static_cast<BYTE>(pixels[i]);
      to[1] = static_cast<BYTE>(pixels[i] >> 8);
      to[2] = static_cast<BYTE>(pixels[i] >> 16);
    }
  } else if (m_raster.bits == 16 || m_raster.bits == 32) {
    WriteMasked(row, x, count, pixels);
  } else {
    WriteNumbers(row, x, count, pixels);
  }
}

void CombineRow(unsigned table, std::uint32_t brush, const std::uint32_t* source, std::uint32_t* target,
                int count) {
  // One mask per line of the truth table keeps the loop free of branches, so that the compiler vectorises it.
  std::array<std::uint32_t, 8> on = {};
  for (unsigned i = 0; i < 8; ++i) on[i] = (table >> i & 1) != 0 ? 0xffffffffU : 0;
  // The brush is the same for all pixels: four lines remain.
  std::array<std::uint32_t, 4> line = {};
  for (unsigned i = 0; i < 4; ++i) line[i] = (on[i] & ~brush) | (on[i + 4] & brush);
  for (int i = 0; i < count; ++i) {
    const std::uint32_t s = source[i];
    const std::uint32_t d = target[i];
    target[i] = kOpaque | (line[0] & ~s & ~d) | (line[1] & ~s & d) | (line[2] & s & ~d) | (line[3] & s & d);
  }
}

}  // namespace platform
