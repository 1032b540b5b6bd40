#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/ratio.h"
#include "imagewindow/image_window.h"
#include "platform/framework/app.h"
#include "platform/framework/frame_wnd.h"
#include "tessarel12_testing.h"

// A whole repaint of 1200 by 800 through WM_PAINT, the picture's way to the screen included, against a copy
// of as many 32-bit pixels. Wants QT_QPA_PLATFORM=offscreen where there is no display.

namespace {

constexpr int kWidth = 1200;
constexpr int kHeight = 800;

class ShownPage : public CImageWindow {
 public:
  /// A bilevel page of A4 at 300 dots per inch, as a load would leave it.
  void Fill() {
    LEADTOOLS::InitBitmap(&m_Bitmap, 2480, 3508, 8);
    LEADTOOLS::AllocateBitmap(&m_Bitmap, 1);
    m_nCurrPage = m_nMaxPage = 1;
  }
  void ScrollTo(int y) { SetScrollPos(CPoint(0, y), FALSE); }
};

}  // namespace

int main(int argc, char** argv) {
  if (AfxWinInit(argc, argv) == FALSE) return 1;
  auto* frame = new CFrameWnd;  // ends with its window
  if (frame->Create(nullptr, "", WS_OVERLAPPEDWINDOW, CRect(0, 0, 1300, 900)) == FALSE) return 1;
  {
    ShownPage window;
    if (window.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, kWidth, kHeight), frame, 1) == FALSE)
      return 1;
    window.Fill();
    frame->ShowWindow(SW_SHOW);
    const std::vector<std::uint32_t> pixels(std::size_t{kWidth} * kHeight, 1);
    std::vector<std::uint32_t> screen(pixels.size());
    const auto copyScreen = [&] {
      std::memcpy(screen.data(), pixels.data(), pixels.size() * sizeof pixels[0]);
      asm volatile("" : : "r"(screen.data()) : "memory");  // the copy is wanted
    };
    int position = 0;
    for (const auto& [name, factor] : {std::pair("full_size", 1.0), std::pair("half_size", 0.5)}) {
      window.ZoomToScaleFactor(factor);
      platform::testing::PumpUntilIdle();
      const auto repaint = [&] {
        window.Invalidate(FALSE);
        window.UpdateWindow();
      };
      Ratio((std::string("repaint_") + name + "_vs_memcpy").c_str(), 1.5, repaint, copyScreen);
      const auto scroll = [&] {
        window.ScrollTo((position += 15) % 600);
        window.UpdateWindow();
      };
      Ratio((std::string("scroll_step_with_bars_") + name + "_vs_memcpy").c_str(), 1.5, scroll, copyScreen);
    }
  }
  frame->DestroyWindow();
  return 0;
}
