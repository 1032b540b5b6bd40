#pragma once

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/imaging/codec_files.h"
#include "tests/imaging/raster_files.h"

// The picture in the raster files of the tests, and what their writers share: fields, rows, run lengths,
// tables.
namespace codec_test::raster {

inline constexpr int kWidth = kRasterWidth;
inline constexpr int kHeight = kRasterHeight;

inline void Little(Bytes& file, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) file.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}
inline void Big(Bytes& file, std::uint32_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i) file.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}
inline void Words(Bytes& file, std::initializer_list<int> values) {
  for (const int value : values) Little(file, static_cast<std::uint32_t>(value), 2);
}
inline void BigWords(Bytes& file, std::initializer_list<int> values) {
  for (const int value : values) Big(file, static_cast<std::uint32_t>(value), 2);
}
inline void Append(Bytes& file, const Bytes& more) {
  file.insert(file.end(), more.begin(), more.end());
}
inline Bytes Text(const std::string& text) {
  return Bytes(text.begin(), text.end());
}

// The picture: runs at the left, which may go on in the next row, and noise at the right.

inline int Index(int x, int y, int bits) {
  const std::int64_t value = x < 7 ? y / 2 * 5 + 3 : x * 3 + y * 7 + x * y;
  return static_cast<int>(value & ((std::int64_t{1} << bits) - 1));
}
inline Color Entry(int i) {
  return {i * 37 & 255, (255 - i * 11) & 255, i * 73 & 255, 255};
}
inline Color Direct(int x, int y) {
  return x < 7 ? Color{90, 10 * y, 200, 255} : Color{x * 19, y * 31, (x * y * 5) & 255, 255};
}
inline Color Gray(int level) {
  return {level, level, level, 255};
}
inline int Alpha(int x, int y) {
  return 40 + x * 9 + y;
}
/// What is left of a colour in so many bits a channel.
inline Color Coarse(Color color, int bits) {
  const int most = (1 << bits) - 1;
  for (int* level : {&color.red, &color.green, &color.blue})
    *level = ((*level >> (8 - bits)) * 255 + most / 2) / most;
  return color;
}
inline const auto kIndexed = [](int bits) {
  return [bits](int x, int y) { return Entry(Index(x, y, bits)); };
};
inline const auto kOneIsBlack = [](int x, int y) { return Gray(Index(x, y, 1) == 1 ? 0 : 255); };
inline const auto kOneIsWhite = [](int x, int y) { return Gray(Index(x, y, 1) == 1 ? 255 : 0); };

/// Samples of 1 to 8 bits of a row, most significant bit first, filled up to a number of bytes; shift for one
/// plane of several.
inline Bytes Packed(const std::function<int(int)>& sample, int width, int bits, std::size_t align,
                    int shift = 0) {
  Bytes row((static_cast<std::size_t>(width * bits) + 7) / 8);
  for (int x = 0; x < width; ++x)
    row[static_cast<std::size_t>(x * bits / 8)] |=
        static_cast<std::uint8_t>((sample(x) >> shift & ((1 << bits) - 1)) << (8 - bits - x * bits % 8));
  row.resize((row.size() + align - 1) / align * align);
  return row;
}
inline Bytes IndexRow(int y, int bits, std::size_t align) {
  return Packed([&](int x) { return Index(x, y, bits); }, kWidth, bits, align);
}
inline Bytes PlaneRow(int y, int planes, int plane, std::size_t align) {
  return Packed([&](int x) { return Index(x, y, planes); }, kWidth, 1, align, plane);
}
/// Rows of triples, blue or red first, with an alpha behind or a byte before.
inline Bytes ColorRow(int y, bool blueFirst, bool alpha = false, bool before = false) {
  Bytes row;
  for (int x = 0; x < kWidth; ++x) {
    const Color c = Direct(x, y);
    if (before) row.push_back(0x55);
    for (const int level : {blueFirst ? c.blue : c.red, c.green, blueFirst ? c.red : c.blue})
      row.push_back(static_cast<std::uint8_t>(level));
    if (alpha) row.push_back(static_cast<std::uint8_t>(Alpha(x, y)));
  }
  return row;
}
template <typename Row>
inline Bytes AllRows(const Row& row) {
  Bytes pixels;
  for (int y = 0; y < kHeight; ++y) Append(pixels, row(y));
  return pixels;
}

/// Run lengths: pieces of so many units, alike or not, each written by its function.
inline void Encode(Bytes& file, const Bytes& data, std::size_t unit, std::size_t most,
                   const std::function<void(Bytes&, std::size_t count, const std::uint8_t* unit)>& run,
                   const std::function<void(Bytes&, std::size_t count, const std::uint8_t* units)>& literal) {
  const std::size_t units = data.size() / unit;
  const auto alike = [&](std::size_t at) {
    std::size_t count = 1;
    while (count < most && at + count < units &&
           std::equal(&data[at * unit], &data[at * unit] + unit, &data[(at + count) * unit]))
      ++count;
    return count;
  };
  for (std::size_t at = 0; at < units;) {
    std::size_t count = alike(at);
    if (count > 2) {
      run(file, count, &data[at * unit]);
    } else {
      while (count < most && at + count < units && alike(at + count) < 3) ++count;
      literal(file, count, &data[at * unit]);
    }
    at += count;
  }
}
/// The usual form: a byte of count and kind, then one unit or all.
inline void EncodeWithCounts(Bytes& file, const Bytes& data, std::size_t unit, std::size_t most,
                             const std::function<int(int)>& runCode,
                             const std::function<int(int)>& literalCode) {
  Encode(
      file, data, unit, most,
      [&](Bytes& out, std::size_t count, const std::uint8_t* one) {
        Little(out, static_cast<std::uint32_t>(runCode(static_cast<int>(count))), 1);
        out.insert(out.end(), one, one + unit);
      },
      [&](Bytes& out, std::size_t count, const std::uint8_t* all) {
        Little(out, static_cast<std::uint32_t>(literalCode(static_cast<int>(count))), 1);
        out.insert(out.end(), all, all + count * unit);
      });
}

inline Bytes Table(int colors, int first, int second, int third, int unused = 0) {
  Bytes table;
  for (int i = 0; i < colors; ++i) {
    const Color color = Entry(i);
    const int levels[] = {color.red, color.green, color.blue};
    for (const int channel : {first, second, third})
      table.push_back(static_cast<std::uint8_t>(levels[channel]));
    table.resize(table.size() + static_cast<std::size_t>(unused));
  }
  return table;
}

// Sun and X (raster_x_files.cpp)

void AddSun(std::vector<RasterFile>& files);
void AddXwd(std::vector<RasterFile>& files);
void AddX(std::vector<RasterFile>& files);

}  // namespace codec_test::raster
