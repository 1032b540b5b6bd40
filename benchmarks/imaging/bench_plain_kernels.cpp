#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/imaging/text_page.h"
#include "benchmarks/ratio.h"
#include "imaging/pixels/kernels.h"
#include "imaging/pixels/reduce.h"
#include "imaging/pixels/scaler.h"
#include "imaging/pixels/storage.h"

// The inner loops for any processor against those with vectors of this one: what a user with an older or
// another processor waits longer. Without such vectors both sides are the same code.
namespace {

std::unique_ptr<imaging::PixelStorage> Page(int bits) {
  auto page = imaging::PixelStorage::Create(kWidth, kHeight, bits);
  const std::vector<std::uint8_t> text = TextPage();
  for (int y = 0; y < kHeight; ++y) {
    const std::uint8_t* row = text.data() + static_cast<std::size_t>(y) * kRowBytes;
    std::uint8_t* out = page->Row(y);
    for (std::size_t i = 0; i < page->RowBytes(); ++i)
      out[i] = bits == 1 ? row[i] : static_cast<std::uint8_t>(row[i % kRowBytes] * 3 + 1);
  }
  return page;
}

void Rendering(int bits) {
  const auto page = Page(bits);
  for (const auto& [name, percent] :
       {std::pair{"fitted", 37}, {"half", 50}, {"full", 100}, {"double", 200}}) {
    const imaging::Scaling scaling{0, 0, kWidth, kHeight, kWidth * percent / 100, kHeight * percent / 100};
    const RECT part{0, 0, std::min(scaling.width, 1200), std::min(scaling.height, 1000)};
    std::vector<std::uint32_t> out(static_cast<std::size_t>(part.right) * part.bottom);
    const auto render = [&](const imaging::Kernels& kernels) {
      imaging::RenderScaled(*page, 1, scaling, part, out.data(), part.right, kernels);
    };
    Ratio(("plain_render_" + std::to_string(bits) + "bit_" + name).c_str(), 3.0,
          [&] { render(imaging::PlainKernels()); }, [&] { render(imaging::FastKernels()); });
  }
}

void Reducing(int bits) {
  const auto page = Page(bits);
  for (const int divisor : {2, 3, 4, 7, 8, 13}) {
    auto target = imaging::PixelStorage::Create(kWidth / divisor, kHeight / divisor, 8);
    const imaging::TwoLevelBlocks blocks{page->Row(0),    page->Pitch(),   target->Row(0),
                                         target->Pitch(), target->Width(), target->Height(),
                                         divisor,         false,           bits};
    Ratio(("plain_reduce_" + std::to_string(bits) + "bit_" + std::to_string(divisor)).c_str(), 3.0,
          [&] { imaging::ReduceBlocksPlain(blocks); }, [&] { imaging::ReduceBlocks(blocks); });
  }
}

}  // namespace

int main() {
  for (const int bits : {1, 8, 24, 32}) Rendering(bits);
  for (const int bits : {1, 8}) Reducing(bits);
}
