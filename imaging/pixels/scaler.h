#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "imaging/pixels/axis.h"
#include "imaging/pixels/kernels.h"
#include "imaging/pixels/row_reader.h"

namespace imaging {

/// A part of a bitmap and the size, in result pixels, to which all of the part is scaled.
struct Scaling {
  int sourceLeft = 0;
  int sourceTop = 0;
  int sourceWidth = 0;
  int sourceHeight = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Scaling&) const = default;
  bool Averages() const {
    return BoxAxis::Averages(sourceWidth, width) || BoxAxis::Averages(sourceHeight, height);
  }
};

/// Averages rows of a scaled picture, for a range of its columns. Each pixel depends on its place in the
/// scaled picture only, never on the range asked for. An axis that isn't reduced repeats pixels.
class BoxScaler {
 public:
  BoxScaler(const RowReader& reader, const Scaling& scaling, int firstColumn, int columns,
            const Kernels& kernels);
  static constexpr int kRows = 8;  ///< made at a time
  /// Result rows y to y + rows - 1, at most kRows: the reader's channels for each column, stride bytes from
  /// row to row.
  void Rows(int y, int rows, std::uint8_t* out, std::ptrdiff_t stride);

 private:
  void SumRows(int y, std::uint16_t* sums);
  struct RowBlock {
    const std::uint8_t* bytes;
    std::ptrdiff_t pitch;
  };
  RowBlock ReadRows(int row, int rows, int first, int count);
  void SumPackedRows(const BoxSpan& span, std::uint16_t* sums);
  void SumManyRows(const BoxSpan& span, int first, int count, std::uint16_t* sums);
  const std::uint8_t* Read(int row, int first, int count, std::uint8_t* scratch) const;

  const RowReader& m_reader;
  const Kernels& m_kernels;
  Scaling m_scaling;
  BoxAxis m_rows;
  BoxAxis m_columns;
  RowWeights m_weights{};
  BoxDivisor m_divisor{};
  int m_firstSource = 0;  ///< columns of the scaled part that are read
  int m_sourceCount = 0;
  std::vector<BoxSpan> m_spans;
  std::vector<std::uint16_t> m_sums;  ///< of kRows result rows, for each channel of each source column
  std::ptrdiff_t m_sumStride = 0;
  std::vector<std::uint16_t> m_interleaved;
  std::vector<std::uint8_t> m_levels;
  std::vector<std::uint8_t> m_scratch;
  std::vector<std::uint8_t> m_bits;  ///< of SumPackedRows: the columns' counts, and of the rows at both ends
};

/// Renders the pixels of a rectangle of the scaled picture as 0xffRRGGBB; alpha lies on white.
/// order is the record's Order.
void RenderScaled(const PixelStorage& storage, int order, const Scaling& scaling, const RECT& part,
                  std::uint32_t* out, std::ptrdiff_t stride, const Kernels& kernels = FastKernels());

}  // namespace imaging
