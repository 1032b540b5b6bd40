#include "platform/window/tool_bar_control.h"

#include <memory>
#include <utility>

#include "platform/graphics/gdi.h"
#include "platform/window/detail/tool_bar_record.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/window.h"

namespace platform {
namespace {

int IndexOf(const ToolbarRecord& toolbar, WPARAM command) {
  for (std::size_t i = 0; i < toolbar.buttons.size(); ++i)
    if (toolbar.buttons[i].idCommand == static_cast<int>(command)) return static_cast<int>(i);
  return -1;
}

TBBUTTON* ButtonOf(ToolbarRecord& toolbar, int index) {
  const bool exists = index >= 0 && index < static_cast<int>(toolbar.buttons.size());
  return exists ? &toolbar.buttons[static_cast<std::size_t>(index)] : nullptr;
}

void InvalidateButton(HWND window, const ToolbarRecord& toolbar, int index) {
  if (toolbar.IsChevron(index)) InvalidateRect(window, &toolbar.chevron, FALSE);
  if (index < 0 || index >= static_cast<int>(toolbar.buttons.size())) return;
  const RECT place = toolbar.Places()[static_cast<std::size_t>(index)];
  InvalidateRect(window, &place, FALSE);
}

void Rearrange(HWND window) {
  FitToolbar(window);
  InvalidateRect(window, nullptr, TRUE);
}

bool SetState(HWND window, ToolbarRecord& toolbar, int index, BYTE state) {
  TBBUTTON* button = ButtonOf(toolbar, index);
  if (button == nullptr) return false;
  if (button->fsState == state) return true;
  const bool moves = ((button->fsState ^ state) & TBSTATE_HIDDEN) != 0;
  button->fsState = state;
  if (moves)
    Rearrange(window);
  else
    InvalidateButton(window, toolbar, index);
  return true;
}

bool ChangeState(HWND window, ToolbarRecord& toolbar, WPARAM command, BYTE bit, bool on) {
  const int index = IndexOf(toolbar, command);
  const TBBUTTON* button = ButtonOf(toolbar, index);
  if (button == nullptr) return false;
  return SetState(window, toolbar, index,
                  static_cast<BYTE>(on ? button->fsState | bit : button->fsState & ~bit));
}

bool HasState(ToolbarRecord& toolbar, WPARAM command, BYTE bit) {
  const TBBUTTON* button = ButtonOf(toolbar, IndexOf(toolbar, command));
  return button != nullptr && (button->fsState & bit) != 0;
}

/// What a click does to the check marks of a button and its group.
void TurnCheck(HWND window, ToolbarRecord& toolbar, int index) {
  TBBUTTON* button = ButtonOf(toolbar, index);
  if ((button->fsStyle & TBSTYLE_CHECK) == 0) return;
  if ((button->fsStyle & TBSTYLE_GROUP) == 0) {
    SetState(window, toolbar, index, static_cast<BYTE>(button->fsState ^ TBSTATE_CHECKED));
    return;
  }
  const auto inGroup = [&](int i) {
    const TBBUTTON* other = ButtonOf(toolbar, i);
    return other != nullptr && (other->fsStyle & TBSTYLE_CHECKGROUP) == TBSTYLE_CHECKGROUP;
  };
  int first = index;
  while (inGroup(first - 1)) --first;
  for (int i = first; inGroup(i); ++i) {
    const BYTE state = ButtonOf(toolbar, i)->fsState;
    SetState(window, toolbar, i,
             static_cast<BYTE>(i == index ? state | TBSTATE_CHECKED : state & ~TBSTATE_CHECKED));
  }
}

// Mouse

void SetHot(HWND window, ToolbarRecord& toolbar, int index) {
  if (toolbar.hot == index) return;
  InvalidateButton(window, toolbar, toolbar.hot);
  toolbar.hot = index;
  InvalidateButton(window, toolbar, index);
}

void OnMove(HWND window, ToolbarRecord& toolbar, POINT point) {
  SetHot(window, toolbar, ToolbarButtonAt(toolbar, point));
  TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, window, 0};
  TrackMouseEvent(&track);
}

void OnPress(HWND window, ToolbarRecord& toolbar, POINT point) {
  const int index = ToolbarButtonAt(toolbar, point);
  if (toolbar.IsChevron(index)) return OpenChevron(window);
  const TBBUTTON* button = ButtonOf(toolbar, index);
  if (button == nullptr || (button->fsState & TBSTATE_ENABLED) == 0) return;
  toolbar.pressed = index;
  toolbar.hot = index;
  SetCapture(window);
  InvalidateButton(window, toolbar, index);
}

void OnRelease(HWND window, ToolbarRecord& toolbar, POINT point) {
  const int index = std::exchange(toolbar.pressed, -1);
  if (index < 0) return;
  InvalidateButton(window, toolbar, index);
  ReleaseCapture();
  const TBBUTTON* button = ButtonOf(toolbar, index);
  if (button == nullptr || ToolbarButtonAt(toolbar, point) != index) return;
  PressToolButton(window, index);  // which may have been disabled while it was held
}

void OnCancel(HWND window, ToolbarRecord& toolbar) {
  InvalidateButton(window, toolbar, std::exchange(toolbar.pressed, -1));
}

// Messages

LRESULT Paint(HWND window, const ToolbarRecord& toolbar, WPARAM wParam) {
  if (wParam != 0) {  // on the program's own device context, inside its paint cycle
    PaintToolbar(window, reinterpret_cast<HDC>(wParam), toolbar);
    return 0;
  }
  PAINTSTRUCT paint;
  BeginPaint(window, &paint);
  PaintToolbar(window, paint.hdc, toolbar);
  EndPaint(window, &paint);
  return 0;
}

LRESULT InsertButtons(HWND window, ToolbarRecord& toolbar, std::size_t at, std::size_t count, LPARAM lParam) {
  if (lParam == 0) return FALSE;
  const auto* added = reinterpret_cast<const TBBUTTON*>(lParam);
  at = std::min(at, toolbar.buttons.size());
  toolbar.buttons.insert(toolbar.buttons.begin() + static_cast<std::ptrdiff_t>(at), added, added + count);
  Rearrange(window);
  return TRUE;
}

LRESULT DeleteButton(HWND window, ToolbarRecord& toolbar, WPARAM index) {
  if (index >= toolbar.buttons.size()) return FALSE;
  toolbar.buttons.erase(toolbar.buttons.begin() + static_cast<std::ptrdiff_t>(index));
  toolbar.hot = -1;
  toolbar.pressed = -1;
  toolbar.current = -1;
  Rearrange(window);
  return TRUE;
}

LRESULT SetList(HWND window, HIMAGELIST& place, LPARAM list) {
  const HIMAGELIST former = std::exchange(place, reinterpret_cast<HIMAGELIST>(list));
  InvalidateRect(window, nullptr, TRUE);
  return reinterpret_cast<LRESULT>(former);
}

LRESULT SetExtent(HWND window, SIZE& place, LPARAM lParam) {
  place = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  Rearrange(window);
  return TRUE;
}

/// The messages about one button's state. False for any other.
bool StateMessage(HWND window, ToolbarRecord& toolbar, UINT message, WPARAM wParam, LPARAM lParam,
                  LRESULT& result) {
  constexpr BYTE kBits[] = {TBSTATE_ENABLED, TBSTATE_CHECKED, TBSTATE_PRESSED, TBSTATE_HIDDEN,
                            TBSTATE_INDETERMINATE};
  if (message >= TB_ENABLEBUTTON && message <= TB_INDETERMINATE) {
    result = ChangeState(window, toolbar, wParam, kBits[message - TB_ENABLEBUTTON],
                         LOWORD(static_cast<WPARAM>(lParam)) != 0);
  } else if (message >= TB_ISBUTTONENABLED && message <= TB_ISBUTTONINDETERMINATE) {
    result = HasState(toolbar, wParam, kBits[message - TB_ISBUTTONENABLED]);
  } else if (message == TB_SETSTATE) {
    result = SetState(window, toolbar, IndexOf(toolbar, wParam), static_cast<BYTE>(lParam));
  } else if (message == TB_GETSTATE) {
    const TBBUTTON* button = ButtonOf(toolbar, IndexOf(toolbar, wParam));
    result = button == nullptr ? -1 : button->fsState;
  } else {
    return false;
  }
  return true;
}

LRESULT TableMessage(HWND window, ToolbarRecord& toolbar, UINT message, WPARAM wParam, LPARAM lParam) {
  const TBBUTTON* button = ButtonOf(toolbar, static_cast<int>(wParam));
  switch (message) {
    case TB_ADDBUTTONS:
      return InsertButtons(window, toolbar, toolbar.buttons.size(), wParam, lParam);
    case TB_INSERTBUTTON:
      return InsertButtons(window, toolbar, wParam, 1, lParam);
    case TB_DELETEBUTTON:
      return DeleteButton(window, toolbar, wParam);
    case TB_GETBUTTON:
      if (button == nullptr || lParam == 0) return FALSE;
      *reinterpret_cast<TBBUTTON*>(lParam) = *button;
      return TRUE;
    case TB_BUTTONCOUNT:
      return static_cast<LRESULT>(toolbar.buttons.size());
    case TB_COMMANDTOINDEX:
      return IndexOf(toolbar, wParam);
    case TB_GETITEMRECT:
      if (button == nullptr || lParam == 0 || (button->fsState & TBSTATE_HIDDEN) != 0) return FALSE;
      *reinterpret_cast<RECT*>(lParam) = toolbar.Places()[wParam];
      return TRUE;
    case TB_SETBUTTONSIZE:
      return SetExtent(window, toolbar.buttonSize, lParam);
    case TB_GETBUTTONSIZE:
      return MAKELPARAM(toolbar.buttonSize.cx, toolbar.buttonSize.cy);
    case TB_SETBITMAPSIZE:
      return SetExtent(window, toolbar.imageSize, lParam);
    case TB_SETIMAGELIST:
      return SetList(window, toolbar.images, lParam);
    case TB_GETIMAGELIST:
      return reinterpret_cast<LRESULT>(toolbar.images);
    case TB_SETDISABLEDIMAGELIST:
      return SetList(window, toolbar.disabledImages, lParam);
    case TB_GETDISABLEDIMAGELIST:
      return reinterpret_cast<LRESULT>(toolbar.disabledImages);
    default:
      return DefWindowProc(window, message, wParam, lParam);
  }
}

LRESULT ToolbarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) FindWindowRecord(window)->toolbar = std::make_shared<ToolbarRecord>();
  ToolbarRecord* toolbar = FindToolbar(window);
  if (toolbar == nullptr) return DefWindowProc(window, message, wParam, lParam);
  const POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  LRESULT result = 0;
  switch (message) {
    case WM_PAINT:
      return Paint(window, *toolbar, wParam);
    case WM_ERASEBKGND:
      return TRUE;  // painting covers everything
    case WM_SIZE:
      FitToolbar(window);
      return DefWindowProc(window, message, wParam, lParam);
    case WM_MOUSEMOVE:
      OnMove(window, *toolbar, point);
      return 0;
    case WM_MOUSELEAVE:
      SetHot(window, *toolbar, -1);
      return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      OnPress(window, *toolbar, point);
      return 0;
    case WM_LBUTTONUP:
      OnRelease(window, *toolbar, point);
      return 0;
    case WM_CAPTURECHANGED:
      OnCancel(window, *toolbar);
      return 0;
    case WM_SETFOCUS:
      ToolbarGotFocus(window, *toolbar, reinterpret_cast<HWND>(wParam));
      return 0;
    case WM_KILLFOCUS:
      InvalidateButton(window, *toolbar, toolbar->current);
      return 0;
    case WM_KEYDOWN:
      return ToolbarKey(window, *toolbar, wParam) ? 0 : DefWindowProc(window, message, wParam, lParam);
    default:
      if (StateMessage(window, *toolbar, message, wParam, lParam, result)) return result;
      return TableMessage(window, *toolbar, message, wParam, lParam);
  }
}

}  // namespace

ToolbarRecord* FindToolbar(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record == nullptr ? nullptr : record->toolbar.get();
}

void PressToolButton(HWND window, int index) {
  ToolbarRecord* toolbar = FindToolbar(window);
  if (toolbar != nullptr && toolbar->IsChevron(index)) return OpenChevron(window);
  const TBBUTTON* button = toolbar == nullptr ? nullptr : ButtonOf(*toolbar, index);
  if (button == nullptr || (button->fsState & TBSTATE_ENABLED) == 0) return;
  TurnCheck(window, *toolbar, index);
  PostMessage(GetParent(window), WM_COMMAND, MAKEWPARAM(button->idCommand, 0),
              reinterpret_cast<LPARAM>(window));
}

void RegisterToolbarClass() {
  const WNDCLASS windowClass = {CS_DBLCLKS,
                                &ToolbarProc,
                                0,
                                0,
                                nullptr,
                                nullptr,
                                LoadCursor(nullptr, IDC_ARROW),
                                GetSysColorBrush(COLOR_BTNFACE),
                                nullptr,
                                TOOLBARCLASSNAME};
  RegisterClassA(&windowClass);  // again is harmless
}

}  // namespace platform
