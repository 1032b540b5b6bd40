#include "platform/spooler/detail/printer_dc.h"

#include <QtCore/QRect>
#include <algorithm>
#include <chrono>
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

/// The image, with the abort procedure asked now and then while its rows are read: those of a long page take
/// seconds.
PrinterImage Interruptible(PrinterImage image, HDC dc, const std::shared_ptr<PrinterDc>& printer) {
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kInterval(50);
  image.mayGoOn = [dc, printer, next = Clock::now() + kInterval]() mutable {
    if (Clock::now() < next) return true;
    const bool goOn = MayGoOn(dc, printer);
    next = Clock::now() + kInterval;
    return goOn;
  };
  return image;
}

/// False, for the caller to return.
bool EndWith(PrinterDc& printer, int failure) {
  printer.job.reset();
  printer.failure = failure;
  return false;
}

/// Draws in dots; an extent of the place below 0 mirrors.
bool DrawInDots(HDC dc, const PrinterImage& image, const RECT& source, const RECT& place, const RECT& clip) {
  const auto printer = FindPrinterDc(dc);
  // Within the abort procedure the document is in use.
  if (!printer || printer->asking || !printer->job || !printer->job->IsPageOpen() || !IsImage(image))
    return false;
  const PdfRect wanted{static_cast<double>(place.left), static_cast<double>(place.top),
                       static_cast<double>(place.right) - place.left,
                       static_cast<double>(place.bottom) - place.top};
  const Shown shown = CutToShow(image, source, wanted, clip);
  if (!shown.any) return true;
  try {
    printer->job->Draw(Interruptible(image, dc, printer), shown.part, shown.place, clip);
  } catch (const std::bad_alloc&) {
    return EndWith(*printer, SP_OUTOFMEMORY);
  } catch (const ImageEnded&) {
    return EndWith(*printer, SP_APPABORT);
  }
  return true;
}

}  // namespace

std::shared_ptr<PrinterDc> FindPrinterDc(HDC dc) {
  const auto found = PrinterDcs().find(dc);
  return found == PrinterDcs().end() ? nullptr : found->second;
}

bool MayGoOn(HDC dc, const std::shared_ptr<PrinterDc>& printer) {
  if (printer->abortProcedure == nullptr || printer->asking) return true;
  printer->asking = true;
  const bool goOn = printer->abortProcedure(dc, 0) != 0;
  printer->asking = false;
  return goOn && FindPrinterDc(dc) == printer;
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
  SetImageDrawer(dc, [dc](const PrinterImage& image, const RECT& source, const RECT& place,
                          const RECT& clip) { return DrawInDots(dc, image, source, place, clip); });
  return dc;
}

bool IsPrinterDC(HDC dc) {
  return FindPrinterDc(dc) != nullptr;
}

bool DrawImageOnPrinter(HDC dc, const PrinterImage& image, const RECT& destination, const RECT& source) {
  if (!IsPrinterDC(dc)) return false;
  RECT place = destination;
  RECT clip{};
  GetClipBox(dc, &clip);
  LPtoDP(dc, reinterpret_cast<LPPOINT>(&place), 2);
  LPtoDP(dc, reinterpret_cast<LPPOINT>(&clip), 2);
  return DrawInDots(dc, image, source, place, clip);
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
