#include <vector>

#include "imagewindow/frame_link.h"
#include "imagewindow/image_window.h"
#include "library/resource_ids.h"
#include "platform/framework/message_box.h"

// Files that are dropped on the window.

namespace {

constexpr UINT kCount = 0xFFFFFFFF;

}  // namespace

void CImageWindow::OpenDropped(const char* path) {
  CImageWindowFrame* frame = Frame();
  if (frame != nullptr && frame->OpenDroppedFile(path)) return;
  if (OpenImageFile(path)) LoadPage(1);
  Invalidate();  // also after a failure: the former page is gone
  CWnd* parent = GetParent();
  if (parent != nullptr)
    parent->SendMessage(WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(), ZPN_FILE_DROPPED),
                        reinterpret_cast<LPARAM>(m_hWnd));
}

void CImageWindow::OnDropFiles(HDROP drop) {
  if (DragQueryFileA(drop, kCount, nullptr, 0) > 1) {
    AfxMessageBox(IDS_ZP_ONE_FILE_ONLY);
  } else {
    std::vector<char> path(DragQueryFileA(drop, 0, nullptr, 0) + 1);
    DragQueryFileA(drop, 0, path.data(), static_cast<UINT>(path.size()));
    OpenDropped(path.data());
  }
  Default();
}
