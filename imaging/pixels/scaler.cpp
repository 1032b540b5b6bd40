#include "imaging/pixels/scaler.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace imaging {
namespace {

// Rows that must be expanded are expanded together into this much memory, which stays in the first-level
// cache.
constexpr int kScratchBytes = 16384;
constexpr int kMaxRowsInSums = 256;
constexpr int kRowsWorthCounting = 10;  // for fewer the table of a row takes longer than it saves
constexpr int kMostRowsCounted = 255;   // in a byte
constexpr std::size_t kSlack = 32;      // kernels read whole vectors

/// Sums of one column must leave the columns' weights room in 32 bits.
int SumBits(const Scaling& scaling) {
  const unsigned columns = BoxAxis::Averages(scaling.sourceWidth, scaling.width)
                               ? static_cast<unsigned>(scaling.sourceWidth / scaling.width) + 2
                               : 2;
  return std::min(16, 32 - static_cast<int>(std::bit_width(columns)));
}

}  // namespace

BoxScaler::BoxScaler(const RowReader& reader, const Scaling& scaling, int firstColumn, int columns,
                     const Kernels& kernels)
    : m_reader(reader),
      m_kernels(kernels),
      m_scaling(scaling),
      m_rows(scaling.sourceHeight, scaling.height,
             BoxAxis::FractionFor(scaling.sourceHeight, scaling.height, 24)),
      m_columns(scaling.sourceWidth, scaling.width,
                BoxAxis::FractionFor(scaling.sourceWidth, scaling.width, 32 - SumBits(scaling))) {
  m_spans.reserve(static_cast<std::size_t>(columns));
  for (int i = 0; i < columns; ++i) m_spans.push_back(m_columns.At(firstColumn + i));
  m_firstSource = m_spans.front().first;
  const BoxSpan& last = m_spans.back();
  m_sourceCount = last.first + last.full + (last.lastWeight != 0 ? 2 : 1) - m_firstSource;
  for (BoxSpan& span : m_spans) span.first -= m_firstSource;

  const std::uint64_t most = std::uint64_t{255} * m_rows.Sum();
  m_weights.fraction = m_rows.Fraction();
  m_weights.shift = std::max(0, static_cast<int>(std::bit_width(most)) - SumBits(scaling));
  const double divisor = static_cast<double>(m_columns.Sum()) * std::ldexp(m_rows.Sum(), -m_weights.shift);
  m_divisor.shift = 30 + std::ilogb(divisor);
  m_divisor.factor = static_cast<std::uint32_t>(std::llround(std::ldexp(1.0, m_divisor.shift) / divisor));
  const auto channels = static_cast<std::size_t>(reader.Channels());
  const std::size_t sums = static_cast<std::size_t>(m_sourceCount) * channels;
  m_sumStride = static_cast<std::ptrdiff_t>(sums);
  m_sums.resize(sums * kRows);
  m_interleaved.resize((sums + channels) * kRows);
  m_levels.resize(static_cast<std::size_t>(columns) * channels * kRows);
  m_scratch.resize(kScratchBytes + kSlack);
}

void BoxScaler::Rows(int y, int rows, std::uint8_t* out, std::ptrdiff_t stride) {
  for (int r = 0; r < rows; ++r) SumRows(y + r, m_sums.data() + r * m_sumStride);
  m_kernels.interleave(m_interleaved.data(), m_sums.data(), m_sumStride,
                       static_cast<std::size_t>(m_sumStride));
  m_kernels.boxEight(m_levels.data(), m_interleaved.data(), m_reader.Channels(), m_spans.data(),
                     m_spans.size(), m_columns.Fraction(), m_divisor);
  m_kernels.deinterleave(out, stride, m_levels.data(), m_levels.size() / kRows, rows);
}

const std::uint8_t* BoxScaler::Read(int row, int first, int count, std::uint8_t* scratch) const {
  return m_reader.Read(m_scaling.sourceTop + row, m_scaling.sourceLeft + m_firstSource + first, count,
                       scratch);
}

