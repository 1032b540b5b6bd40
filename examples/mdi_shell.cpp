// A complete viewer for many documents, each in a window of its own.
//
//   mdi_shell [FILE...]

#include <cstdint>

#include "shell.h"

using shell::Document;

namespace {

/// Puts the commands that arrange windows behind a menu of the component, which has none.
void AddWindowMenu(HMENU bar) {
  HMENU windows = CreatePopupMenu();
  AppendMenuA(windows, MF_STRING, ID_WINDOW_CASCADE, "&Sovrapponi");
  AppendMenuA(windows, MF_STRING, ID_WINDOW_TILE_HORZ, "Affianca &orizzontalmente");
  AppendMenuA(windows, MF_STRING, ID_WINDOW_TILE_VERT, "Affianca &verticalmente");
  AppendMenuA(bar, MF_POPUP, reinterpret_cast<std::uintptr_t>(windows), "Fi&nestra");
}

class Child : public CZPmdiChild {
  DECLARE_DYNCREATE(Child)
 public:
  BOOL LoadFrame(UINT id, DWORD style, CWnd* parent, CCreateContext* context) override {
    if (CZPmdiChild::LoadFrame(id, style, parent, context) == FALSE) return FALSE;
    AddWindowMenu(m_hMenuShared);
    return TRUE;
  }
};
IMPLEMENT_DYNCREATE(Child, CZPmdiChild)

class Shell : public shell::Application {
  BOOL InitInstance() override {
    EnableFilesOpening(TRUE);
    AddDocTemplate(new CMultiDocTemplate(IDR_ZP_HOST, RUNTIME_CLASS(Document), RUNTIME_CLASS(Child),
                                         RUNTIME_CLASS(CZPView)));
    auto* frame = new CZPmdiFrame;  // ends with its window
    m_pMainWnd = frame;
    if (frame->LoadFrame(IDR_ZP_HOST) == FALSE) return FALSE;
    Show(frame);
    return TRUE;
  }
};

Shell g_shell;

}  // namespace

int main(int argc, char** argv) {
  return AfxWinMain(argc, argv);
}
