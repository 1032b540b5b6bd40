#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "benchmarks/ratio.h"
#include "imagewindow/image_window.h"
#include "platform/base/bitmapinfo.h"
#include "platform/base/global_memory.h"

// The grey reduction of an A4 page at 300 dots per inch, blocks taken and given back included, against a copy
// of the page's bytes.

namespace {

constexpr int kWidth = 2480;
constexpr int kHeight = 3508;
constexpr std::size_t kRowsOffset = 1064;
constexpr std::size_t kPageBytes = std::size_t{kWidth} * kHeight;

class Reducer : public CImageWindow {
 public:
  void Reduce(void* source, int divisor) {
    m_nZoomDivisor = divisor;
    GlobalFree(SmartResize(source));
  }
};

/// A block as the imaging service gives it: dark runs on a light ground.
void* TextPage() {
  void* block = GlobalAlloc(GHND, kRowsOffset + kPageBytes);
  auto* bytes = static_cast<std::uint8_t*>(GlobalLock(block));
  const BITMAPINFOHEADER head{40, kWidth, kHeight, 1, 8, BI_RGB, kPageBytes, 11811, 11811, 256, 0};
  std::memcpy(bytes, &head, sizeof head);
  const RGBQUAD white{255, 255, 255, 0};
  std::memcpy(bytes + sizeof head + sizeof white, &white, sizeof white);
  std::uint8_t* rows = bytes + kRowsOffset;
  std::memset(rows, 255, kPageBytes);
  std::mt19937 random(1);
  for (std::size_t at = 0; at + 80 < kPageBytes; at += 16 + random() % 64)
    std::memset(rows + at, 0, random() % 12);
  GlobalUnlock(block);
  return block;
}

}  // namespace

int main() {
  Reducer window;
  void* page = TextPage();
  const auto* rows = static_cast<const std::uint8_t*>(GlobalLock(page)) + kRowsOffset;
  std::vector<std::uint8_t> copy(kPageBytes);
  const auto copyPage = [&] {
    std::memcpy(copy.data(), rows, kPageBytes);
    asm volatile("" : : "r"(copy.data()) : "memory");  // the copy is wanted
  };
  for (int divisor : {2, 4, 8, 3, 5, 6, 7, 10, 16, 32}) {
    const bool powerOfTwo = (divisor & (divisor - 1)) == 0;
    const std::string name = "smart_resize_" + std::to_string(divisor) + "_vs_memcpy";
    Ratio(
        name.c_str(), powerOfTwo ? 1.5 : 1.7, [&] { window.Reduce(page, divisor); }, copyPage);
  }
  GlobalUnlock(page);
  GlobalFree(page);
  return 0;
}
