#include "imagewindow/smart_resize.h"

#include <cstring>

namespace smart_resize {
namespace {

constexpr int kBitsPerPixel = 8;

std::size_t PitchOf(int width) {
  return (std::size_t{kBitsPerPixel} * static_cast<unsigned>(width) + 31) / 32 * 4;
}

int Brightness(const RGBQUAD& color) {
  return color.rgbBlue + color.rgbGreen + color.rgbRed;
}

}  // namespace

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
  leadtools12::TwoLevelRows rows = job.rows;
  rows.target = block + kRowsOffset;
  LEADTOOLS::ReduceToGray(rows);
}

}  // namespace smart_resize
