#include <QImage>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "benchmarks/ratio.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/paint.h"
#include "imaging/pixels/scaler.h"

// Pixel operations against a peer or a copy of the same memory, in one run. Both sides of a ratio take turns
// and the shortest time of each counts.

namespace {

constexpr int kScreenWidth = 1200;
constexpr int kScreenHeight = 800;
constexpr int kLineStep = 15;     // what an arrow of a scroll bar moves
constexpr int kPageWidth = 2480;  // A4 at 300 dots per inch
constexpr int kPageHeight = 3508;
constexpr std::uint32_t kSourceCopy = 0x00cc0020;

/// Text-like pixels: dark runs on a light ground.
void FillPage(struct_LEAD_Bitmap& bitmap) {
  std::mt19937 random(1);
  imaging::PixelStorage& pixels = *bitmap.pStorage;
  for (int y = 0; y < pixels.Height(); ++y) {
    std::uint8_t* row = pixels.Row(y);
    std::memset(row, 255, pixels.RowBytes());
    for (std::size_t x = random() % 64; x < pixels.RowBytes(); x += 1 + random() % 64)
      row[x] = pixels.Bits() == 8 ? 0 : static_cast<std::uint8_t>(random());
  }
}

struct Page : struct_LEAD_Bitmap {
  Page(int width, int height, int bits) : struct_LEAD_Bitmap{} {
    LEADTOOLS::InitBitmap(this, width, height, bits);
    LEADTOOLS::AllocateBitmap(this, 1);
    FillPage(*this);
  }
  ~Page() { LEADTOOLS::FreeBitmap(this); }
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
};

struct Screen {
  Screen()
      : pixels(static_cast<std::size_t>(kScreenWidth) * kScreenHeight),
        clip{0, 0, kScreenWidth, kScreenHeight} {
    view.pixels = pixels.data();
    view.width = kScreenWidth;
    view.height = kScreenHeight;
    view.stride = kScreenWidth;
    view.clip = {&clip, 1};
  }
  void Paint(Page& page, int width, int height, int scroll) {
    const RECT destination{0, -scroll, width, height - scroll};
    imaging::PaintOnSurface(view, &page, {nullptr, nullptr, &destination, nullptr}, kSourceCopy);
  }
  std::vector<std::uint32_t> pixels;
  RECT clip;
  platform::SurfaceView view;
};

/// Tells that the pixels changed, so that nothing kept from an earlier paint is used.
void Touch(Page& page) {
  page.pStorage->Row(0);
}

QImage ToQt(const Page& page, QImage::Format format) {
  QImage image(page.Width, page.Height, format);
  if (format == QImage::Format_Mono) image.setColorTable({0xff000000U, 0xffffffffU});
  for (int y = 0; y < page.Height; ++y)
    std::memcpy(image.scanLine(y), static_cast<const imaging::PixelStorage&>(*page.pStorage).Row(y),
                page.pStorage->RowBytes());
  return image;
}

void BenchDownscale() {
  Page page(6000, 4000, 24);
  Screen screen;
  const QImage peer = ToQt(page, QImage::Format_RGB888).convertToFormat(QImage::Format_RGB32);
  Ratio(
      "downscale_24bit_vs_qt_32bit", 0.7, [&] { screen.Paint(page, kScreenWidth, kScreenHeight, 0); },
      [&] {
        (void)peer.scaled(kScreenWidth, kScreenHeight, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
      },
      [&] { Touch(page); });
}

void BenchRepaint(int bits) {
  Page page(kPageWidth, kPageHeight, bits);
  Screen screen;
  const std::vector<std::uint32_t> kept(screen.pixels.size(), 1);
  const auto blit = [&] { std::memcpy(screen.pixels.data(), kept.data(), kept.size() * 4); };
  const int height = kScreenWidth * kPageHeight / kPageWidth;
  screen.Paint(page, kScreenWidth, height, 0);
  char name[64];
  std::snprintf(name, sizeof name, "repaint_%dbit_vs_blit", bits);
  Ratio(
      name, 2.0, [&] { screen.Paint(page, kScreenWidth, height, 0); }, blit);
  int scroll = 0;
  std::snprintf(name, sizeof name, "scroll_step_%dbit_vs_blit", bits);
  Ratio(
      name, 2.0, [&] { screen.Paint(page, kScreenWidth, height, scroll); }, blit,
      [&] { scroll += kLineStep; });
}

void BenchZoomStep(int bits) {
  Page page(kPageWidth, kPageHeight, bits);
  Page bilevel(kPageWidth, kPageHeight, 1);
  Screen screen;
  const QImage peer = ToQt(bilevel, QImage::Format_Mono);
  const int height = kScreenWidth * kPageHeight / kPageWidth;
  char name[64];
  std::snprintf(name, sizeof name, "zoom_step_%dbit_vs_qt_1bit", bits);
  Ratio(
      name, 0.1, [&] { screen.Paint(page, kScreenWidth, height, 300); },
      [&] { (void)peer.scaled(kScreenWidth, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation); },
      [&] { Touch(page); });
}

/// The loop that anyone writes first.
void TurnPlain(const imaging::PixelStorage& from, imaging::PixelStorage& to) {
  const std::uint8_t* source = from.Row(0);
  std::uint8_t* target = to.Row(0);
  for (int y = 0; y < from.Height(); ++y)
    for (int x = 0; x < from.Width(); ++x)
      target[x * to.Pitch() + from.Height() - 1 - y] = source[y * from.Pitch() + x];
}

void BenchTurns() {
  Page gray(kPageWidth, kPageHeight, 8);
  auto target = imaging::PixelStorage::Create(kPageHeight, kPageWidth, 8);
  const imaging::PixelStorage& source = *gray.pStorage;
  auto still = imaging::PixelStorage::Create(kPageWidth, kPageHeight, 8);
  std::memcpy(still->Row(0), source.Row(0), static_cast<std::size_t>(source.Pitch()) * kPageHeight);
  Ratio(
      "quarter_turn_8bit_vs_plain_loop", 0.2, [&] { LEADTOOLS::RotateBitmap(&gray, 9000, 5, 0); },
      [&] { TurnPlain(*still, *target); });
  const QTransform turn = QTransform().rotate(90);
  Page color(kPageWidth, kPageHeight, 24);
  const QImage colorPeer = ToQt(color, QImage::Format_RGB888);
  Ratio(
      "quarter_turn_24bit_vs_qt", 0.4, [&] { LEADTOOLS::RotateBitmap(&color, 9000, 5, 0); },
      [&] { (void)colorPeer.transformed(turn); });
  Page bilevel(kPageWidth, kPageHeight, 1);
  const QImage bilevelPeer = ToQt(bilevel, QImage::Format_Mono);
  Ratio(
      "quarter_turn_1bit_vs_qt", 0.02, [&] { LEADTOOLS::RotateBitmap(&bilevel, 9000, 5, 0); },
      [&] { (void)bilevelPeer.transformed(turn); });
}

/// Grey reductions of a two-level page against a copy of the same page at 8 bits.
void BenchReductions() {
  Page bilevel(kPageWidth, kPageHeight, 1);
  Page gray(kPageWidth, kPageHeight, 8);
  auto copy = imaging::PixelStorage::Create(kPageWidth, kPageHeight, 8);
  const auto bytes = static_cast<std::size_t>(copy->Pitch()) * kPageHeight;
  const struct {
    int divisor;
    double target;
  } cases[] = {{2, 0.4}, {3, 0.4}, {4, 0.3}, {7, 0.3}, {8, 0.3}, {13, 0.3}, {16, 0.3}};
  for (const auto& c : cases) {
    char name[64];
    std::snprintf(name, sizeof name, "reduce_1bit_by_%d_vs_8bit_copy", c.divisor);
    Ratio(
        name, c.target,
        [&] {
          struct_LEAD_Bitmap reduced{};
          LEADTOOLS::SmartResize(&bilevel, &reduced, 1.0 / c.divisor);
          // Rows are made when somebody looks at them.
          const imaging::PixelStorage& rows = *reduced.pStorage;
          for (int y = 0; y < rows.Height(); ++y) (void)rows.Row(y);
          LEADTOOLS::FreeBitmap(&reduced);
        },
        [&] { std::memcpy(copy->Row(0), gray.pStorage->Row(0), bytes); });
  }
}

}  // namespace

int main() {
  BenchDownscale();
  for (const int bits : {1, 8, 24}) BenchRepaint(bits);
  for (const int bits : {1, 8}) BenchZoomStep(bits);
  BenchTurns();
  BenchReductions();
  return 0;
}