void BoxScaler::SumRows(int y, std::uint16_t* sums) {
  const BoxSpan span = m_rows.At(y);
  const std::ptrdiff_t channels = m_reader.Channels();
  if (span.full > kMaxRowsInSums) {
    const int step = kScratchBytes / 4;
    for (int first = 0; first < m_sourceCount; first += step)
      SumManyRows(span, first, std::min(step, m_sourceCount - first), sums);
    return;
  }
  if (m_reader.IsBilevelGray() && span.full >= kRowsWorthCounting && span.full <= kMostRowsCounted) {
    SumPackedRows(span, sums);
    return;
  }
  RowWeights weights = m_weights;
  weights.first = span.firstWeight;
  weights.last = span.lastWeight;
  const int rows = span.full + (span.lastWeight != 0 ? 2 : 1);
  const int step = m_reader.IsDirect() ? m_sourceCount : kScratchBytes / (rows * m_reader.Channels());
  for (int first = 0; first < m_sourceCount; first += step) {
    const int count = std::min(step, m_sourceCount - first);
    const RowBlock block = ReadRows(span.first, rows, first, count);
    m_kernels.sumRows(sums + first * channels, block.bytes, block.pitch, span.full, weights,
                      static_cast<std::size_t>(count * channels));
  }
}

/// Rows of a block of columns, at an even distance: in place where they stand as they are read.
BoxScaler::RowBlock BoxScaler::ReadRows(int row, int rows, int first, int count) {
  if (m_reader.IsDirect()) return {Read(row, first, count, nullptr), m_reader.Pitch()};
  const std::ptrdiff_t pitch = count * static_cast<std::ptrdiff_t>(m_reader.Channels());
  for (int i = 0; i < rows; ++i) {
    std::uint8_t* scratch = m_scratch.data() + i * pitch;
    const std::uint8_t* bytes = Read(row + i, first, count, scratch);
    if (bytes != scratch) std::memcpy(scratch, bytes, static_cast<std::size_t>(pitch));
  }
  return {m_scratch.data(), pitch};
}

/// The same sums from packed bits: a count for each column stands for all rows between the two ends, so that
/// no pixel is expanded to a byte.
void BoxScaler::SumPackedRows(const BoxSpan& span, std::uint16_t* sums) {
  const int left = m_scaling.sourceLeft + m_firstSource;
  const auto skipped = static_cast<std::size_t>(left % 8);
  const std::size_t bytes = (skipped + static_cast<std::size_t>(m_sourceCount) + 7) / 8;
  const std::size_t columns = 8 * bytes;
  m_bits.resize(3 * columns);
  std::uint8_t* const counts = m_bits.data();
  std::uint8_t* const first = counts + columns;
  std::uint8_t* const last = first + columns;
  const std::uint8_t* const rows = m_reader.Packed(m_scaling.sourceTop + span.first) + left / 8;
  m_kernels.countBits(counts, rows + m_reader.Pitch(), m_reader.Pitch(), span.full, bytes);
  m_kernels.countBits(first, rows, m_reader.Pitch(), 1, bytes);
  const int hasLast = span.lastWeight != 0 ? 1 : 0;
  m_kernels.countBits(last, rows + hasLast * (span.full + 1) * m_reader.Pitch(), m_reader.Pitch(), hasLast,
                      bytes);

  // By the bits of the two ends and the count between them.
  std::array<std::array<std::uint16_t, kMostRowsCounted + 1>, 4> table;
  const auto full = static_cast<std::uint32_t>(span.full);
  for (unsigned ends = 0; ends < table.size(); ++ends)
    for (std::uint32_t set = 0; set <= full; ++set) {
      const std::uint32_t between = m_reader.Gray(0) * (full - set) + m_reader.Gray(1) * set;
      const std::uint32_t sum = (between << m_weights.fraction) + m_reader.Gray(ends & 1) * span.firstWeight +
                                m_reader.Gray(ends >> 1) * span.lastWeight;
      table[ends][set] = static_cast<std::uint16_t>(sum >> m_weights.shift);
    }
  for (std::size_t i = skipped; i < skipped + static_cast<std::size_t>(m_sourceCount); ++i)
    *sums++ = table[first[i] + 2U * last[i]][counts[i]];
}

/// More rows than 16-bit sums hold.
void BoxScaler::SumManyRows(const BoxSpan& span, int first, int count, std::uint16_t* sums) {
  const auto channels = static_cast<std::size_t>(m_reader.Channels());
  const std::size_t bytes = static_cast<std::size_t>(count) * channels;
  std::vector<std::uint32_t> wide(bytes);
  const auto add = [&](int row, std::uint32_t weight) {
    const std::uint8_t* pixels = Read(row, first, count, m_scratch.data());
    for (std::size_t i = 0; i < bytes; ++i) wide[i] += pixels[i] * weight;
  };
  for (int i = 1; i <= span.full; ++i) add(span.first + i, 1U << m_weights.fraction);
  add(span.first, span.firstWeight);
  if (span.lastWeight != 0) add(span.first + span.full + 1, span.lastWeight);
  std::uint16_t* out = sums + static_cast<std::size_t>(first) * channels;
  for (std::size_t i = 0; i < bytes; ++i) out[i] = static_cast<std::uint16_t>(wide[i] >> m_weights.shift);
}

