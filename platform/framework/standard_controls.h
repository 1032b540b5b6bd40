#pragma once

#include "platform/framework/wnd.h"
#include "platform/window/control_messages.h"

// The standard controls as objects: each call is one message.

class PLATFORM_API CButton : public CWnd {
  DECLARE_DYNAMIC(CButton)
 public:
  using CWnd::Create;
  BOOL Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id);
  int GetCheck() { return static_cast<int>(SendMessage(BM_GETCHECK)); }
  void SetCheck(int check) { SendMessage(BM_SETCHECK, static_cast<WPARAM>(check)); }
};

class PLATFORM_API CEdit : public CWnd {
  DECLARE_DYNAMIC(CEdit)
 public:
  using CWnd::Create;
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
  void SetSel(int start, int end) { SendMessage(EM_SETSEL, static_cast<WPARAM>(start), end); }
  DWORD GetSel() { return static_cast<DWORD>(SendMessage(EM_GETSEL)); }
  void LimitText(int characters = 0) { SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(characters)); }
  BOOL SetReadOnly(BOOL readOnly = TRUE) {
    return SendMessage(EM_SETREADONLY, static_cast<WPARAM>(readOnly)) != 0;
  }
  void ReplaceSel(LPCTSTR text) { SendMessage(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text)); }
};

class PLATFORM_API CStatic : public CWnd {
  DECLARE_DYNAMIC(CStatic)
 public:
  using CWnd::Create;
  BOOL Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id = 0xffff);
};

class PLATFORM_API CComboBox : public CWnd {
  DECLARE_DYNAMIC(CComboBox)
 public:
  using CWnd::Create;
  /// The rectangle's height is that with the list dropped down.
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
  int GetCount() { return static_cast<int>(SendMessage(CB_GETCOUNT)); }
  int GetCurSel() { return static_cast<int>(SendMessage(CB_GETCURSEL)); }
  int SetCurSel(int index) { return static_cast<int>(SendMessage(CB_SETCURSEL, static_cast<WPARAM>(index))); }
  int AddString(LPCTSTR text) {
    return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
  }
  void ResetContent() { SendMessage(CB_RESETCONTENT); }
  int GetLBTextLen(int index) {
    return static_cast<int>(SendMessage(CB_GETLBTEXTLEN, static_cast<WPARAM>(index)));
  }
  /// The buffer takes the whole text and its closing 0.
  int GetLBText(int index, LPTSTR text) {
    return static_cast<int>(
        SendMessage(CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
  }
  void GetLBText(int index, CString& text);
  BOOL LimitText(int characters) { return SendMessage(CB_LIMITTEXT, static_cast<WPARAM>(characters)) != 0; }
  void ShowDropDown(BOOL show = TRUE) { SendMessage(CB_SHOWDROPDOWN, static_cast<WPARAM>(show)); }
  BOOL GetDroppedState() { return SendMessage(CB_GETDROPPEDSTATE) != 0; }
  DWORD GetEditSel() { return static_cast<DWORD>(SendMessage(CB_GETEDITSEL)); }
  BOOL SetEditSel(int start, int end) { return SendMessage(CB_SETEDITSEL, 0, MAKELONG(start, end)) != 0; }
};

class PLATFORM_API CSpinButtonCtrl : public CWnd {
  DECLARE_DYNAMIC(CSpinButtonCtrl)
 public:
  using CWnd::Create;
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
  void SetRange(int low, int high) { SendMessage(UDM_SETRANGE, 0, MAKELONG(high, low)); }
  int SetPos(int position) {
    return static_cast<std::int16_t>(SendMessage(UDM_SETPOS, 0, MAKELONG(position, 0)));
  }
  /// The high word isn't 0 if the field holds no number of the range.
  int GetPos() { return static_cast<int>(SendMessage(UDM_GETPOS)); }
  CWnd* SetBuddy(CWnd* buddy);
};

class PLATFORM_API CProgressCtrl : public CWnd {
  DECLARE_DYNAMIC(CProgressCtrl)
 public:
  using CWnd::Create;
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
  void SetRange(int low, int high) { SendMessage(PBM_SETRANGE, 0, MAKELONG(low, high)); }
  int SetPos(int position) {
    return static_cast<int>(SendMessage(PBM_SETPOS, static_cast<WPARAM>(position)));
  }
  int StepIt() { return static_cast<int>(SendMessage(PBM_STEPIT)); }
};
