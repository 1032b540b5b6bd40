#include "platform/framework/wnd.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/framework/frame_wnd.h"
#include "platform/framework/menu.h"
#include "platform/framework/thread.h"
#include "platform/window/pump.h"

IMPLEMENT_DYNCREATE(CWnd, CCmdTarget)

namespace {

/// The object whose window is being made.
CWnd* g_creating = nullptr;

void AttachNewWindow(HWND window) {
  if (g_creating != nullptr) std::exchange(g_creating, nullptr)->SubclassWindow(window);
}

}  // namespace

CWnd::~CWnd() {
  if (m_hWnd != nullptr && FromHandlePermanent(m_hWnd) == this) {
    // Too late for handlers of derived classes; the window still has to go.
    const HWND window = m_hWnd;
    SetWindowLong(window, GWL_WNDPROC,
                  reinterpret_cast<std::intptr_t>(m_pfnSuper != nullptr ? m_pfnSuper : &::DefWindowProc));
    Detach();
    ::DestroyWindow(window);
  }
}

BOOL CWnd::SubclassWindow(HWND window) {
  if (Attach(window) == 0) return FALSE;
  PreSubclassWindow();
  m_pfnSuper = reinterpret_cast<WNDPROC>(
      SetWindowLong(window, GWL_WNDPROC, reinterpret_cast<std::intptr_t>(&AfxWndProc)));
  return TRUE;
}

BOOL CWnd::Create(LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                  void* context) {
  return CreateEx(0, className, title, style | WS_CHILD, rect, parent, id, context);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect,
                    CWnd* parent, UINT id, LPVOID params) {
  return CreateEx(exStyle, className, title, style, rect.left, rect.top, rect.right - rect.left,
                  rect.bottom - rect.top, parent == nullptr ? nullptr : parent->m_hWnd,
                  reinterpret_cast<HMENU>(static_cast<std::uintptr_t>(id)), params);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR title, DWORD style, int x, int y, int width,
                    int height, HWND parent, HMENU menuOrId, LPVOID params) {
  if (m_hWnd != nullptr) return FALSE;
  AfxGetThread();  // through it windows see messages before dispatch, in a host's own loop too
  CREATESTRUCT cs = {params, nullptr, menuOrId, parent, height,    width,
                     y,      x,       style,    title,  className, exStyle};
  if (PreCreateWindow(cs) == 0) {
    PostNcDestroy();
    return FALSE;
  }
  if (cs.lpszClass == nullptr) cs.lpszClass = AfxRegisterWndClass(CS_DBLCLKS, LoadCursor(nullptr, IDC_ARROW));
  platform::SetCreateHook(&AttachNewWindow);
  CWnd* outer = std::exchange(g_creating, this);
  const HWND window = CreateWindowEx(cs.dwExStyle, cs.lpszClass, cs.lpszName, cs.style, cs.x, cs.y, cs.cx,
                                     cs.cy, cs.hwndParent, cs.hMenu, cs.hInstance, cs.lpCreateParams);
  const bool neverMade = g_creating == this;
  g_creating = outer;
  if (neverMade) PostNcDestroy();  // of a window that was made, WM_NCDESTROY has called it
  return window != nullptr;
}

BOOL CWnd::DestroyWindow() {
  if (m_hWnd == nullptr) return FALSE;
  const HWND window = m_hWnd;
  // A handler of the last messages may delete this object.
  const bool owned = FromHandlePermanent(window) == this;
  const BOOL destroyed = ::DestroyWindow(window);
  if (!owned) m_hWnd = nullptr;
  return destroyed;
}

void CWnd::OnNcDestroy() {
  CWinThread* thread = AfxGetThread();
  if (thread->m_pMainWnd == this) {
    thread->m_pMainWnd = nullptr;
    AfxPostQuitMessage(0);
  }
  Default();
  Detach();
  m_pfnSuper = nullptr;
  PostNcDestroy();
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT&) {
  return TRUE;
}

BOOL CWnd::PreTranslateMessage(MSG*) {
  return FALSE;
}

namespace {

BOOL Modify(HWND window, int index, DWORD remove, DWORD add, UINT flags) {
  const auto former = static_cast<DWORD>(GetWindowLong(window, index));
  const DWORD style = (former & ~remove) | add;
  if (style == former || IsWindow(window) == 0) return FALSE;
  SetWindowLong(window, index, static_cast<std::intptr_t>(style));
  if (flags != 0)
    SetWindowPos(window, nullptr, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
  return TRUE;
}

}  // namespace

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT flags) {
  return Modify(m_hWnd, GWL_STYLE, remove, add, flags);
}

BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT flags) {
  return Modify(m_hWnd, GWL_EXSTYLE, remove, add, flags);
}

CFrameWnd* CWnd::GetParentFrame() const {
  for (CWnd* parent = GetParent(); parent != nullptr; parent = parent->GetParent())
    if (parent->IsKindOf(RUNTIME_CLASS(CFrameWnd)) != 0) return static_cast<CFrameWnd*>(parent);
  return nullptr;
}

CMenu* CWnd::GetMenu() const {
  return CMenu::FromHandle(::GetMenu(m_hWnd));
}

BOOL CWnd::SetMenu(CMenu* menu) {
  return ::SetMenu(m_hWnd, menu == nullptr ? nullptr : menu->m_hMenu);
}

void CWnd::SendMessageToDescendants(UINT message, WPARAM wParam, LPARAM lParam) {
  std::vector<HWND> children;  // a handler may change them
  for (HWND child = GetWindow(m_hWnd, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    children.push_back(child);
  for (const HWND child : children) {
    ::SendMessage(child, message, wParam, lParam);
    if (CWnd* window = FromHandle(child)) window->SendMessageToDescendants(message, wParam, lParam);
  }
}

BOOL CWnd::SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw) {
  if (info == nullptr || IsWindow(m_hWnd) == 0) return FALSE;
  info->cbSize = sizeof *info;
  ::SetScrollInfo(m_hWnd, bar, info, redraw);
  return TRUE;
}

void CWnd::ScreenToClient(LPRECT rect) const {
  CPoint corner(rect->left, rect->top);
  ScreenToClient(&corner);
  OffsetRect(rect, corner.x - rect->left, corner.y - rect->top);
}

BOOL CWnd::GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask) {
  if (info == nullptr) return FALSE;
  info->cbSize = sizeof *info;
  info->fMask = mask;
  return ::GetScrollInfo(m_hWnd, bar, info);
}

LPCTSTR AfxRegisterWndClass(UINT style, HCURSOR cursor, HBRUSH background, HICON icon) {
  static std::set<std::string> names;
  CString name;
  name.Format("Afx:%x:%zx:%zx:%zx", style, reinterpret_cast<std::uintptr_t>(cursor),
              reinterpret_cast<std::uintptr_t>(background), reinterpret_cast<std::uintptr_t>(icon));
  const auto [entry, added] = names.emplace(name);
  if (added) {
    const WNDCLASS windowClass = {style, &::DefWindowProc, 0,          0,       nullptr,
                                  icon,  cursor,           background, nullptr, entry->c_str()};
    RegisterClassA(&windowClass);
  }
  return entry->c_str();
}
