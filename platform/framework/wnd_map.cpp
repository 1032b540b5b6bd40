#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/framework/wnd.h"
#include "platform/window/pump.h"

namespace {

// Both live as long as any window may.
std::map<HWND, CWnd*>& PermanentMap() {
  static auto* map = new std::map<HWND, CWnd*>;
  return *map;
}

/// An object for a window that has none of its own. Its end leaves the window alone.
struct TemporaryWnd : CWnd {
  TemporaryWnd() = default;
  TemporaryWnd(const TemporaryWnd&) = delete;
  TemporaryWnd& operator=(const TemporaryWnd&) = delete;
  ~TemporaryWnd() override { m_hWnd = nullptr; }
};

std::map<HWND, std::unique_ptr<TemporaryWnd>>& TemporaryMap() {
  static auto* map = new std::map<HWND, std::unique_ptr<TemporaryWnd>>;
  return *map;
}

}  // namespace

CWnd* CWnd::FromHandlePermanent(HWND window) {
  const auto found = PermanentMap().find(window);
  return found == PermanentMap().end() ? nullptr : found->second;
}

CWnd* CWnd::FromHandle(HWND window) {
  if (CWnd* permanent = FromHandlePermanent(window)) return permanent;
  if (IsWindow(window) == 0) return nullptr;
  auto& temporary = TemporaryMap()[window];
  if (!temporary) {
    temporary = std::make_unique<TemporaryWnd>();
    temporary->m_hWnd = window;
  }
  return temporary.get();
}

void CWnd::DeleteTempMap() {
  TemporaryMap().clear();
}

BOOL CWnd::Attach(HWND window) {
  if (window == nullptr || m_hWnd != nullptr || FromHandlePermanent(window) != nullptr) return FALSE;
  m_hWnd = window;
  PermanentMap()[window] = this;
  return TRUE;
}

HWND CWnd::Detach() {
  if (m_hWnd != nullptr && FromHandlePermanent(m_hWnd) == this) PermanentMap().erase(m_hWnd);
  return std::exchange(m_hWnd, nullptr);
}
