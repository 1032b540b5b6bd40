#include <algorithm>
#include <memory>
#include <utility>

#include "imaging/core/guard.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/dib.h"
#include "imaging/pixels/orient.h"
#include "imaging/pixels/record.h"
#include "imaging/pixels/reduce.h"
#include "imaging/pixels/resize.h"
#include "platform/base/global_memory.h"

using imaging::Bitmap;
using imaging::PixelStorage;

namespace {

imaging::Turn TurnBy(int angle) {
  switch ((angle % 36000 + 36000) % 36000) {
    case 0:
      return {};
    case 9000:
      return imaging::kQuarterClockwise;
    case 18000:
      return imaging::kHalf;
    case 27000:
      return imaging::kQuarterCounterclockwise;
    default:
      imaging::Fail(imaging::kErrorUnsupported,
                    "An image can't be rotated by %g degrees, by quarter turns only", angle / 100.0);
  }
}

}  // namespace

int LEADTOOLS::SizeBitmap(struct_LEAD_Bitmap* bitmap, int width, int height) {
  return SizeBitmapExt(bitmap, width, height, 0);
}

int LEADTOOLS::SizeBitmapExt(struct_LEAD_Bitmap* bitmap, int width, int height, unsigned long flags) {
  return imaging::Guarded([&] {
    const PixelStorage& pixels = imaging::RequirePixels(bitmap, "scale");
    if (pixels.Width() == width && pixels.Height() == height) return 1;
    const bool isReduced = width < pixels.Width() || height < pixels.Height();
    if (!isReduced || (flags & leadtools12::kSizeByDropping) != 0) {
      imaging::Replace(*bitmap, imaging::SizedByRepeating(pixels, width, height));
      return 1;
    }
    const bool hasOrder = pixels.Bits() >= 24;
    imaging::Replace(*bitmap, imaging::SizedByAveraging(pixels, width, height));
    if (!hasOrder) bitmap->Order = 1;
    return 1;
  });
}

int LEADTOOLS::ResizeBitmap(struct_LEAD_Bitmap* source, struct_LEAD_Bitmap* target) {
  return imaging::Guarded([&] {
    const PixelStorage& from = imaging::RequirePixels(source, "scale");
    PixelStorage& to = imaging::RequirePixels(target, "scale into");
    if (&from == &to) return 1;
    imaging::ResizeInto(from, source->Order, to, target->Order);
    return 1;
  });
}

int LEADTOOLS::SmartResize(struct_LEAD_Bitmap* source, struct_LEAD_Bitmap* target, double factor) {
  return imaging::Guarded([&] {
    const PixelStorage& pixels = imaging::RequirePixels(source, "reduce");
    imaging::Require(target);
    if (!(factor > 0 && factor <= 1.0))
      imaging::Fail(imaging::kErrorInvalidParameter, "An image can't be reduced by the factor %g", factor);
    auto reduced = imaging::Reduced(pixels, factor);
    if (target == source) {
      reduced->HoldBytes();  // whoever reduces in place wants the large page's memory back
      imaging::Replace(*target, std::move(reduced));
    } else {
      *target = *source;
      imaging::Adopt(*target, std::move(reduced));
    }
    if (target->BitsPerPixel < 24) target->Order = 1;
    return 1;
  });
}

int LEADTOOLS::ReduceToGray(const leadtools12::TwoLevelRows& rows) {
  return imaging::Guarded([&] {
    imaging::ReduceBlocks({rows.source, static_cast<std::ptrdiff_t>(rows.sourcePitch), rows.target,
                           static_cast<std::ptrdiff_t>(rows.targetPitch), rows.width, rows.height,
                           rows.divisor, rows.zeroIsLight, 8});
    return 1;
  });
}

int LEADTOOLS::ReduceToGray(struct_LEAD_Bitmap* source, struct_LEAD_Bitmap* target, int divisor,
                            const tagRGBQUAD* colors) {
  return imaging::Guarded([&] {
    const PixelStorage& pixels = imaging::RequirePixels(source, "reduce");
    imaging::Require(target);
    if (pixels.Bits() != 8 || divisor < 1 || divisor > std::min(pixels.Width(), pixels.Height())) return 0;
    std::unique_ptr<PixelStorage> reduced;
    try {
      reduced = imaging::ReducedLevels(pixels, divisor);
    } catch (CLeadtoolsException* exception) {
      if (exception->GetLastError() != imaging::kErrorNoMemory) throw;
      exception->Delete();
      return 0;
    }
    std::copy_n(colors, reduced->Palette().size(), reduced->Palette().begin());
    Bitmap record = imaging::EmptyBitmap(0, 0, 8);
    record.XResolution = source->XResolution;
    record.YResolution = source->YResolution;
    imaging::Adopt(record, std::move(reduced));
    *target = record;
    return 1;
  });
}

int LEADTOOLS::RotateBitmap(struct_LEAD_Bitmap* bitmap, int angle, unsigned int /*flags*/,
                            unsigned long /*fillColor*/) {
  const PixelStorage& pixels = imaging::RequirePixels(bitmap, "rotate");
  const imaging::Turn turn = TurnBy(angle);
  if (turn.IsNone()) return 1;
  imaging::Replace(*bitmap, imaging::Turned(pixels, turn));
  if (turn.transpose) std::swap(bitmap->XResolution, bitmap->YResolution);
  return 1;
}

int LEADTOOLS::GrayScaleBitmap(struct_LEAD_Bitmap* bitmap, int bits) {
  PixelStorage& pixels = imaging::RequirePixels(bitmap, "turn grey");
  if (bits != 8)
    imaging::Fail(imaging::kErrorUnsupported, "An image can't be made grey with %d bits per pixel", bits);
  if (pixels.IsLinearGray()) return 1;
  if (pixels.Bits() == 1) {
    imaging::ShowAsGrays(pixels);
    bitmap->BitsPerPixel = pixels.Bits();
    return 1;
  }
  imaging::Replace(*bitmap, imaging::Grayed(pixels, bitmap->Order));
  return 1;
}

void* LEADTOOLS::ConvertToDIB(struct_LEAD_Bitmap* bitmap) {
  const PixelStorage& pixels = imaging::RequirePixels(bitmap, "convert");
  return imaging::MakeDib(*bitmap, pixels);
}

int LEADTOOLS::ChangeFromDIB(struct_LEAD_Bitmap* target, void* dib) {
  imaging::Require(target);
  *target = imaging::BitmapFromDib(dib);
  GlobalFree(dib);
  return 1;
}
