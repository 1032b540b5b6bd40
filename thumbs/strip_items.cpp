#include "thumbs/strip_items.h"

#include "platform/graphics/gdi.h"
#include "platform/window/window.h"

namespace thumbs {
namespace {

constexpr UINT kSetStripColour = WM_USER + 21;
// Which fields of an item count
constexpr UINT kPicture = 1;
constexpr UINT kCaption = 2;
constexpr UINT kSelection = 8;

void Select(HWND strip, int item, bool selected) {
  _LILITEM record{};
  record.uStructSize = sizeof record;
  record.uMask = kSelection;
  record.bSelected = selected ? 1 : 0;
  LEADTOOLS::ImgListSetItem(strip, static_cast<unsigned>(item), &record);
}

}  // namespace

void PrepareStrip(HWND strip) {
  _LILSELOPTION selection{};
  LEADTOOLS::ImgListGetSelOptions(strip, &selection);
  selection.uStructSize = sizeof selection;
  selection.bSelectPicked = 1;
  selection.bSingle = 1;
  LEADTOOLS::ImgListSetSelOptions(strip, &selection);
  SendMessage(strip, kSetStripColour, 0, static_cast<LPARAM>(GetSysColor(COLOR_INACTIVECAPTION)));
}

void SetCells(HWND strip, SIZE cell) {
  _LILITEMOPTION cells{};
  cells.uStructSize = sizeof cells;
  LEADTOOLS::ImgListGetItemOptions(strip, &cells);
  cells.ItemWidth = cell.cx;
  cells.ItemHeight = cell.cy;
  LEADTOOLS::ImgListSetItemOptions(strip, &cells);
}

void Append(HWND strip, struct_LEAD_Bitmap* picture, CString caption) {
  _LILITEM record{};
  record.uStructSize = sizeof record;
  record.uMask = kPicture | kCaption | kSelection;
  record.pBitmap = picture;
  record.pszText = caption.GetBuffer(0);
  LEADTOOLS::ImgListInsert(strip, &record);
  caption.ReleaseBuffer();
}

void SetPicture(HWND strip, int item, struct_LEAD_Bitmap* picture) {
  _LILITEM record{};
  record.uStructSize = sizeof record;
  record.uMask = kPicture;
  record.pBitmap = picture;
  LEADTOOLS::ImgListSetItem(strip, static_cast<unsigned>(item), &record);
}

bool SelectAlone(HWND strip, int item) {
  const int count = LEADTOOLS::ImgListGetItemCount(strip);
  for (int i = 0; i < count; ++i) Select(strip, i, false);
  if (item < 0 || item >= count) return false;
  Select(strip, item, true);
  return true;
}

}  // namespace thumbs
