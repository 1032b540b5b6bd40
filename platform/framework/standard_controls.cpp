#include "platform/framework/standard_controls.h"

IMPLEMENT_DYNAMIC(CButton, CWnd)
IMPLEMENT_DYNAMIC(CEdit, CWnd)
IMPLEMENT_DYNAMIC(CStatic, CWnd)
IMPLEMENT_DYNAMIC(CComboBox, CWnd)
IMPLEMENT_DYNAMIC(CSpinButtonCtrl, CWnd)
IMPLEMENT_DYNAMIC(CProgressCtrl, CWnd)

BOOL CButton::Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id) {
  return CWnd::Create("BUTTON", text, style, rect, parent, id);
}

BOOL CEdit::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
  return CWnd::Create("EDIT", nullptr, style, rect, parent, id);
}

BOOL CStatic::Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id) {
  return CWnd::Create("STATIC", text, style, rect, parent, id);
}

BOOL CComboBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
  return CWnd::Create("COMBOBOX", nullptr, style, rect, parent, id);
}

void CComboBox::GetLBText(int index, CString& text) {
  const int length = GetLBTextLen(index);
  text.Empty();
  if (length < 0) return;
  GetLBText(index, text.GetBuffer(length));
  text.ReleaseBuffer();
}

BOOL CSpinButtonCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
  return CWnd::Create("msctls_updown32", nullptr, style, rect, parent, id);
}

CWnd* CSpinButtonCtrl::SetBuddy(CWnd* buddy) {
  const HWND window = buddy == nullptr ? nullptr : buddy->m_hWnd;
  return FromHandle(reinterpret_cast<HWND>(SendMessage(UDM_SETBUDDY, reinterpret_cast<WPARAM>(window))));
}

BOOL CProgressCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
  return CWnd::Create("msctls_progress32", nullptr, style, rect, parent, id);
}
