#include <charconv>
#include <string>

#include "platform/framework/ddx.h"
#include "platform/framework/message_box.h"
#include "platform/window/dialog_keys.h"

namespace {

constexpr const char* kNoNumber = "Immettere un numero intero.";

/// Blanks before and behind don't count.
template <typename Number>
bool ToNumber(CString text, Number& value) {
  text.TrimLeft();
  text.TrimRight();
  const char* begin = text;
  const char* end = begin + text.GetLength();
  const auto [rest, error] = std::from_chars(begin, end, value);
  return error == std::errc() && rest == end;
}

template <typename Number>
void ExchangeNumber(CDataExchange* exchange, int id, Number& value) {
  const HWND control = exchange->PrepareEditCtrl(id);
  if (control == nullptr) return;
  if (exchange->m_bSaveAndValidate == 0) {
    SetWindowText(control, std::to_string(value).c_str());
    return;
  }
  Number number = 0;
  if (!ToNumber(GetWindowText(control), number)) {
    AfxMessageBox(kNoNumber, MB_ICONEXCLAMATION);
    exchange->Fail();
  }
  value = number;
}

bool IsRadioButton(HWND control) {
  return (SendMessage(control, WM_GETDLGCODE) & DLGC_RADIOBUTTON) != 0;
}

}  // namespace

HWND CDataExchange::PrepareCtrl(int id) {
  m_control = GetDlgItem(m_pDlgWnd->m_hWnd, id);
  m_isEdit = false;
  return m_control;
}

HWND CDataExchange::PrepareEditCtrl(int id) {
  PrepareCtrl(id);
  m_isEdit = true;
  return m_control;
}

void CDataExchange::Fail() {
  if (m_control != nullptr) {
    SetFocus(m_control);
    if (m_isEdit) SendMessage(m_control, EM_SETSEL, 0, -1);
  }
  throw Failed{};
}

void DDX_Text(CDataExchange* exchange, int id, CString& value) {
  const HWND control = exchange->PrepareEditCtrl(id);
  if (control == nullptr) return;
  if (exchange->m_bSaveAndValidate != 0)
    value = GetWindowText(control);
  else
    SetWindowText(control, value);
}

void DDX_Text(CDataExchange* exchange, int id, int& value) {
  ExchangeNumber(exchange, id, value);
}

void DDX_Text(CDataExchange* exchange, int id, UINT& value) {
  ExchangeNumber(exchange, id, value);
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

void DDX_CBIndex(CDataExchange* exchange, int id, int& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (control == nullptr) return;
  if (exchange->m_bSaveAndValidate != 0)
    value = static_cast<int>(SendMessage(control, CB_GETCURSEL));
  else
    SendMessage(control, CB_SETCURSEL, static_cast<WPARAM>(value));
}

void DDX_CBString(CDataExchange* exchange, int id, CString& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (control == nullptr) return;
  if (exchange->m_bSaveAndValidate != 0) {
    value = GetWindowText(control);
    return;
  }
  const auto text = reinterpret_cast<LPARAM>(static_cast<const char*>(value));
  if (SendMessage(control, CB_SELECTSTRING, static_cast<WPARAM>(-1), text) == CB_ERR)
    SetWindowText(control, value);
}

void DDV_MaxChars(CDataExchange* exchange, const CString& value, int most) {
  if (exchange->m_bSaveAndValidate == 0 || value.GetLength() <= most) return;
  CString text;
  text.Format("Immettere al massimo %d caratteri.", most);
  AfxMessageBox(text, MB_ICONEXCLAMATION);
  exchange->Fail();
}

void DDV_MinMaxInt(CDataExchange* exchange, int value, int low, int high) {
  if (exchange->m_bSaveAndValidate == 0 || (value >= low && value <= high)) return;
  CString text;
  text.Format("Immettere un numero intero compreso tra %d e %d.", low, high);
  AfxMessageBox(text, MB_ICONEXCLAMATION);
  exchange->Fail();
}
