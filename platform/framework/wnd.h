#pragma once

#include "platform/framework/cmd_target.h"
#include "platform/framework/wnd_messages.h"
#include "platform/graphics/dc.h"
#include "platform/window/drop_files.h"
#include "platform/window/menu_handles.h"
#include "platform/window/window.h"

class CFrameWnd;
class CMenu;
class CScrollBar;
class CDataExchange;

/// States of a window in CWnd::m_nFlags.
enum : UINT { WF_MODALLOOP = 0x08, WF_CONTINUEMODAL = 0x10 };

/// A window as an object. The object and its window are tied by Create or Attach; destroying the object
/// destroys the window. Handlers of the message map carry the fixed names below; each default calls
/// Default().
class PLATFORM_API CWnd : public CCmdTarget {
  DECLARE_DYNCREATE(CWnd)
 public:
  HWND m_hWnd = nullptr;
  UINT m_nFlags = 0;        ///< WF_...
  int m_nModalResult = -1;  ///< what EndModalLoop was given

  /// For SetWindowPos: before and behind all other windows of the parent.
  static const CWnd wndTop;
  static const CWnd wndBottom;

  CWnd() = default;
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;
  ~CWnd() override;

  /// The object of the window, or a temporary one that ends at idle time; null for a dead handle.
  static CWnd* FromHandle(HWND window);
  /// The object that was tied to the window, or null.
  static CWnd* FromHandlePermanent(HWND window);
  static void DeleteTempMap();
  BOOL Attach(HWND window);
  HWND Detach();
  /// Ties the object to a living window and puts itself before the window's procedure.
  BOOL SubclassWindow(HWND window);
  HWND GetSafeHwnd() const { return m_hWnd; }
  operator HWND() const { return m_hWnd; }  // NOLINT: passed wherever the handle is wanted

