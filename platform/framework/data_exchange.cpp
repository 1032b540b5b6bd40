#include "platform/framework/ddx.h"
#include "platform/window/dialog_keys.h"

namespace {

bool IsRadioButton(HWND control) {
  return (SendMessage(control, WM_GETDLGCODE) & DLGC_RADIOBUTTON) != 0;
}

}  // namespace

HWND CDataExchange::PrepareCtrl(int id) const {
  return GetDlgItem(m_pDlgWnd->m_hWnd, id);
}

void DDX_Text(CDataExchange* exchange, int id, CString& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (control == nullptr) return;
  if (exchange->m_bSaveAndValidate != 0)
    value = GetWindowText(control);
  else
    SetWindowText(control, value);
}

void DDX_Check(CDataExchange* exchange, int id, int& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (control == nullptr) return;
  if (exchange->m_bSaveAndValidate != 0)
    value = static_cast<int>(SendMessage(control, BM_GETCHECK));
  else
    SendMessage(control, BM_SETCHECK, static_cast<WPARAM>(value < 0 || value > 2 ? 0 : value));
}

void DDX_Radio(CDataExchange* exchange, int id, int& value) {
  HWND control = exchange->PrepareCtrl(id);
  if (control == nullptr) return;
  const bool save = exchange->m_bSaveAndValidate != 0;
  if (save) value = -1;
  int button = 0;
  do {
    if (IsRadioButton(control)) {
      if (!save)
        SendMessage(control, BM_SETCHECK, button == value ? BST_CHECKED : BST_UNCHECKED);
      else if (SendMessage(control, BM_GETCHECK) != 0)
        value = button;
      ++button;
    }
    control = GetWindow(control, GW_HWNDNEXT);
  } while (control != nullptr && (GetWindowLong(control, GWL_STYLE) & WS_GROUP) == 0);
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control) {
  if (control.m_hWnd != nullptr) return;
  const HWND window = exchange->PrepareCtrl(id);
  if (window != nullptr) control.SubclassWindow(window);
}
