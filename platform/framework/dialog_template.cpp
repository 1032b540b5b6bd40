#include <cstring>

#include "platform/base/kernel.h"
#include "platform/base/translation.h"
#include "platform/framework/detail/dialog_template.h"
#include "platform/graphics/gdi.h"
#include "platform/window/control_messages.h"
#include "platform/window/dialog_units.h"

namespace platform {
namespace {

struct KindStyle {
  const char* className;
  DWORD style;
};

KindStyle StyleOf(const DialogItem& item) {
  switch (item.kind) {
    case DialogItem::Kind::PushButton:
      return {"BUTTON", BS_PUSHBUTTON | WS_TABSTOP};
    case DialogItem::Kind::DefaultPushButton:
      return {"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP};
    case DialogItem::Kind::RadioButton:
      // Until one is checked, Tab stops at the first of the group.
      return {"BUTTON", BS_AUTORADIOBUTTON | ((item.style & WS_GROUP) != 0 ? DWORD{WS_TABSTOP} : DWORD{0})};
    case DialogItem::Kind::CheckBox:
      return {"BUTTON", BS_AUTOCHECKBOX | WS_TABSTOP};
    case DialogItem::Kind::GroupBox:
      return {"BUTTON", BS_GROUPBOX};
    case DialogItem::Kind::Edit:
      return {"EDIT", WS_BORDER | WS_TABSTOP};
    case DialogItem::Kind::ComboBox:
      return {"COMBOBOX", WS_TABSTOP | WS_VSCROLL};
    default:
      return {"STATIC", WS_GROUP};
  }
}

}  // namespace

HFONT FontOfTemplate(const DialogResource& dialog) {
  constexpr int kDotsPerInch = 96;
  constexpr int kPointsPerInch = 72;
  LOGFONTA log{};
  log.lfHeight = -MulDiv(dialog.fontPoints, kDotsPerInch, kPointsPerInch);
  log.lfWeight = 400;
  std::strncpy(log.lfFaceName, dialog.font, LF_FACESIZE - 1);
  return CreateFontIndirectA(&log);
}

UINT MakeControls(const DialogResource& dialog, HWND parent, HFONT font) {
  UINT defaultId = 0;
  for (const DialogItem& item : dialog.items) {
    const KindStyle kind = StyleOf(item);
    RECT place = {item.x, item.y, item.x + item.cx, item.y + item.cy};
    MapDialogRect(parent, &place);
    const DWORD style = kind.style | item.style | WS_CHILD | (item.hidden ? DWORD{0} : DWORD{WS_VISIBLE});
    const HWND control =
        CreateWindowEx(0, kind.className, platform::Localized(item.text), style, place.left, place.top,
                       place.right - place.left, place.bottom - place.top, parent,
                       reinterpret_cast<HMENU>(static_cast<std::intptr_t>(item.id)), nullptr, nullptr);
    SendMessage(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    if (item.kind == DialogItem::Kind::DefaultPushButton) defaultId = static_cast<UINT>(item.id);
  }
  return defaultId;
}

}  // namespace platform
