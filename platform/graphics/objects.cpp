#include <algorithm>
#include <cstring>

#include "platform/graphics/detail/objects.h"

using platform::AddObject;
using platform::BrushRecord;
using platform::FontRecord;
using platform::GdiRecord;
using platform::ObjectAs;
using platform::Objects;
using platform::PaletteRecord;
using platform::PenRecord;

namespace platform {

// Never destroyed: wrappers with static storage may still delete objects while the process ends.
HandleTable<GdiRecord, HGDIOBJ>& Objects() {
  static auto& table = *[] {
    auto* created = new HandleTable<GdiRecord, HGDIOBJ>;
    // FillRect takes a theme colour's number plus 1 in a brush's place, so no handle may be that small.
    constexpr int kReserved = 32;
    static_assert(kReserved > COLOR_INFOBK + 1);
    for (int i = 0; i < kReserved; ++i) created->Add(nullptr);
    return created;
  }();
  return table;
}

int RegionKind(const QRegion& region) {
  if (region.isEmpty()) return NULLREGION;
  return region.rectCount() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

}  // namespace platform

HBRUSH CreateSolidBrush(COLORREF color) {
  return AddObject<HBRUSH>(BrushRecord{.color = color});
}

HPEN CreatePen(int style, int width, COLORREF color) {
  if (style < PS_SOLID || style > PS_INSIDEFRAME) return nullptr;
  return AddObject<HPEN>(PenRecord{style, std::max(width, 0), color});
}

HFONT CreateFontIndirectA(const LOGFONTA* font) {
  if (font == nullptr) return nullptr;
  FontRecord record{*font};
  record.log.lfFaceName[LF_FACESIZE - 1] = '\0';
  return AddObject<HFONT>(record);
}

HPALETTE CreatePalette(const LOGPALETTE* palette) {
  if (palette == nullptr || palette->palNumEntries == 0) return nullptr;
  const PALETTEENTRY* entries = palette->palPalEntry;
  return AddObject<HPALETTE>(PaletteRecord{{entries, entries + palette->palNumEntries}});
}

UINT GetPaletteEntries(HPALETTE palette, UINT first, UINT count, PALETTEENTRY* entries) {
  const auto* record = ObjectAs<PaletteRecord>(palette);
  if (record == nullptr) return 0;
  const UINT size = static_cast<UINT>(record->entries.size());
  if (entries == nullptr) return size;
  if (first >= size) return 0;
  count = std::min(count, size - first);
  std::copy_n(record->entries.begin() + first, count, entries);
  return count;
}

BOOL DeleteObject(HGDIOBJ object) {
  const GdiRecord* record = Objects().Get(object);
  if (record == nullptr) return FALSE;
  if (record->permanent) return TRUE;
  if (record->selected > 0) return FALSE;
  Objects().Remove(object);
  return TRUE;
}

DWORD GetObjectType(HGDIOBJ object) {
  const GdiRecord* record = Objects().Get(object);
  if (record == nullptr) return 0;
  // In the order of the record's alternatives.
  constexpr DWORD kTypes[] = {OBJ_BRUSH, OBJ_PEN, OBJ_PAL, OBJ_FONT, OBJ_BITMAP};
  return kTypes[record->what.index()];
}

namespace {

template <typename Record>
int Give(const Record& record, int bytes, LPVOID buffer) {
  constexpr int kSize = sizeof(Record);
  if (buffer == nullptr) return kSize;
  if (bytes < kSize) return 0;
  std::memcpy(buffer, &record, kSize);
  return kSize;
}

BITMAP Describe(const platform::BitmapRecord& bitmap) {
  const std::int64_t bits = std::int64_t{bitmap.width} * bitmap.raster.bits;
  // Rows of a section are padded to 32 bits, those of other bitmaps to 16.
  const std::int64_t rowBytes = bitmap.section ? (bits + 31) / 32 * 4 : (bits + 15) / 16 * 2;
  // The first row in memory: the lowest one of a bottom-up section.
  BYTE* memory = bitmap.raster.stride < 0 ? bitmap.raster.Row(bitmap.raster.height - 1) : bitmap.raster.top;
  return {0,
          bitmap.width,
          bitmap.height,
          static_cast<LONG>(rowBytes),
          1,
          static_cast<WORD>(bitmap.raster.bits),
          bitmap.section ? memory : nullptr};
}

}  // namespace

int GetObjectA(HGDIOBJ object, int bytes, LPVOID buffer) {
  if (const auto* bitmap = ObjectAs<platform::BitmapRecord>(object))
    return Give(Describe(*bitmap), bytes, buffer);
  if (const auto* font = ObjectAs<FontRecord>(object)) return Give(font->log, bytes, buffer);
  if (const auto* pen = ObjectAs<PenRecord>(object))
    return Give(LOGPEN{static_cast<UINT>(pen->style), {pen->width, 0}, pen->color}, bytes, buffer);
  if (const auto* brush = ObjectAs<BrushRecord>(object)) {
    const COLORREF color = brush->themeColor >= 0 ? GetSysColor(brush->themeColor) : brush->color;
    return Give(LOGBRUSH{brush->hollow ? BS_NULL : BS_SOLID, color, 0}, bytes, buffer);
  }
  if (const auto* palette = ObjectAs<PaletteRecord>(object))
    return Give(static_cast<WORD>(palette->entries.size()), bytes, buffer);
  return 0;
}
