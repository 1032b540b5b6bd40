#include "imaging/pixels/orient.h"

#include <algorithm>
#include <cstring>

#include "imaging/core/exception.h"
#include "imaging/pixels/transpose.h"

namespace imaging {
namespace {

template <int Size>
void ReverseElements(std::uint8_t* out, const std::uint8_t* row, int width) {
  for (int x = 0; x < width; ++x)
    std::memcpy(out + static_cast<std::ptrdiff_t>(width - 1 - x) * Size,
                row + static_cast<std::ptrdiff_t>(x) * Size, Size);
}

std::uint8_t ReverseBits(unsigned byte) {
  byte = (byte & 0xf0) >> 4 | (byte & 0x0f) << 4;
  byte = (byte & 0xcc) >> 2 | (byte & 0x33) << 2;
  return static_cast<std::uint8_t>((byte & 0xaa) >> 1 | (byte & 0x55) << 1);
}

/// Reverses the bytes of a packed row, each reversed in itself, and moves out the unused bits, which come
/// first.
template <typename ReverseByte>
void ReversePacked(std::uint8_t* out, const std::uint8_t* row, std::size_t bits, ReverseByte reverse) {
  const std::size_t bytes = (bits + 7) / 8;
  const unsigned unused = static_cast<unsigned>(bytes * 8 - bits);
  unsigned current = reverse(row[bytes - 1]);
  for (std::size_t i = 0; i < bytes; ++i) {
    const unsigned next = i + 1 < bytes ? reverse(row[bytes - 2 - i]) : 0;
    out[i] = static_cast<std::uint8_t>((current << 8 | next) << unused >> 8);
    current = next;
  }
}

void ReverseRow(std::uint8_t* out, const std::uint8_t* row, int width, int bits) {
  const auto rowBits = static_cast<std::size_t>(width) * static_cast<std::size_t>(bits);
  switch (bits) {
    case 1:
      return ReversePacked(out, row, rowBits, ReverseBits);
    case 4:
      return ReversePacked(out, row, rowBits,
                           [](unsigned byte) { return static_cast<std::uint8_t>(byte >> 4 | byte << 4); });
    case 8:
      return ReverseElements<1>(out, row, width);
    case 24:
      return ReverseElements<3>(out, row, width);
    default:
      return ReverseElements<4>(out, row, width);
  }
}

}  // namespace

Turn TurnToNormal(int orientation) {
  switch (orientation) {
    case 0:
    case 1:
      return {};
    case 2:
      return {false, true, false};
    case 3:
      return kHalf;
    case 4:
      return {false, false, true};
    case 5:
      return {true, false, false};
    case 6:
      return kQuarterClockwise;
    case 7:
      return {true, true, true};
    case 8:
      return kQuarterCounterclockwise;
    default:
      Fail(kErrorInvalidParameter, "There is no orientation %d", orientation);
  }
}

Turn Inverse(Turn turn) {
  // Columns of the source are rows of a transposed result, so the mirrors change places.
  if (turn.transpose) std::swap(turn.mirrorColumns, turn.mirrorRows);
  return turn;
}

std::unique_ptr<PixelStorage> Turned(const PixelStorage& source, Turn turn) {
  const int width = source.Width();
  const int height = source.Height();
  const int bits = source.HeldBits();
  auto target = turn.transpose ? source.CreateAlike(height, width) : source.CreateAlike(width, height);
  target->SetLossy(source.IsLossy());
  const ConstPixelPlane from{source.HeldRow(turn.mirrorRows ? height - 1 : 0),
                             turn.mirrorRows ? -source.HeldPitch() : source.HeldPitch()};
  if (turn.transpose) {
    // Source column c is result row c, or the c-th from the bottom when columns are mirrored.
    const PixelPlane to{target->HeldRow(turn.mirrorColumns ? width - 1 : 0),
                        turn.mirrorColumns ? -target->HeldPitch() : target->HeldPitch()};
    Transpose(to, from, width, height, bits);
    return target;
  }
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* row = from.pixels + y * from.stride;
    if (turn.mirrorColumns)
      ReverseRow(target->HeldRow(y), row, width, bits);
    else
      std::memcpy(target->HeldRow(y), row, source.HeldRowBytes());
  }
  return target;
}

}  // namespace imaging
