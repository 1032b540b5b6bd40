#include <vector>

#include "imagewindow/frame_link.h"
#include "imagewindow/image_window.h"
#include "library/resource_ids.h"
#include "platform/framework/message_box.h"
#include "platform/framework/object_hold.h"

// Files that are dropped on the window.

namespace {

constexpr UINT kCount = 0xFFFFFFFF;

}  // namespace

void CImageWindow::OpenDropped(const char* path) {
  const platform::ObjectHold hold(this);
  CImageWindowFrame* frame = Frame();
  if (frame != nullptr && frame->OpenDroppedFile(path)) return;
  const bool opened = OpenImageFile(path);
  if (!hold.Exists()) return;
  if (opened) LoadPage(1);
  if (!hold.Exists()) return;
  Invalidate();  // also after a failure: the former page is gone
  CWnd* parent = GetParent();
  if (parent != nullptr)
    parent->SendMessage(WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(), ZPN_FILE_DROPPED),
                        reinterpret_cast<LPARAM>(m_hWnd));
}

void CImageWindow::OnDropFiles(HDROP drop) {
  const platform::ObjectHold hold(this);
  if (DragQueryFileA(drop, kCount, nullptr, 0) > 1) {
    AfxMessageBox(IDS_ZP_ONE_FILE_ONLY);
  } else {
    std::vector<char> path(DragQueryFileA(drop, 0, nullptr, 0) + 1);
    DragQueryFileA(drop, 0, path.data(), static_cast<UINT>(path.size()));
    OpenDropped(path.data());
  }
  if (hold.Exists()) Default();
}
