#include <utility>

#include "platform/graphics/detail/dc_record.h"

using platform::DcRecord;
using platform::DcState;
using platform::FindDc;

namespace {

// Sets one attribute; the old value, or failure for a dead handle.
template <typename Value>
Value Exchange(HDC dc, Value DcState::*attribute, Value value, Value failure) {
  DcRecord* record = FindDc(dc);
  return record == nullptr ? failure : std::exchange(record->state.*attribute, value);
}

template <typename Value>
Value Read(HDC dc, Value DcState::*attribute, Value failure) {
  const DcRecord* record = FindDc(dc);
  return record == nullptr ? failure : record->state.*attribute;
}

BOOL SetOrigin(HDC dc, POINT DcState::*origin, int x, int y, LPPOINT old) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return FALSE;
  const POINT before = std::exchange(record->state.*origin, POINT{x, y});
  if (old != nullptr) *old = before;
  return TRUE;
}

// direction 1: logical to device, -1: back. Sums wrap like the unsigned numbers they are made in.
BOOL Shift(HDC dc, LPPOINT points, int count, int direction) {
  const DcRecord* record = FindDc(dc);
  if (record == nullptr || points == nullptr || count < 0) return FALSE;
  const auto turn = static_cast<DWORD>(direction);
  const DWORD dx = turn * (static_cast<DWORD>(record->state.viewportOrg.x) -
                           static_cast<DWORD>(record->state.windowOrg.x));
  const DWORD dy = turn * (static_cast<DWORD>(record->state.viewportOrg.y) -
                           static_cast<DWORD>(record->state.windowOrg.y));
  for (LPPOINT point = points; point != points + count; ++point)
    *point = {static_cast<LONG>(static_cast<DWORD>(point->x) + dx),
              static_cast<LONG>(static_cast<DWORD>(point->y) + dy)};
  return TRUE;
}

}  // namespace

BOOL SetWindowOrgEx(HDC dc, int x, int y, LPPOINT old) {
  return SetOrigin(dc, &DcState::windowOrg, x, y, old);
}
BOOL SetViewportOrgEx(HDC dc, int x, int y, LPPOINT old) {
  return SetOrigin(dc, &DcState::viewportOrg, x, y, old);
}
BOOL DPtoLP(HDC dc, LPPOINT points, int count) {
  return Shift(dc, points, count, -1);
}
BOOL LPtoDP(HDC dc, LPPOINT points, int count) {
  return Shift(dc, points, count, 1);
}

COLORREF SetTextColor(HDC dc, COLORREF color) {
  return Exchange(dc, &DcState::textColor, color, CLR_INVALID);
}
COLORREF GetTextColor(HDC dc) {
  return Read(dc, &DcState::textColor, CLR_INVALID);
}
COLORREF SetBkColor(HDC dc, COLORREF color) {
  return Exchange(dc, &DcState::bkColor, color, CLR_INVALID);
}
int SetBkMode(HDC dc, int mode) {
  return mode == TRANSPARENT || mode == OPAQUE ? Exchange(dc, &DcState::bkMode, mode, 0) : 0;
}
