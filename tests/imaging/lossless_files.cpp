#include "tests/imaging/lossless_files.h"

#include <cstdlib>

namespace codec_test {
namespace {

class BitWriter {
 public:
  explicit BitWriter(Bytes& bytes) : m_bytes(bytes) {}
  void Put(unsigned value, int count) {
    for (int i = count - 1; i >= 0; --i) {
      m_byte = m_byte << 1 | (value >> i & 1U);
      if (++m_count == 8) Flush();
    }
  }
  void Finish() {
    while (m_count != 0) Put(1, 1);
  }

 private:
  void Flush() {
    m_bytes.push_back(static_cast<std::uint8_t>(m_byte));
    if ((m_byte & 0xff) == 0xff) m_bytes.push_back(0);
    m_byte = 0;
    m_count = 0;
  }
  Bytes& m_bytes;
  unsigned m_byte = 0;
  int m_count = 0;
};

int PredictLossless(int predictor, int a, int b, int c) {
  const int table[] = {0, a, b, c, a + b - c, a + ((b - c) >> 1), b + ((a - c) >> 1), (a + b) >> 1};
  return table[predictor];
}

}  // namespace

Bytes MakeLosslessJpeg(int width, int height, const LosslessForm& form,
                       const std::function<int(int x, int y, int component)>& sample) {
  Bytes file = {0xff, 0xd8};
  const auto segment = [&file](int marker, const Bytes& data) {
    for (const int byte :
         {0xff, marker, static_cast<int>(data.size() + 2) >> 8, static_cast<int>(data.size() + 2) & 255})
      file.push_back(static_cast<std::uint8_t>(byte));
    file.insert(file.end(), data.begin(), data.end());
  };
  const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
  if (form.adobeYcc) segment(0xee, {'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, 1});
  Bytes frame = {byte(form.precision), byte(height >> 8), byte(height),
                 byte(width >> 8),     byte(width),       byte(form.components)};
  for (int c = 0; c < form.components; ++c) frame.insert(frame.end(), {byte(c + 1), 0x11, 0});
  segment(0xc3, frame);
  Bytes table = {0, 0, 0, 0, 0, 17, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  for (int category = 0; category <= 16; ++category) table.push_back(byte(category));
  segment(0xc4, table);
  if (form.restartRows != 0)
    segment(0xdd, {byte(form.restartRows * width >> 8), byte(form.restartRows * width)});
  const auto value = [&](int x, int y, int c) { return sample(x, y, c) >> form.shift; };
  for (int first = 0; first < form.components; first += form.scans ? 1 : form.components) {
    const int count = form.scans ? 1 : form.components;
    Bytes scan = {byte(count)};
    for (int c = first; c < first + count; ++c) scan.insert(scan.end(), {byte(c + 1), 0});
    scan.insert(scan.end(), {byte(form.predictor), 0, byte(form.shift)});
    segment(0xda, scan);
    BitWriter bits(file);
    for (int y = 0; y < height; ++y) {
      const bool top = y == 0 || (form.restartRows != 0 && y % form.restartRows == 0);
      if (top && y != 0) {
        bits.Finish();
        file.insert(file.end(), {0xff, byte(0xd0 + (y / form.restartRows - 1) % 8)});
      }
      for (int x = 0; x < width; ++x)
        for (int c = first; c < first + count; ++c) {
          int predicted = 1 << (form.precision - form.shift - 1);
          if (x > 0 && top) predicted = value(x - 1, y, c);
          if (x == 0 && !top) predicted = value(0, y - 1, c);
          if (x > 0 && !top)
            predicted = PredictLossless(form.predictor, value(x - 1, y, c), value(x, y - 1, c),
                                        value(x - 1, y - 1, c));
          const int difference = static_cast<std::int16_t>(value(x, y, c) - predicted);
          const int magnitude = std::abs(difference);
          int category = 0;
          while (magnitude >> category != 0) ++category;
          bits.Put(static_cast<unsigned>(category), 5);
          if (category < 16)
            bits.Put(
                static_cast<unsigned>(difference > 0 ? difference : difference - 1) & ((1U << category) - 1),
                category);
        }
    }
    bits.Finish();
  }
  file.insert(file.end(), {0xff, 0xd9});
  return file;
}

}  // namespace codec_test
