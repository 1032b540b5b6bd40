#include "platform/graphics/surface.h"

#include "platform/graphics/detail/dc_record.h"
#include "platform/graphics/detail/window_surface.h"

namespace platform {

bool LockSurface(HDC dc, SurfaceView& view) {
  view = {};
  DcRecord* record = FindDc(dc);
  const auto target = record == nullptr ? std::nullopt : TargetOf(*record);
  if (!target || !target->IsPlain32()) return false;
  record->lockedClip.clear();
  for (const QRect& part : ClippedPixels(*record, *target, QRect(0, 0, target->width, target->height)))
    record->lockedClip.push_back(ToRect(part));
  view.pixels = reinterpret_cast<std::uint32_t*>(target->top);
  view.width = target->width;
  view.height = target->height;
  view.stride = target->stride / 4;
  view.scale = ScaleOf(*record);
  view.originX = (static_cast<double>(record->state.viewportOrg.x) - record->state.windowOrg.x) * view.scale;
  view.originY = (static_cast<double>(record->state.viewportOrg.y) - record->state.windowOrg.y) * view.scale;
  view.clip = record->lockedClip;
  view.dc = dc;
  if (record->kept != nullptr) view.mark = &record->kept->mark;
  return true;
}

std::uint32_t* MoveSurface(HDC dc, int dx, int dy) {
  const DcRecord* record = FindDc(dc);
  const bool moved = record != nullptr && record->kept != nullptr && record->kept->Move(dx, dy);
  return moved ? reinterpret_cast<std::uint32_t*>(record->kept->image.bits()) : nullptr;
}

double DeviceScale(HDC dc) {
  const DcRecord* record = FindDc(dc);
  return record == nullptr ? 1.0 : ScaleOf(*record);
}

void UnlockSurface(HDC dc, const RECT& drawn) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return;
  TellDrawn(*record, UnitsOf(*record, drawn.left, drawn.top, std::int64_t{drawn.right} - drawn.left,
                             std::int64_t{drawn.bottom} - drawn.top));
}

}  // namespace platform
