#include "imaging/pixels/transpose.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace imaging {
namespace {

// Rows of a block's columns stay in the second-level cache until the neighbouring blocks have used them too.
constexpr int kBlock = 16;

template <int Size>
void TransposeElements(PixelPlane target, ConstPixelPlane source, int columns, int rows) {
  for (int c = 0; c < columns; ++c)
    for (int r = 0; r < rows; ++r)
      std::memcpy(target.pixels + c * target.stride + r * Size, source.pixels + r * source.stride + c * Size,
                  Size);
}

#if defined(__SSE2__)
/// 16 rows of 16 bytes: four rounds of interleaving rows that stand eight apart.
void TransposeBlock8(PixelPlane target, ConstPixelPlane source) {
  __m128i a[16];
  __m128i b[16];
  for (int i = 0; i < 16; ++i)
    a[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source.pixels + i * source.stride));
  const auto interleave = [](__m128i* out, const __m128i* in) {
    for (int i = 0; i < 8; ++i) {
      out[2 * i] = _mm_unpacklo_epi8(in[i], in[i + 8]);
      out[2 * i + 1] = _mm_unpackhi_epi8(in[i], in[i + 8]);
    }
  };
  interleave(b, a);
  interleave(a, b);
  interleave(b, a);
  interleave(a, b);
  for (int i = 0; i < 16; ++i)
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target.pixels + i * target.stride), a[i]);
}
#else
void TransposeBlock8(PixelPlane target, ConstPixelPlane source) {
  TransposeElements<1>(target, source, 16, 16);
}
#endif

/// Whole pixels by four bytes at a time: the byte too much is the next pixel's, which is written later.
void TransposeBlock24(PixelPlane target, ConstPixelPlane source) {
  for (int c = 0; c < kBlock; ++c) {
    std::uint8_t* out = target.pixels + c * target.stride;
    const std::uint8_t* in = source.pixels + static_cast<std::ptrdiff_t>(c) * 3;
    for (int r = 0; r + 1 < kBlock; ++r, out += 3, in += source.stride) std::memcpy(out, in, 4);
    std::memcpy(out, in, 3);
  }
}

template <int Size>
void TransposeBlock(PixelPlane target, ConstPixelPlane source) {
  if (Size == 1)
    TransposeBlock8(target, source);
  else if (Size == 3)
    TransposeBlock24(target, source);
  else
    TransposeElements<Size>(target, source, kBlock, kBlock);
}

template <int Size>
void TransposeBlocks(PixelPlane target, ConstPixelPlane source, int columns, int rows) {
  for (int c = 0; c < columns; c += kBlock) {
    for (int r = 0; r < rows; r += kBlock) {
      const PixelPlane to{target.pixels + c * target.stride + static_cast<std::ptrdiff_t>(r) * Size,
                          target.stride};
      const ConstPixelPlane from{source.pixels + r * source.stride + static_cast<std::ptrdiff_t>(c) * Size,
                                 source.stride};
      const int width = std::min(kBlock, columns - c);
      const int height = std::min(kBlock, rows - r);
      if (width == kBlock && height == kBlock)
        TransposeBlock<Size>(to, from);
      else
        TransposeElements<Size>(to, from, width, height);
    }
  }
}

/// 8 by 8 bits, the first row in the highest byte: three rounds of exchanging the blocks off the diagonal.
std::uint64_t TransposeBits(std::uint64_t x) {
  std::uint64_t t = (x ^ (x >> 7)) & 0x00aa00aa00aa00aaULL;
  x ^= t ^ (t << 7);
  t = (x ^ (x >> 14)) & 0x0000cccc0000ccccULL;
  x ^= t ^ (t << 14);
  t = (x ^ (x >> 28)) & 0x00000000f0f0f0f0ULL;
  return x ^ t ^ (t << 28);
}

/// Bits of a rectangle whose corner stands at a byte's start, 8 by 8 at a time.
void TransposeBitBlocks(PixelPlane target, ConstPixelPlane source, int columns, int rows) {
  for (int c = 0; c < columns; c += 8) {
    for (int r = 0; r < rows; r += 8) {
      const int height = std::min(8, rows - r);
      std::uint64_t block = 0;
      for (int i = 0; i < height; ++i)
        block |= static_cast<std::uint64_t>(source.pixels[(r + i) * source.stride + c / 8]) << (56 - 8 * i);
      block = TransposeBits(block);
      const int width = std::min(8, columns - c);
      for (int i = 0; i < width; ++i)
        target.pixels[(c + i) * target.stride + r / 8] = static_cast<std::uint8_t>(block >> (56 - 8 * i));
    }
  }
}

