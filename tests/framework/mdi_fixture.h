#pragma once

// A main window with document windows, each with a toolbar and a status bar of its own if asked.

#include <string>

#include "platform/framework/mdi_wnd.h"
#include "platform/framework/status_bar.h"
#include "platform/framework/tool_bar.h"

namespace mdi_test {

enum : UINT {
  kMainMenu = 420,
  kChildMenu = 421,
  kChildOnly = 40101,  // a handler in the document window
  kMainOnly = 40102,   // in the main window
  kBoth = 40103,       // in both
  kNobody = 40104,     // nowhere
  kEndChild = 40105,   // ends the document window
  kTitle = 422,
};

/// What was told to whom: "<name><what> ".
extern std::string g_trace;
/// Messages of any kind that document windows have got.
extern int g_messages;

class Main : public CMDIFrameWnd {
 public:
  CStatusBar status;
  /// Shown and idle.
  static Main* Show();

 protected:
  int OnCreate(LPCREATESTRUCT cs);
  void OnMainOnly() { g_trace += "main "; }
  DECLARE_MESSAGE_MAP()
};

class Child : public CMDIChildWnd {
  DECLARE_DYNCREATE(Child)
 public:
  std::string name;
  CWnd pane;
  CToolBar toolbar;
  CStatusBar status;
  bool refuses = false;
  bool canNext = true;
  UINT lastSize = 99;

  /// In the front, with the child menu, unless told otherwise.
  static Child* Show(CMDIFrameWnd* parent, const std::string& name, bool bars = false, bool menu = true);
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 protected:
  BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context) override;
  void OnMDIActivate(BOOL activate, CWnd* activated, CWnd* deactivated);
  void OnSize(UINT type, int cx, int cy);
  void OnClose();
  void OnChildOnly() { g_trace += name + " "; }
  void OnEndChild();
  void OnUpdateChildOnly(CCmdUI* item);
  DECLARE_MESSAGE_MAP()
};

/// Idle time and what it queues.
void Settle();
CString TitleOf(const CWnd& window);
/// A window's place in the client of the document windows.
CRect PlaceOf(const CWnd& child);

}  // namespace mdi_test
