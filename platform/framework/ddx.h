#pragma once

#include "platform/framework/wnd.h"

/// One run of a dialog's DoDataExchange, in one direction.
class PLATFORM_API CDataExchange {
 public:
  CDataExchange(CWnd* dialog, BOOL save) : m_bSaveAndValidate(save), m_pDlgWnd(dialog) {}

  BOOL m_bSaveAndValidate;  ///< TRUE: from the controls into the members
  CWnd* m_pDlgWnd;

  /// The control, noted as the one that Fail points at. Null if the dialog has none of that id.
  HWND PrepareCtrl(int id);
  HWND PrepareEditCtrl(int id);
  /// Puts the focus on the last control and ends the exchange; UpdateData then gives FALSE.
  [[noreturn]] void Fail();

  struct Failed {};

 private:
  HWND m_control = nullptr;
  bool m_isEdit = false;
};

// One control and one member. A control that isn't there is passed over.

PLATFORM_API void DDX_Text(CDataExchange* exchange, int id, CString& value);
/// A field that holds no such number is reported to the user.
PLATFORM_API void DDX_Text(CDataExchange* exchange, int id, int& value);
PLATFORM_API void DDX_Text(CDataExchange* exchange, int id, UINT& value);
PLATFORM_API void DDX_Check(CDataExchange* exchange, int id, int& value);
/// id: the first radio button of the group; value: which one, from 0, or -1.
PLATFORM_API void DDX_Radio(CDataExchange* exchange, int id, int& value);
/// Ties the object to the control at the first run.
PLATFORM_API void DDX_Control(CDataExchange* exchange, int id, CWnd& control);
PLATFORM_API void DDX_CBIndex(CDataExchange* exchange, int id, int& value);
PLATFORM_API void DDX_CBString(CDataExchange* exchange, int id, CString& value);
/// Fails with a message if the text has more characters.
PLATFORM_API void DDV_MaxChars(CDataExchange* exchange, const CString& value, int most);
PLATFORM_API void DDV_MinMaxInt(CDataExchange* exchange, int value, int low, int high);