#if defined(__SSE2__)
/// 16 rows of 16 bytes, so 128 columns: the bytes are transposed, then the highest bits of the 16 rows of a
/// column are taken at once. The last row comes first, since it must become the lowest bit.
void TransposeBits16(PixelPlane target, ConstPixelPlane source) {
  alignas(16) std::uint8_t columns[256];
  TransposeBlock8({columns, 16}, {source.pixels + 15 * source.stride, -source.stride});
  for (int byte = 0; byte < 16; ++byte) {
    __m128i rows = _mm_load_si128(reinterpret_cast<const __m128i*>(columns + byte * 16));
    for (int bit = 0; bit < 8; ++bit) {
      const auto taken = static_cast<unsigned>(_mm_movemask_epi8(rows));
      std::uint8_t* out = target.pixels + (byte * 8 + bit) * target.stride;
      out[0] = static_cast<std::uint8_t>(taken >> 8);
      out[1] = static_cast<std::uint8_t>(taken);
      rows = _mm_add_epi8(rows, rows);
    }
  }
}
#endif

void Transpose1(PixelPlane target, ConstPixelPlane source, int columns, int rows) {
#if defined(__SSE2__)
  const int wide = columns / 128 * 128;
  const int high = rows / 16 * 16;
  for (int c = 0; c < wide; c += 128)
    for (int r = 0; r < high; r += 16)
      TransposeBits16({target.pixels + c * target.stride + r / 8, target.stride},
                      {source.pixels + r * source.stride + c / 8, source.stride});
  TransposeBitBlocks({target.pixels + wide * target.stride, target.stride},
                     {source.pixels + wide / 8, source.stride}, columns - wide, rows);
  TransposeBitBlocks({target.pixels + high / 8, target.stride},
                     {source.pixels + high * source.stride, source.stride}, wide, rows - high);
#else
  TransposeBitBlocks(target, source, columns, rows);
#endif
}

void Transpose4(PixelPlane target, ConstPixelPlane source, int columns, int rows) {
  for (int c = 0; c < columns; c += 2) {
    std::uint8_t* first = target.pixels + c * target.stride;
    for (int r = 0; r < rows; r += 2) {
      const unsigned upper = source.pixels[r * source.stride + c / 2];
      const unsigned lower = r + 1 < rows ? source.pixels[(r + 1) * source.stride + c / 2] : 0;
      first[r / 2] = static_cast<std::uint8_t>((upper & 0xf0) | lower >> 4);
      if (c + 1 < columns)
        first[target.stride + r / 2] = static_cast<std::uint8_t>(upper << 4 | (lower & 0x0f));
    }
  }
}

unsigned PackedPixel(const std::uint8_t* row, int x, int bits) {
  const int perByte = 8 / bits;
  return row[x / perByte] >> (8 - bits - x % perByte * bits) & ((1U << bits) - 1);
}

}  // namespace

void Transpose(PixelPlane target, ConstPixelPlane source, int columns, int rows, int bits) {
  switch (bits) {
    case 1:
      return Transpose1(target, source, columns, rows);
    case 4:
      return Transpose4(target, source, columns, rows);
    case 8:
      return TransposeBlocks<1>(target, source, columns, rows);
    case 24:
      return TransposeBlocks<3>(target, source, columns, rows);
    default:
      return TransposeBlocks<4>(target, source, columns, rows);
  }
}

void TransposePlain(PixelPlane target, ConstPixelPlane source, int columns, int rows, int bits) {
  if (bits == 8) return TransposeElements<1>(target, source, columns, rows);
  if (bits == 24) return TransposeElements<3>(target, source, columns, rows);
  if (bits == 32) return TransposeElements<4>(target, source, columns, rows);
  const int perByte = 8 / bits;
  for (int c = 0; c < columns; ++c) {
    std::uint8_t* out = target.pixels + c * target.stride;
    std::memset(out, 0, static_cast<std::size_t>((rows + perByte - 1) / perByte));
    for (int r = 0; r < rows; ++r)
      out[r / perByte] =
          static_cast<std::uint8_t>(out[r / perByte] | PackedPixel(source.pixels + r * source.stride, c, bits)
                                                           << (8 - bits - r % perByte * bits));
  }
}

}  // namespace imaging
