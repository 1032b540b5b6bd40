#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_file.h"
#include "benchmarks/ratio.h"
#include "docview/zp_doc.h"
#include "docview/zp_view.h"
#include "platform/framework/app.h"
#include "platform/framework/frame_wnd.h"
#include "tessarel12_testing.h"

// A change of page in a document's view of 1200 by 800, from the call until the page is painted, against what
// it can't do without: one reduction of the part that is seen, and one copy of as many 32-bit pixels. That
// nothing is decoded shows in the size of the number: decoding the page alone takes longer. The pages are A4
// at 300 dots per inch, of 1 bit. Wants QT_QPA_PLATFORM=offscreen where there is no display.

namespace {

constexpr int kViewWidth = 1200;
constexpr int kViewHeight = 800;

CZPDoc* OpenPages(const std::string& path, CFrameWnd** frame) {
  auto* document = static_cast<CZPDoc*>(RUNTIME_CLASS(CZPDoc)->CreateObject());
  CCreateContext context;
  context.m_pNewViewClass = RUNTIME_CLASS(CZPView);
  context.m_pCurrentDoc = document;
  *frame = new CFrameWnd;  // ends with its window, as view and document do
  if ((*frame)->Create(nullptr, "", WS_OVERLAPPEDWINDOW, CRect(0, 0, kViewWidth + 20, kViewHeight + 20),
                       nullptr, nullptr, 0, &context) == FALSE)
    return nullptr;
  (*frame)->InitialUpdateFrame(document, TRUE);
  return document->OnOpenDocument(path.c_str()) != 0 ? document : nullptr;
}

/// The part of the page that the view shows at 1 : divisor.
struct Part : struct_LEAD_Bitmap {
  Part(struct_LEAD_Bitmap* page, int divisor) : struct_LEAD_Bitmap{} {
    const int width = std::min(kViewWidth * divisor, page->Width);
    const int height = std::min(kViewHeight * divisor, page->Height);
    LEADTOOLS::CopyBitmapRect(this, page, 0, 0, static_cast<unsigned>(width), static_cast<unsigned>(height));
  }
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;
  ~Part() { LEADTOOLS::FreeBitmap(this); }
};

void MeasureAt(int divisor, CZPDoc& document, CZPView& view) {
  view.ZoomToScaleFactor(1.0 / divisor);
  platform::testing::PumpUntilIdle();
  Part part(document.GetHBitmap(0), divisor);
  const std::vector<std::uint32_t> pixels(std::size_t{kViewWidth} * kViewHeight, 1);
  std::vector<std::uint32_t> screen(pixels.size());
  int page = 0;
  const auto change = [&] {
    document.SetActivePage(page = 1 - page);
    view.UpdateWindow();
  };
  const auto visiblePart = [&] {
    if (divisor > 1) {
      struct_LEAD_Bitmap reduced{};
      LEADTOOLS::SmartResize(&part, &reduced, 1.0 / divisor);
      LEADTOOLS::FreeBitmap(&reduced);
    }
    std::memcpy(screen.data(), pixels.data(), pixels.size() * sizeof pixels[0]);
    asm volatile("" : : "r"(screen.data()) : "memory");  // the copy is wanted
  };
  Ratio(("page_change_1_" + std::to_string(divisor) + "_vs_visible_part").c_str(), 4.0, change, visiblePart);
  // The copy is of the whole page; what that costs beyond the part that is seen.
  if (divisor == 1) return;
  const auto reduceWhole = [&] {
    struct_LEAD_Bitmap reduced{};
    LEADTOOLS::SmartResize(document.GetHBitmap(0), &reduced, 1.0 / divisor);
    LEADTOOLS::FreeBitmap(&reduced);
  };
  Ratio(("reduce_page_1_" + std::to_string(divisor) + "_vs_visible_part").c_str(), 1.5, reduceWhole,
        visiblePart);
}

}  // namespace

int main(int argc, char** argv) {
  if (AfxWinInit(argc, argv) == FALSE) return 1;
  const std::string path =
      (std::filesystem::temp_directory_path() / ("bench-pages-" + std::to_string(::getpid()) + ".tif"))
          .string();
  std::vector<std::uint8_t> page = TextPage();
  WritePages(path, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, page, 2);
  CFrameWnd* frame = nullptr;
  CZPDoc* const document = OpenPages(path, &frame);
  std::filesystem::remove(path);  // whoever decodes now, fails
  if (document == nullptr) return 1;
  auto* const view = dynamic_cast<CZPView*>(frame->GetActiveView());
  for (const int divisor : {1, 2, 3, 4, 8}) MeasureAt(divisor, *document, *view);
  frame->DestroyWindow();
  return 0;
}