namespace {

/// Bytes of a reader's channels as pixels for the screen.
void ToPixels(std::uint32_t* out, const std::uint8_t* bytes, std::size_t count, int channels, bool redFirst,
              const Kernels& kernels) {
  if (channels == 1)
    kernels.grayToPixels(out, bytes, count);
  else
    kernels.colorsToPixels(out, bytes, count, channels, redFirst);
}

void RenderAveraged(const RowReader& reader, bool redFirst, const Scaling& scaling, const RECT& part,
                    std::uint32_t* out, std::ptrdiff_t stride, const Kernels& kernels) {
  const auto columns = static_cast<std::size_t>(part.right - part.left);
  const std::size_t rowBytes = columns * static_cast<std::size_t>(reader.Channels());
  BoxScaler scaler(reader, scaling, part.left, static_cast<int>(columns), kernels);
  std::vector<std::uint8_t> levels(rowBytes * BoxScaler::kRows);
  for (int y = part.top; y < part.bottom; y += BoxScaler::kRows) {
    const int rows = std::min(BoxScaler::kRows, part.bottom - y);
    scaler.Rows(y, rows, levels.data(), static_cast<std::ptrdiff_t>(rowBytes));
    for (int r = 0; r < rows; ++r, out += stride)
      ToPixels(out, levels.data() + static_cast<std::size_t>(r) * rowBytes, columns, reader.Channels(),
               redFirst, kernels);
  }
}

void RenderRepeated(const RowReader& reader, bool redFirst, const Scaling& scaling, const RECT& part,
                    std::uint32_t* out, std::ptrdiff_t stride, const Kernels& kernels) {
  const auto columns = static_cast<std::size_t>(part.right - part.left);
  std::vector<int> from(columns);
  for (std::size_t i = 0; i < columns; ++i)
    from[i] = BoxAxis::Nearest(part.left + static_cast<int>(i), scaling.sourceWidth, scaling.width);
  const int first = from.front();
  const int count = std::max(1, from.back() + 1 - first);
  std::vector<std::uint8_t> scratch(static_cast<std::size_t>(count) * 4 + kSlack);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(count));
  int shown = -1;
  for (int y = part.top; y < part.bottom; ++y, out += stride) {
    const int row = BoxAxis::Nearest(y, scaling.sourceHeight, scaling.height);
    if (row == shown) {
      std::memcpy(out, out - stride, columns * sizeof *out);
      continue;
    }
    shown = row;
    const std::uint8_t* bytes =
        reader.Read(scaling.sourceTop + row, scaling.sourceLeft + first, count, scratch.data());
    if (scaling.width == scaling.sourceWidth) {
      ToPixels(out, bytes, columns, reader.Channels(), redFirst, kernels);
      continue;
    }
    ToPixels(pixels.data(), bytes, static_cast<std::size_t>(count), reader.Channels(), redFirst, kernels);
    for (std::size_t i = 0; i < columns; ++i) out[i] = pixels[static_cast<std::size_t>(from[i] - first)];
  }
}

}  // namespace

void RenderScaled(const PixelStorage& storage, int order, const Scaling& scaling, const RECT& part,
                  std::uint32_t* out, std::ptrdiff_t stride, const Kernels& kernels) {
  if (part.left >= part.right || part.top >= part.bottom) return;
  const auto sourceRow = [&](int y) {
    return scaling.sourceTop + static_cast<int>(std::int64_t{y} * scaling.sourceHeight / scaling.height);
  };
  const int first = sourceRow(part.top);
  const RowReader reader(storage, Alpha::FlattenOnWhite, first, sourceRow(part.bottom) + 2 - first);
  const bool redFirst = reader.HasRecordOrder() && order == 0;
  if (scaling.Averages())
    RenderAveraged(reader, redFirst, scaling, part, out, stride, kernels);
  else
    RenderRepeated(reader, redFirst, scaling, part, out, stride, kernels);
}

}  // namespace imaging
