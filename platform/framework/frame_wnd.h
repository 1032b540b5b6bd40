#pragma once

#include "platform/framework/wnd.h"

/// Id of the first pane of a frame: the child that fills what control bars leave of the client area.
enum : UINT { AFX_IDW_PANE_FIRST = 0xE900, AFX_IDW_PANE_LAST = 0xE9FF };

struct CCreateContext;

/// A main window. The object deletes itself after its window is destroyed.
class PLATFORM_API CFrameWnd : public CWnd {
  DECLARE_DYNCREATE(CFrameWnd)
 public:
  CFrameWnd() = default;

  /// Any place and size.
  static const CRect rectDefault;

  virtual BOOL Create(LPCTSTR className, LPCTSTR title, DWORD style = WS_OVERLAPPEDWINDOW,
                      const RECT& rect = rectDefault, CWnd* parent = nullptr, LPCTSTR menuName = nullptr,
                      DWORD exStyle = 0, CCreateContext* context = nullptr);
  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;
  /// Shows the frame and puts it in front.
  virtual void ActivateFrame(int command = -1);
  /// Places the pane in the client area.
  virtual void RecalcLayout(BOOL notify = TRUE);

 protected:
  /// Makes what the client area holds. FALSE: the frame isn't made.
  virtual BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context);
  void PostNcDestroy() override { delete this; }

  int OnCreate(LPCREATESTRUCT cs);
  void OnSize(UINT type, int cx, int cy);
  void OnSetFocus(CWnd* former);
  void OnClose();
  BOOL OnEraseBkgnd(CDC* dc);

  DECLARE_MESSAGE_MAP()
};
