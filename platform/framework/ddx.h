#pragma once

#include "platform/framework/wnd.h"

/// One run of a dialog's DoDataExchange, in one direction.
class PLATFORM_API CDataExchange {
 public:
  CDataExchange(CWnd* dialog, BOOL save) : m_bSaveAndValidate(save), m_pDlgWnd(dialog) {}

  BOOL m_bSaveAndValidate;  ///< TRUE: from the controls into the members
  CWnd* m_pDlgWnd;

  /// Null if the dialog has none of that id.
  HWND PrepareCtrl(int id) const;
};

// One control and one member. A control that isn't there is passed over.

PLATFORM_API void DDX_Text(CDataExchange* exchange, int id, CString& value);
PLATFORM_API void DDX_Check(CDataExchange* exchange, int id, int& value);
/// id: the first radio button of the group; value: which one, from 0, or -1.
PLATFORM_API void DDX_Radio(CDataExchange* exchange, int id, int& value);
/// Ties the object to the control at the first run.
PLATFORM_API void DDX_Control(CDataExchange* exchange, int id, CWnd& control);
