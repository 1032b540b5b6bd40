#include "platform/spooler/detail/printer_dc.h"

#include <QtCore/QRect>
#include <algorithm>
#include <cmath>
#include <map>

#include "platform/graphics/detail/device_context.h"
#include "platform/spooler/detail/image_rows.h"
#include "platform/spooler/printers.h"

namespace platform {
namespace {

// Never destroyed: wrappers with static storage may still delete theirs while the process ends.
std::map<HDC, std::shared_ptr<PrinterDc>>& PrinterDcs() {
  static auto& contexts = *new std::map<HDC, std::shared_ptr<PrinterDc>>;
  return contexts;
}

/// What of the image exists and shows: both ranges shrink together.
struct Shown {
  RECT part;
  PdfRect place;
  bool any;
};

/// One axis: the source range becomes [0, size) at most, and the place shrinks by the same share.
bool CutAxis(std::int64_t from, std::int64_t to, int size, double& at, double& extent, LONG& first,
             LONG& last) {
  if (from >= to) return false;
  const std::int64_t begin = std::max<std::int64_t>(from, 0);
  const std::int64_t end = std::min<std::int64_t>(to, size);
  if (begin >= end) return false;
  const double step = extent / static_cast<double>(to - from);
  at += step * static_cast<double>(begin - from);
  extent = step * static_cast<double>(end - begin);
  first = static_cast<LONG>(begin);
  last = static_cast<LONG>(end);
  return true;
}

/// One axis: leaves out whole pixels before and behind the clip.
void ClipAxis(int low, int high, double& at, double& extent, LONG& first, LONG& last) {
  const double step = extent / (last - first);
  if (step == 0) return;
  const auto index = [&](double position) { return (position - at) / step; };
  const double a = std::min(index(low), index(high));
  const double b = std::max(index(low), index(high));
  const auto begin = static_cast<LONG>(std::clamp(std::floor(a), 0.0, static_cast<double>(last - first)));
  const auto end = static_cast<LONG>(std::clamp(std::ceil(b), 0.0, static_cast<double>(last - first)));
  at += step * begin;
  extent = step * (end - begin);
  last = first + end;
  first += begin;
}

Shown CutToShow(const PrinterImage& image, const RECT& source, PdfRect place, const RECT& clip) {
  Shown shown{{}, place, false};
  RECT& part = shown.part;
  PdfRect& to = shown.place;
  if (!CutAxis(source.left, source.right, image.width, to.x, to.width, part.left, part.right) ||
      !CutAxis(source.top, source.bottom, image.height, to.y, to.height, part.top, part.bottom))
    return shown;
  ClipAxis(clip.left, clip.right, to.x, to.width, part.left, part.right);
  ClipAxis(clip.top, clip.bottom, to.y, to.height, part.top, part.bottom);
  shown.any = part.left < part.right && part.top < part.bottom;
  return shown;
}

/// Draws in dots; an extent of the place below 0 mirrors.
bool DrawInDots(PrinterDc& printer, const PrinterImage& image, const RECT& source, const PdfRect& place,
                const RECT& clip) {
  if (!printer.job || !printer.job->IsPageOpen() || !IsImage(image)) return false;
  const Shown shown = CutToShow(image, source, place, clip);
  if (!shown.any) return true;
  try {
    printer.job->Draw(image, shown.part, shown.place, clip);
  } catch (const std::bad_alloc&) {
    printer.job.reset();
    printer.failure = SP_OUTOFMEMORY;
    return false;
  }
  return true;
}

}  // namespace

std::shared_ptr<PrinterDc> FindPrinterDc(HDC dc) {
  const auto found = PrinterDcs().find(dc);
  return found == PrinterDcs().end() ? nullptr : found->second;
}

HDC CreatePrinterDC(const PrintQueue& queue, const std::string& output, const DEVMODEA* mode) {
  auto printer = std::make_shared<PrinterDc>();
  printer->queue = queue;
  printer->output = output;
  printer->sheet = SheetOf(queue, mode);
  auto handle = std::make_shared<HDC>(nullptr);
  const HDC dc = CreatePainterDC(nullptr, CapsOf(printer->sheet), [handle] { PrinterDcs().erase(*handle); });
  *handle = dc;
  PrinterDcs()[dc] = printer;
  SetImageDrawer(dc, [printer = printer.get()](const PrinterImage& image, const RECT& source,
                                               const RECT& place, const RECT& clip) {
    return DrawInDots(
        *printer, image, source,
        {static_cast<double>(place.left), static_cast<double>(place.top),
         static_cast<double>(place.right) - place.left, static_cast<double>(place.bottom) - place.top},
        clip);
  });
  return dc;
}

bool IsPrinterDC(HDC dc) {
  return FindPrinterDc(dc) != nullptr;
}

bool DrawImageOnPrinter(HDC dc, const PrinterImage& image, const RECT& destination, const RECT& source) {
  const auto printer = FindPrinterDc(dc);
  if (!printer) return false;
  RECT place = destination;
  RECT clip{};
  GetClipBox(dc, &clip);
  LPtoDP(dc, reinterpret_cast<LPPOINT>(&place), 2);
  LPtoDP(dc, reinterpret_cast<LPPOINT>(&clip), 2);
  return DrawInDots(
      *printer, image, source,
      {static_cast<double>(place.left), static_cast<double>(place.top),
       static_cast<double>(place.right) - place.left, static_cast<double>(place.bottom) - place.top},
      clip);
}

}  // namespace platform

HDC CreateDCA(LPCSTR /*driver*/, LPCSTR device, LPCSTR output, const DEVMODEA* mode) {
  const std::string file = output == nullptr ? "" : output;
  if (device == nullptr || *device == 0)
    return file.empty() ? nullptr : platform::CreatePrinterDC(platform::FileQueue(), file, mode);
  const auto queue = platform::FindQueue(device);
  return queue ? platform::CreatePrinterDC(*queue, file, mode) : nullptr;
}

HDC ResetDCA(HDC dc, const DEVMODEA* mode) {
  const auto printer = platform::FindPrinterDc(dc);
  if (!printer || mode == nullptr || (printer->job && printer->job->IsPageOpen())) return nullptr;
  printer->sheet = platform::SheetOf(printer->queue, mode);
  platform::SetPainterCaps(dc, platform::CapsOf(printer->sheet));
  return dc;
}
