#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <cmath>
#include <memory>

#include "platform/graphics/detail/dc_record.h"

using platform::BitmapRecord;
using platform::DcKind;
using platform::DcRecord;
using platform::DcState;
using platform::FindDc;
using platform::ObjectAs;

namespace {

// Assumed where there is no screen to ask.
constexpr QSize kPlainScreen(1024, 768);
constexpr int kDotsPerInch = 96;

int Millimetres(int dots) {
  return static_cast<int>(std::lround(dots * 25.4 / kDotsPerInch));
}

int ScreenCaps(int index) {
  const QScreen* screen = qGuiApp == nullptr ? nullptr : QGuiApplication::primaryScreen();
  const QSize size = screen == nullptr ? kPlainScreen : screen->size();
  switch (index) {
    case TECHNOLOGY:
      return DT_RASDISPLAY;
    case HORZRES:
    case PHYSICALWIDTH:
      return size.width();
    case VERTRES:
    case PHYSICALHEIGHT:
      return size.height();
    case HORZSIZE:
      return Millimetres(size.width());
    case VERTSIZE:
      return Millimetres(size.height());
    case LOGPIXELSX:
    case LOGPIXELSY:
      return kDotsPerInch;
    case BITSPIXEL:
      return 32;
    case PLANES:
      return 1;
    case NUMCOLORS:
      return -1;
    case COLORRES:
      return 24;
    case ASPECTX:
    case ASPECTY:
      return 36;
    case ASPECTXY:
      return 51;
    case RASTERCAPS:
      return RC_BITBLT | RC_BITMAP64 | RC_DI_BITMAP | RC_DIBTODEV | RC_STRETCHBLT | RC_STRETCHDIB;
    default:
      return 0;
  }
}

HGDIOBJ SelectBitmap(HDC handle, DcRecord& dc, HGDIOBJ object) {
  auto* bitmap = ObjectAs<BitmapRecord>(object);
  const bool stock = object == platform::StockBitmap();
  if (dc.kind != DcKind::Memory || (bitmap->inside != nullptr && bitmap->inside != handle)) return nullptr;
  if (auto* old = ObjectAs<BitmapRecord>(dc.state.bitmap)) old->inside = nullptr;
  if (!stock) bitmap->inside = handle;
  return platform::ExchangeSelected(dc.state.bitmap, object);
}

HGDIOBJ* PlaceOf(DcState& state, DWORD type) {
  switch (type) {
    case OBJ_BRUSH:
      return &state.brush;
    case OBJ_PEN:
      return &state.pen;
    case OBJ_FONT:
      return &state.font;
    case OBJ_PAL:
      return &state.palette;
    case OBJ_BITMAP:
      return &state.bitmap;
    default:
      return nullptr;
  }
}

}  // namespace

HDC CreateCompatibleDC(HDC dc) {
  auto record = std::make_unique<DcRecord>();
  if (const DcRecord* model = FindDc(dc)) {
    record->scale = platform::ScaleOf(*model);
  } else if (dc != nullptr) {
    return nullptr;
  }
  return platform::AddDc(std::move(record));
}

BOOL DeleteDC(HDC dc) {
  const DcRecord* record = FindDc(dc);
  return record != nullptr && record->kind != DcKind::Window && platform::RemoveDc(dc);
}

int GetDeviceCaps(HDC dc, int index) {
  const DcRecord* record = FindDc(dc);
  if (record == nullptr) return 0;
  if (record->kind != DcKind::Painter) return ScreenCaps(index);
  const auto found = record->caps.find(index);
  return found == record->caps.end() ? 0 : found->second;
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ object) {
  DcRecord* record = FindDc(dc);
  const DWORD type = GetObjectType(object);
  if (record == nullptr || type == 0 || type == OBJ_PAL) return nullptr;
  if (type == OBJ_BITMAP) return SelectBitmap(dc, *record, object);
  return platform::ExchangeSelected(*PlaceOf(record->state, type), object);
}

