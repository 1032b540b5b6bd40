#include "platform/framework/cmd_ui.h"
#include "platform/framework/detail/handler_failure.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/menu.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/wnd.h"
#include "platform/window/busy.h"

namespace {

/// The message that the innermost handler on the stack is at, for Default().
MSG g_current{};

/// Keeps the outer handler's message while an inner one runs.
class CurrentMessage {
 public:
  explicit CurrentMessage(const MSG& message) : m_outer(g_current) { g_current = message; }
  ~CurrentMessage() { g_current = m_outer; }
  CurrentMessage(const CurrentMessage&) = delete;
  CurrentMessage& operator=(const CurrentMessage&) = delete;

 private:
  MSG m_outer;
};

template <typename Result, typename... Args>
Result Call(CWnd* window, AFX_PMSG handler, Args... args) {
  return AfxCallHandler<Result, Args...>(window, handler, args...);
}

CWnd* WindowOf(WPARAM handle) {
  return CWnd::FromHandle(reinterpret_cast<HWND>(handle));
}

CPoint PointOf(LPARAM words) {
  return {GET_X_LPARAM(words), GET_Y_LPARAM(words)};
}

/// Unpacks the words as the handler's arguments. False for a handler that isn't one of a window message.
bool Invoke(CWnd* w, const AFX_MSGMAP_ENTRY& entry, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  const AFX_PMSG pfn = entry.pfn;
  const UINT low = LOWORD(wParam);
  const UINT high = HIWORD(wParam);
  const auto words = static_cast<WPARAM>(lParam);
  result = 0;
  switch (entry.nSig) {
    case AfxSig_bD:
      // Anybody can send one without a context, or with one that is gone: nothing to draw on.
      if (CDC* dc = CDC::FromHandle(reinterpret_cast<HDC>(wParam))) result = Call<BOOL>(w, pfn, dc);
      break;
    case AfxSig_bWww:
      result = Call<BOOL, CWnd*, UINT, UINT>(w, pfn, WindowOf(wParam), LOWORD(words), HIWORD(words));
      break;
    case AfxSig_is:
      result = Call<int>(w, pfn, reinterpret_cast<LPCREATESTRUCT>(lParam));
      break;
    case AfxSig_lwl:
      result = Call<LRESULT>(w, pfn, wParam, lParam);
      break;
    case AfxSig_vv:
      Call<void>(w, pfn);
      break;
    case AfxSig_vw:
      Call<void>(w, pfn, static_cast<UINT>(wParam));
      break;
    case AfxSig_vb:
      Call<void>(w, pfn, static_cast<BOOL>(wParam));
      break;
    case AfxSig_vbw:
      Call<void>(w, pfn, static_cast<BOOL>(wParam), static_cast<UINT>(lParam));
      break;
    case AfxSig_vtimer:
      Call<void>(w, pfn, static_cast<std::uintptr_t>(wParam));
      break;
    case AfxSig_vwww:
      Call<void, UINT, UINT, UINT>(w, pfn, static_cast<UINT>(wParam), LOWORD(words), HIWORD(words));
      break;
    case AfxSig_vwp:
      Call<void>(w, pfn, static_cast<UINT>(wParam), PointOf(lParam));
      break;
    case AfxSig_vwii:
      Call<void, UINT, int, int>(w, pfn, static_cast<UINT>(wParam), WidthOfSizeParam(lParam),
                                 HeightOfSizeParam(lParam));
      break;
    case AfxSig_vii:
      Call<void, int, int>(w, pfn, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
      break;
    case AfxSig_vscroll:
      Call<void, UINT, UINT, CScrollBar*>(w, pfn, low, high, nullptr);
      break;
    case AfxSig_vW:
      Call<void>(w, pfn, WindowOf(wParam));
      break;
    case AfxSig_vWl:
      Call<void>(w, pfn, WindowOf(words));
      break;
    case AfxSig_vWp:
      Call<void>(w, pfn, WindowOf(wParam), PointOf(lParam));
      break;
    case AfxSig_vactivate:
      Call<void, UINT, CWnd*, BOOL>(w, pfn, low, WindowOf(words), high != 0);
      break;
    case AfxSig_bwheel:
      result = Call<BOOL, UINT, short, CPoint>(w, pfn, low, static_cast<short>(high), PointOf(lParam));
      break;
    case AfxSig_vdrop:
      Call<void>(w, pfn, reinterpret_cast<HDROP>(wParam));
      break;
    case AfxSig_vmenu:
      Call<void, CMenu*, UINT, BOOL>(w, pfn, CMenu::FromHandle(reinterpret_cast<HMENU>(wParam)),
                                     LOWORD(words), HIWORD(words));
      break;
    case AfxSig_vselect:
      Call<void, UINT, UINT, HMENU>(w, pfn, low, high, reinterpret_cast<HMENU>(lParam));
      break;
    case AfxSig_vmdi:
      Call<void, BOOL, CWnd*, CWnd*>(w, pfn, w->m_hWnd == reinterpret_cast<HWND>(lParam), WindowOf(words),
                                     WindowOf(wParam));
      break;
    default:
      return false;
  }
  return true;
}

}  // namespace

LRESULT AfxWndProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  CWnd* window = CWnd::FromHandlePermanent(handle);
  if (window == nullptr) return ::DefWindowProc(handle, message, wParam, lParam);
  if (message == WM_CLOSE && platform::BusyScope::PutOffClose(handle)) return 0;
  const MSG current = {handle, message, wParam, lParam, 0, {}, 0};
  const CurrentMessage scope(current);
  // A window that is asked to close may end at once.
  const platform::ObjectHold hold(message == WM_CLOSE ? nullptr : handle);
  try {
    return window->WindowProc(message, wParam, lParam);
  } catch (...) {
    return platform::TellHandlerFailure(current);
  }
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  if (OnWndMsg(message, wParam, lParam, &result) != 0) return result;
  return DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (message == WM_COMMAND) {
    *result = OnCommand(wParam, lParam) != 0 ? 1 : 0;
    return *result != 0;
  }
  const AFX_MSGMAP_ENTRY* entry = AfxFindMessageEntry(GetMessageMap(), message, 0, 0);
  return entry != nullptr && Invoke(this, *entry, wParam, lParam, *result);
}

LRESULT CWnd::Default() {
  return DefWindowProc(g_current.message, g_current.wParam, g_current.lParam);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  return m_pfnSuper != nullptr ? m_pfnSuper(m_hWnd, message, wParam, lParam)
                               : ::DefWindowProc(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
  const UINT id = LOWORD(wParam);
  if (id == 0) return FALSE;
  // From a menu or an accelerator the high word says nothing; from a control it is the notification.
  const int code = lParam == 0 ? int{CN_COMMAND} : int{HIWORD(wParam)};
  return OnCmdMsg(id, code, nullptr, nullptr);
}

// What a window does by itself with these messages.
BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
ON_WM_NCDESTROY()
END_MESSAGE_MAP()
