#pragma once

#include "platform/framework/wnd.h"

/// Id of the first pane of a frame: the child that fills what control bars leave of the client area.
enum : UINT { AFX_IDW_PANE_FIRST = 0xE900, AFX_IDW_PANE_LAST = 0xE9FF };

/// Text of the status bar while nothing else is to be said.
enum : UINT { AFX_IDS_IDLEMESSAGE = 0xE001 };
/// Frame styles: the document's name is put behind the title, or before it.
enum : DWORD { FWS_PREFIXTITLE = 0x4000, FWS_ADDTOTITLE = 0x8000 };

struct CCreateContext;

/// A main window. The object deletes itself after its window is destroyed.
class PLATFORM_API CFrameWnd : public CWnd {
  DECLARE_DYNCREATE(CFrameWnd)
 public:
  CFrameWnd() = default;

  /// Any place and size.
  static const CRect rectDefault;

  HACCEL m_hAccelTable = nullptr;  ///< keys of the frame, not owned
  BOOL m_bAutoMenuEnable = TRUE;   ///< items whose command nobody handles are grey
  HMENU m_hMenuDefault = nullptr;  ///< the menu that Create loaded; the window destroys it
  CString m_strTitle;

  /// menuName: a menu of the resources. FALSE if it can't be found; the frame isn't made then.
  virtual BOOL Create(LPCTSTR className, LPCTSTR title, DWORD style = WS_OVERLAPPEDWINDOW,
                      const RECT& rect = rectDefault, CWnd* parent = nullptr, LPCTSTR menuName = nullptr,
                      DWORD exStyle = 0, CCreateContext* context = nullptr);
  /// Everything under one number: menu (if there is one) and title (the string's first line).
  virtual BOOL LoadFrame(UINT id, DWORD style = DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE,
                         CWnd* parent = nullptr, CCreateContext* context = nullptr);
  BOOL PreTranslateMessage(MSG* message) override;
  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;
  /// Shows the frame and puts it in front.
  virtual void ActivateFrame(int command = -1);
  /// Places the pane in the client area.
  virtual void RecalcLayout(BOOL notify = TRUE);

  /// The prompt of a command: its string up to the line feed.
  virtual void GetMessageString(UINT id, CString& text) const;
  /// Shows a text, or the prompt of a number (0: nothing), in the message bar.
  void SetMessageText(UINT id);
  void SetMessageText(LPCTSTR text);
  /// The window whose text shows prompts; null for none.
  virtual CWnd* GetMessageBar() { return nullptr; }

 protected:
  /// Makes what the client area holds. FALSE: the frame isn't made.
  virtual BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context);
  void PostNcDestroy() override { delete this; }

  int OnCreate(LPCREATESTRUCT cs);
  void OnSize(UINT type, int cx, int cy);
  void OnSetFocus(CWnd* former);
  void OnClose();
  void OnInitMenuPopup(CMenu* menu, UINT index, BOOL systemMenu);
  void OnMenuSelect(UINT item, UINT flags, HMENU menu);
  BOOL OnEraseBkgnd(CDC* dc);

  DECLARE_MESSAGE_MAP()
};
