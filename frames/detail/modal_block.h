#pragma once

#include <vector>

#include "platform/window/window.h"

/// What the user isn't to use beside a modal viewer. It gives back what it found: a window that was disabled
/// already, by another viewer of the same parent for example, stays so.
class ModalBlock {
 public:
  ModalBlock() = default;
  ModalBlock(const ModalBlock&) = delete;
  ModalBlock& operator=(const ModalBlock&) = delete;
  ~ModalBlock() { Release(); }

  /// Disables the parent; where the viewer stands inside it, which would be disabled with it, its siblings.
  void Block(HWND viewer, HWND parent) {
    if (::IsChild(parent, viewer) == FALSE) {
      Disable(parent);
      return;
    }
    for (HWND sibling = ::GetWindow(::GetParent(viewer), GW_CHILD); sibling != nullptr;
         sibling = ::GetWindow(sibling, GW_HWNDNEXT))
      if (sibling != viewer) Disable(sibling);
  }
  void Release() {
    for (const HWND window : m_disabled)
      if (::IsWindow(window) != FALSE) ::EnableWindow(window, TRUE);
    m_disabled.clear();
  }

 private:
  void Disable(HWND window) {
    if (::IsWindowEnabled(window) == FALSE) return;
    ::EnableWindow(window, FALSE);
    m_disabled.push_back(window);
  }

  std::vector<HWND> m_disabled;
};