  /// A child window. Calls PreCreateWindow, then WM_CREATE runs.
  virtual BOOL Create(LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                      void* context = nullptr);
  BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent,
                UINT id, LPVOID params = nullptr);
  BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR title, DWORD style, int x, int y, int width,
                int height, HWND parent, HMENU menuOrId, LPVOID params = nullptr);
  virtual BOOL DestroyWindow();
  /// Changes the record before the window is made. FALSE: it isn't made.
  virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
  /// Sees each message of the queue for this window and its children before dispatch. TRUE: dealt with.
  virtual BOOL PreTranslateMessage(MSG* message);

  LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return ::SendMessage(m_hWnd, message, wParam, lParam);
  }
  BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return ::PostMessage(m_hWnd, message, wParam, lParam);
  }
  DWORD GetStyle() const { return static_cast<DWORD>(GetWindowLong(m_hWnd, GWL_STYLE)); }
  DWORD GetExStyle() const { return static_cast<DWORD>(GetWindowLong(m_hWnd, GWL_EXSTYLE)); }
  /// flags other than 0: also SetWindowPos with them and SWP_NOSIZE, SWP_NOMOVE, SWP_NOZORDER. FALSE: no
  /// change.
  BOOL ModifyStyle(DWORD remove, DWORD add, UINT flags = 0);
  BOOL ModifyStyleEx(DWORD remove, DWORD add, UINT flags = 0);
  void SetWindowText(LPCTSTR text) { ::SetWindowText(m_hWnd, text); }
  void GetWindowText(CString& text) const { text = ::GetWindowText(m_hWnd); }
  void SetFont(CFont* font, BOOL redraw = TRUE);
  void SetDlgItemText(int id, LPCTSTR text) { ::SetWindowText(::GetDlgItem(m_hWnd, id), text); }
  void SetDlgItemInt(int id, UINT value, BOOL isSigned = TRUE);
  int GetDlgItemText(int id, CString& text) const;
  BOOL IsDialogMessage(MSG* message);
  /// Over the window given, or the parent, or the screen.
  void CenterWindow(CWnd* over = nullptr);
  int MessageBox(LPCTSTR text, LPCTSTR caption = nullptr, UINT type = 0);

  /// Writes the data members into the controls (save FALSE) or reads them back. FALSE if a field holds what
  /// its member can't.
  BOOL UpdateData(BOOL save = TRUE);
  virtual void DoDataExchange(CDataExchange*) {}

  /// Runs messages until EndModalLoop, whose value is the result; -1 after WM_QUIT, which goes on to the loop
  /// outside.
  int RunModalLoop(DWORD flags = 0);
  virtual BOOL ContinueModal() { return (m_nFlags & WF_CONTINUEMODAL) != 0; }
  virtual void EndModalLoop(int result);

  int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
  int SetDlgCtrlID(int id) { return static_cast<int>(SetWindowLong(m_hWnd, GWL_ID, id)); }
  /// Sends to all windows below, each before its own children.
  void SendMessageToDescendants(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
  CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
  CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
  /// The nearest frame up the parent chain, this window not counted; null if there is none.
  CFrameWnd* GetParentFrame() const;
  CWnd* GetTopLevelParent() const { return FromHandle(GetTopLevelWindow(m_hWnd)); }
  CWnd* GetOwner() const { return m_hWndOwner != nullptr ? FromHandle(m_hWndOwner) : GetParent(); }
  void SetOwner(CWnd* owner) { m_hWndOwner = owner == nullptr ? nullptr : owner->m_hWnd; }
  BOOL EnableWindow(BOOL enable = TRUE) { return ::EnableWindow(m_hWnd, enable); }
  BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }

  BOOL ShowWindow(int command) { return ::ShowWindow(m_hWnd, command); }
  BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
  void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE) {
    ::MoveWindow(m_hWnd, x, y, width, height, repaint);
  }
  void MoveWindow(LPCRECT r, BOOL repaint = TRUE) {
    ::MoveWindow(m_hWnd, r->left, r->top, r->right - r->left, r->bottom - r->top, repaint);
  }
  BOOL SetWindowPos(const CWnd* after, int x, int y, int width, int height, UINT flags) {
    return ::SetWindowPos(m_hWnd, after == nullptr ? nullptr : after->m_hWnd, x, y, width, height, flags);
  }
  void GetWindowRect(LPRECT rect) const { ::GetWindowRect(m_hWnd, rect); }
  void GetClientRect(LPRECT rect) const { ::GetClientRect(m_hWnd, rect); }
  void ClientToScreen(LPPOINT point) const { ::ClientToScreen(m_hWnd, point); }
  void ScreenToClient(LPPOINT point) const { ::ScreenToClient(m_hWnd, point); }
  void ScreenToClient(LPRECT rect) const;

  void Invalidate(BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, erase); }
  void InvalidateRect(LPCRECT rect, BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, rect, erase); }
  void ValidateRect(LPCRECT rect) { ::ValidateRect(m_hWnd, rect); }
  BOOL GetUpdateRect(LPRECT rect, BOOL erase = FALSE) { return ::GetUpdateRect(m_hWnd, rect, erase); }
  void UpdateWindow() { ::UpdateWindow(m_hWnd); }
  CDC* BeginPaint(PAINTSTRUCT* paint) { return CDC::FromHandle(::BeginPaint(m_hWnd, paint)); }
  void EndPaint(PAINTSTRUCT* paint) { ::EndPaint(m_hWnd, paint); }
  CDC* GetDC() { return CDC::FromHandle(::GetDC(m_hWnd)); }
  int ReleaseDC(CDC* dc) { return ::ReleaseDC(m_hWnd, dc == nullptr ? nullptr : dc->m_hDC); }

  BOOL SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw = TRUE);
  BOOL GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask = SIF_ALL);
  int SetScrollPos(int bar, int position, BOOL redraw = TRUE) {
    return ::SetScrollPos(m_hWnd, bar, position, redraw);
  }
  int GetScrollPos(int bar) const { return ::GetScrollPos(m_hWnd, bar); }
  void ShowScrollBar(UINT bar, BOOL show = TRUE) { ::ShowScrollBar(m_hWnd, static_cast<int>(bar), show); }

  /// Null for a window without a bar.
  CMenu* GetMenu() const;
  /// Null takes the bar away. The former menu is the caller's.
  BOOL SetMenu(CMenu* menu);
  void DrawMenuBar() { ::DrawMenuBar(m_hWnd); }

  CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
  static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
  CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
  static CWnd* GetCapture() { return FromHandle(::GetCapture()); }
  void DragAcceptFiles(BOOL accept = TRUE) { ::DragAcceptFiles(m_hWnd, accept); }
  std::uintptr_t SetTimer(std::uintptr_t id, UINT milliseconds, TIMERPROC procedure = nullptr) {
    return ::SetTimer(m_hWnd, id, milliseconds, procedure);
  }
  BOOL KillTimer(std::uintptr_t id) { return ::KillTimer(m_hWnd, id); }

  /// Gives the message to the map, then to DefWindowProc.
  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  /// What the window does by itself: the class's own procedure.
  virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  virtual void PostNcDestroy() {}

 protected:
  virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
  virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
  virtual void PreSubclassWindow() {}
  /// The message being handled, given to DefWindowProc unchanged.
  LRESULT Default();

  int OnCreate(LPCREATESTRUCT) { return static_cast<int>(Default()); }
  void OnDestroy() { Default(); }
  void OnNcDestroy();
  void OnMove(int, int) { Default(); }
  void OnSize(UINT, int, int) { Default(); }
  void OnActivate(UINT, CWnd*, BOOL) { Default(); }
  void OnSetFocus(CWnd*) { Default(); }
  void OnKillFocus(CWnd*) { Default(); }
  void OnEnable(BOOL) { Default(); }
  void OnShowWindow(BOOL, UINT) { Default(); }
  void OnPaint() { Default(); }
  BOOL OnEraseBkgnd(CDC*) { return static_cast<BOOL>(Default()); }
  void OnClose() { Default(); }
  BOOL OnSetCursor(CWnd*, UINT, UINT) { return static_cast<BOOL>(Default()); }
  void OnContextMenu(CWnd*, CPoint) { Default(); }
  void OnKeyDown(UINT, UINT, UINT) { Default(); }
  void OnKeyUp(UINT, UINT, UINT) { Default(); }
  void OnChar(UINT, UINT, UINT) { Default(); }
  void OnTimer(std::uintptr_t) { Default(); }
  void OnHScroll(UINT, UINT, CScrollBar*) { Default(); }
  void OnVScroll(UINT, UINT, CScrollBar*) { Default(); }
  void OnMouseMove(UINT, CPoint) { Default(); }
  void OnLButtonDown(UINT, CPoint) { Default(); }
  void OnLButtonUp(UINT, CPoint) { Default(); }
  void OnLButtonDblClk(UINT, CPoint) { Default(); }
  void OnRButtonDown(UINT, CPoint) { Default(); }
  void OnRButtonUp(UINT, CPoint) { Default(); }
  BOOL OnMouseWheel(UINT, short, CPoint) { return static_cast<BOOL>(Default()); }
  BOOL OnMouseHWheel(UINT, short, CPoint) { return static_cast<BOOL>(Default()); }
  void OnCaptureChanged(CWnd*) { Default(); }
  void OnInitMenuPopup(CMenu*, UINT, BOOL) { Default(); }
  void OnMenuSelect(UINT, UINT, HMENU) { Default(); }
  void OnDropFiles(HDROP) { Default(); }

  HWND m_hWndOwner = nullptr;
  WNDPROC m_pfnSuper = nullptr;

 private:
  struct Marker {};
  CWnd(Marker, HWND marker) : m_hWnd(marker) {}

  DECLARE_MESSAGE_MAP()
};

/// Handler of every window that has an object.
PLATFORM_API LRESULT AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// Registers a class with these properties, once for all who ask with the same; its name.
PLATFORM_API LPCTSTR AfxRegisterWndClass(UINT style, HCURSOR cursor = nullptr, HBRUSH background = nullptr,
                                         HICON icon = nullptr);

/// While it lives, the paint cycle of a WM_PAINT: drawing is limited to what is invalid.
class PLATFORM_API CPaintDC : public CDC {
  DECLARE_DYNAMIC(CPaintDC)
 public:
  explicit CPaintDC(CWnd* window);
  ~CPaintDC() override;
  PAINTSTRUCT m_ps{};

 private:
  HWND m_hWnd;
};

/// While it lives, draws on the client area outside a paint cycle.
class PLATFORM_API CClientDC : public CDC {
  DECLARE_DYNAMIC(CClientDC)
 public:
  explicit CClientDC(CWnd* window);
  ~CClientDC() override;

 private:
  HWND m_hWnd;
};