HGDIOBJ GetCurrentObject(HDC dc, UINT type) {
  DcRecord* record = FindDc(dc);
  HGDIOBJ* place = record == nullptr ? nullptr : PlaceOf(record->state, type);
  return place == nullptr ? nullptr : *place;
}

HPALETTE SelectPalette(HDC dc, HPALETTE palette, BOOL) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || ObjectAs<platform::PaletteRecord>(palette) == nullptr) return nullptr;
  return static_cast<HPALETTE>(platform::ExchangeSelected(record->state.palette, palette));
}

UINT RealizePalette(HDC) {
  return 0;
}

int SaveDC(HDC dc) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return 0;
  record->saved.push_back(record->state);
  return static_cast<int>(record->saved.size());
}

BOOL RestoreDC(HDC dc, int saved) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return FALSE;
  const int count = static_cast<int>(record->saved.size());
  const int level = saved < 0 ? count + saved + 1 : saved;
  if (level < 1 || level > count) return FALSE;
  DcState wanted = record->saved[static_cast<std::size_t>(level - 1)];
  record->saved.resize(static_cast<std::size_t>(level - 1));
  // An object that was deleted meanwhile can't come back: the current one stays.
  for (const DWORD type : {OBJ_BRUSH, OBJ_PEN, OBJ_FONT, OBJ_PAL, OBJ_BITMAP}) {
    HGDIOBJ& now = *PlaceOf(record->state, type);
    HGDIOBJ& then = *PlaceOf(wanted, type);
    if (GetObjectType(then) == type && then != now) {
      if (type == OBJ_BITMAP)
        SelectBitmap(dc, *record, then);
      else
        platform::ExchangeSelected(now, then);
    }
    then = now;
  }
  record->state = std::move(wanted);
  return TRUE;
}

namespace platform {

HDC CreateWindowSurfaceDC(QImage* image, double scale, const QRegion& clip, DrawnFunction onDrawn) {
  auto record = std::make_unique<DcRecord>();
  record->kind = DcKind::Window;
  record->image = image;
  record->scale = scale;
  record->visible = clip;
  record->onDrawn = std::move(onDrawn);
  return AddDc(std::move(record));
}

bool SetWindowSurface(HDC dc, QImage* image, double scale, const QRegion& clip) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || record->kind != DcKind::Window) return false;
  record->image = image;
  record->scale = scale;
  record->visible = clip;
  return true;
}

void SetKeptSurface(HDC dc, WindowSurface* surface) {
  DcRecord* record = FindDc(dc);
  if (record != nullptr && record->kind == DcKind::Window) record->kept = surface;
}

bool DestroySurfaceDC(HDC dc) {
  const DcRecord* record = FindDc(dc);
  return record != nullptr && record->kind != DcKind::Memory && RemoveDc(dc);
}

HDC CreatePainterDC(QPainter* painter, std::map<int, int> caps, std::function<void()> onDelete) {
  auto record = std::make_unique<DcRecord>();
  record->kind = DcKind::Painter;
  record->painter = painter;
  record->caps = std::move(caps);
  record->onDelete = std::move(onDelete);
  return AddDc(std::move(record));
}

bool SetPainter(HDC dc, QPainter* painter) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || record->kind != DcKind::Painter) return false;
  record->painter = painter;
  return true;
}

bool SetPainterCaps(HDC dc, std::map<int, int> caps) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || record->kind != DcKind::Painter) return false;
  record->caps = std::move(caps);
  return true;
}

bool SetImageDrawer(HDC dc, ImageDrawer drawer) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || record->kind != DcKind::Painter) return false;
  record->drawImage = std::move(drawer);
  return true;
}

QPainter* PainterOf(HDC dc) {
  const DcRecord* record = FindDc(dc);
  return record == nullptr ? nullptr : record->painter;
}

bool IsDeviceContext(HDC dc) {
  return FindDc(dc) != nullptr;
}

}  // namespace platform
