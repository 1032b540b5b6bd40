#pragma once

#include "platform/framework/frame_wnd.h"
#include "platform/window/mdi.h"

/// Commands of the Window menu, and of the document windows listed in it.
enum : UINT {
  AFX_IDM_WINDOW_FIRST = 0xE130,
  AFX_IDM_WINDOW_LAST = 0xE13F,
  AFX_IDM_FIRST_MDICHILD = 0xFF00,
  ID_WINDOW_ARRANGE = 0xE131,
  ID_WINDOW_CASCADE = 0xE132,
  ID_WINDOW_TILE_HORZ = 0xE133,
  ID_WINDOW_TILE_VERT = 0xE134,
  ID_FILE_CLOSE = 0xE102,
};

class CMDIChildWnd;

/// A main window with document windows inside. Commands and their updates go to the active document window
/// first, with all that it asks, then to this window, then to the application. Closing the application's main
/// window asks all documents of its templates first; if none objects, they are closed in the order in which
/// templates and documents were made, then what document windows are left, then this window.
class PLATFORM_API CMDIFrameWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIFrameWnd)
 public:
  HWND m_hWndMDIClient = nullptr;

  /// Makes the client; windowMenu: where the document windows are listed, or null.
  virtual BOOL CreateClient(LPCREATESTRUCT cs, CMenu* windowMenu);
  /// The sub-menu of a bar that has the Window commands; null if there is none.
  virtual HMENU GetWindowMenuPopup(HMENU menuBar);

  /// Null if there is none.
  CMDIChildWnd* MDIGetActive(BOOL* maximized = nullptr) const;
  void MDINext();
  void MDITile(int how = MDITILE_HORIZONTAL);
  void MDICascade();
  void MDIIconArrange();
  /// Sends WM_CLOSE to the document windows in the order in which they were made. FALSE once one stays.
  virtual BOOL CloseChildren();

  /// What the bar shows while no document window with a menu of its own is active.
  void SetFrameMenu(HMENU menu) override;

  /// The active document window, this one if there is none.
  CFrameWnd* GetActiveFrame() override;
  void OnUpdateFrameTitle(BOOL addToTitle) override;
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;
  BOOL PreTranslateMessage(MSG* message) override;
  LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
  void GetMessageString(UINT id, CString& message) const override;

 protected:
  friend class CMDIChildWnd;
  void ShowMenuInBar(HMENU menu);
  BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context) override;
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  void OnClose();
  void OnDestroy();
  void OnInitMenuPopup(CMenu* menu, UINT index, BOOL systemMenu);
  void OnWindowCommand(UINT id);
  void OnUpdateWindowCommand(CCmdUI* item);

  DECLARE_MESSAGE_MAP()
};

/// A document window inside a CMDIFrameWnd. The object deletes itself after its window is destroyed.
class PLATFORM_API CMDIChildWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIChildWnd)
 public:
  CMDIChildWnd() = default;
  CMDIChildWnd(const CMDIChildWnd&) = delete;
  CMDIChildWnd& operator=(const CMDIChildWnd&) = delete;
  ~CMDIChildWnd() override;

  /// Shown in the main window's bar while this window is active; null: the main window's own menu. Whoever
  /// sets it destroys it; LoadFrame's ends with the object.
  HMENU m_hMenuShared = nullptr;

  /// parent: null stands for the main window of the thread. It has to be a CMDIFrameWnd.
  virtual BOOL Create(LPCTSTR className, LPCTSTR title,
                      DWORD style = DWORD{WS_CHILD} | WS_VISIBLE | WS_OVERLAPPEDWINDOW,
                      const RECT& rect = rectDefault, CMDIFrameWnd* parent = nullptr,
                      CCreateContext* context = nullptr);
  using CWnd::Create;
  /// Of any frame. It takes no part in a document window's life, and is here so that it isn't hidden.
  BOOL Create(LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent, LPCTSTR menuName,
              DWORD exStyle, CCreateContext* context) override {
    return CFrameWnd::Create(className, title, style, rect, parent, menuName, exStyle, context);
  }
  /// Everything under one number, as for a main window; the menu becomes m_hMenuShared. The window is hidden
  /// until ActivateFrame.
  BOOL LoadFrame(UINT id, DWORD style = DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, CWnd* parent = nullptr,
                 CCreateContext* context = nullptr) override;

  /// Becomes m_hMenuShared: what the main window's bar shows while this window is active. Null: the main
  /// window's own. One that somebody else has put into m_hMenuShared isn't destroyed.
  void SetFrameMenu(HMENU menu) override;

  CMDIFrameWnd* GetMDIFrame() const;
  CFrameWnd* GetParentFrame() const;
  void MDIActivate();
  void MDIMaximize();

  /// Shows the window (-1: as the active one is, maximised or not) and makes it the active one.
  void ActivateFrame(int command = -1) override;
  void OnUpdateFrameTitle(BOOL addToTitle) override;
  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL PreTranslateMessage(MSG* message) override;
  LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
  /// Its own status bar, otherwise the main window's.
  CWnd* GetMessageBar() override;

 protected:
  /// The active document window changes: activate tells whether this one gains it. Either may be null.
  void OnMDIActivate(BOOL activate, CWnd* activated, CWnd* deactivated);
  int OnCreate(LPCREATESTRUCT cs);
  void OnSize(UINT type, int cx, int cy);
  void OnFileClose();

 private:
  void ShowMenu(bool activate, bool anyActive);

  HMENU m_loadedMenu = nullptr;

  DECLARE_MESSAGE_MAP()
};
