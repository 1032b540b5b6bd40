// A host with viewers docked in its multiple-document window.
//
//   mdi_host FILE...

#include "tessarel12.h"

namespace {

/// A viewer whose menu, which stands in the main window's bar, opens further files too.
class Viewer : public CImageMDIChild {
 public:
  BOOL LoadFrame(UINT id, DWORD style, CWnd* parent, CCreateContext* context) override {
    if (CImageMDIChild::LoadFrame(id, style, parent, context) == FALSE) return FALSE;
    InsertMenuA(GetSubMenu(m_hMenuShared, 0), 0, MF_BYPOSITION | MF_STRING, ID_FILE_OPEN, "&Apri...\tCtrl+A");
    return TRUE;
  }
};

class HostFrame : public CMDIFrameWnd {
 public:
  /// A viewer on a file; null asks the user.
  void Show(const char* path) {
    auto* viewer = new Viewer;  // ends with its window
    if (viewer->LoadFrame(IDR_ZP_VIEWER, WS_OVERLAPPEDWINDOW | FWS_ADDTOTITLE, this, nullptr) == FALSE)
      return;
    if (!viewer->OpenImageFile(path) || viewer->m_pImageWnd->GetCurrPage() < 1) {
      viewer->DestroyWindow();
      return;
    }
    viewer->SetWindowText(viewer->m_pImageWnd->GetFileName());
    viewer->ActivateFrame();
  }

 protected:
  void OnFileOpen() { Show(nullptr); }
  void OnAppExit() { PostMessage(WM_CLOSE); }

  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(HostFrame, CMDIFrameWnd)
ON_COMMAND(ID_FILE_OPEN, OnFileOpen)
ON_COMMAND(ID_APP_EXIT, OnAppExit)
END_MESSAGE_MAP()

class Host : public CWinApp {
 public:
  Host() : CWinApp("Tessarel12") {}

 private:
  BOOL InitInstance() override {
    auto* frame = new HostFrame;  // ends with its window
    m_pMainWnd = frame;
    if (frame->LoadFrame(IDR_ZP_HOST) == FALSE) return FALSE;
    frame->m_strTitle = m_pszAppName;
    frame->OnUpdateFrameTitle(FALSE);
    frame->ShowWindow(SW_SHOW);
    for (int i = 1; i < m_argc; ++i) frame->Show(m_argv[i]);
    return TRUE;
  }
};

Host g_host;

}  // namespace

int main(int argc, char** argv) {
  return AfxWinMain(argc, argv);
}
