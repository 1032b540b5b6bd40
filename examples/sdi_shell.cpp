// A complete viewer for one document.
//
//   sdi_shell [FILE]

#include "shell.h"

using shell::Document;

namespace {

class Shell : public shell::Application {
  BOOL InitInstance() override {
    EnableFilesOpening(TRUE);
    AddDocTemplate(new CSingleDocTemplate(IDR_ZP_HOST, RUNTIME_CLASS(Document), RUNTIME_CLASS(CZPsdiFrame),
                                          RUNTIME_CLASS(CZPView)));
    OnFileNew();  // makes the frame, with an empty document
    if (m_pMainWnd == nullptr) return FALSE;
    Show(static_cast<CFrameWnd*>(m_pMainWnd));
    return TRUE;
  }
};

Shell g_shell;

}  // namespace

int main(int argc, char** argv) {
  return AfxWinMain(argc, argv);
}
