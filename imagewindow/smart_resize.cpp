#include "imagewindow/smart_resize.h"

#include <cstring>
#include <limits>
#include <vector>

namespace smart_resize {
namespace {

constexpr int kBitsPerPixel = 8;

std::size_t PitchOf(int width) {
  return (std::size_t{kBitsPerPixel} * static_cast<unsigned>(width) + 31) / 32 * 4;
}

int Brightness(const RGBQUAD& color) {
  return color.rgbBlue + color.rgbGreen + color.rgbRed;
}

/// Column sums in the narrowest type that holds a divisor's count, so that the compiler adds many at once.
template <typename Count>
void ReduceInSteps(const Rows& rows) {
  const auto n = static_cast<std::size_t>(rows.divisor);
  const std::size_t columns = static_cast<std::size_t>(rows.width) * n;
  const std::uint64_t pixels = std::uint64_t{n} * n;
  std::vector<Count> light(columns);
  for (int y = 0; y < rows.height; ++y) {
    const std::uint8_t* source = rows.source + static_cast<std::size_t>(y) * n * rows.sourcePitch;
    std::fill(light.begin(), light.end(), Count{0});
    for (std::size_t i = 0; i < n; ++i, source += rows.sourcePitch)
      for (std::size_t x = 0; x < columns; ++x)
        light[x] = static_cast<Count>(light[x] + ((source[x] == 0) == rows.zeroIsLight ? 1 : 0));
    std::uint8_t* target = rows.target + static_cast<std::size_t>(y) * rows.targetPitch;
    for (int x = 0; x < rows.width; ++x) {
      std::uint64_t count = 0;
      const Count* block = light.data() + static_cast<std::size_t>(x) * n;
      for (std::size_t i = 0; i < n; ++i) count += block[i];
      target[x] = static_cast<std::uint8_t>(count * 255 / pixels);
    }
  }
}

}  // namespace

void ReduceToGrayPlain(const Rows& rows) {
  if (rows.divisor <= std::numeric_limits<std::uint8_t>::max())
    ReduceInSteps<std::uint8_t>(rows);
  else
    ReduceInSteps<std::uint32_t>(rows);
}

void ReduceToGray(const Rows& rows) {
  if (!ReduceToGrayFast(rows)) ReduceToGrayPlain(rows);
}

bool Plan(const std::uint8_t* block, std::size_t bytes, int divisor, Job* job) {
  if (block == nullptr || bytes < kRowsOffset || divisor < 1) return false;
  BITMAPINFOHEADER head;
  std::memcpy(&head, block, sizeof head);
  if (head.biBitCount != kBitsPerPixel || head.biWidth < divisor || head.biHeight < divisor) return false;
  const std::size_t pitch = PitchOf(head.biWidth);
  if ((bytes - kRowsOffset) / pitch < static_cast<std::size_t>(head.biHeight)) return false;

  std::array<RGBQUAD, 2> colors;
  std::memcpy(colors.data(), block + sizeof head, sizeof colors);
  const int width = head.biWidth / divisor;
  const int height = head.biHeight / divisor;
  job->rows = {block + kRowsOffset,
               pitch,
               nullptr,
               PitchOf(width),
               width,
               height,
               divisor,
               Brightness(colors[0]) > Brightness(colors[1])};
  job->targetBytes = kRowsOffset + job->rows.targetPitch * static_cast<std::size_t>(height);
  head.biWidth = width;
  head.biHeight = height;
  head.biSizeImage = static_cast<DWORD>(job->targetBytes);  // of the whole block, as its readers expect
  job->head = head;
  return true;
}

void WriteReduced(const Job& job, const std::array<RGBQUAD, 256>& palette, std::uint8_t* block) {
  std::memcpy(block, &job.head, sizeof job.head);
  std::memcpy(block + sizeof job.head, palette.data(), sizeof palette);
  Rows rows = job.rows;
  rows.target = block + kRowsOffset;
  ReduceToGray(rows);
}

}  // namespace smart_resize
