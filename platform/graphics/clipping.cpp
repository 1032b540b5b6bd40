#include "platform/graphics/detail/dc_record.h"

using platform::DcRecord;
using platform::FindDc;
using platform::RegionKind;

namespace {

QRect LogicalToUnits(const DcRecord& dc, const RECT& rect) {
  return platform::UnitsOf(dc, rect.left, rect.top, std::int64_t{rect.right} - rect.left,
                           std::int64_t{rect.bottom} - rect.top);
}

}  // namespace

int IntersectClipRect(HDC dc, int left, int top, int right, int bottom) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return RGN_ERROR;
  const QRegion rect = LogicalToUnits(*record, {left, top, right, bottom});
  std::optional<QRegion>& clip = record->state.clip;
  clip = clip ? *clip & rect : rect;
  return RegionKind(platform::ClipOf(*record));
}

int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return RGN_ERROR;
  record->state.clip = platform::ClipOf(*record) - LogicalToUnits(*record, {left, top, right, bottom});
  return RegionKind(*record->state.clip);
}

int GetClipBox(HDC dc, LPRECT box) {
  const DcRecord* record = FindDc(dc);
  if (record == nullptr || box == nullptr) return RGN_ERROR;
  const QRegion clip = platform::ClipOf(*record);
  *box = platform::ToRect(clip.boundingRect());
  if (clip.isEmpty())
    *box = {};
  else
    DPtoLP(dc, reinterpret_cast<LPPOINT>(box), 2);
  return RegionKind(clip);
}

BOOL RectVisible(HDC dc, LPCRECT rect) {
  const DcRecord* record = FindDc(dc);
  return record != nullptr && rect != nullptr && !IsRectEmpty(rect) &&
         platform::ClipOf(*record).intersects(LogicalToUnits(*record, *rect));
}
