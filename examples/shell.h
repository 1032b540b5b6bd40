#pragma once

// What the two shells, for many documents and for one, have in common.

#include "tessarel12.h"

namespace shell {

/// A document whose export command works: the component enables the command and leaves it to its host.
class Document : public CZPDoc {
  DECLARE_DYNCREATE(Document)
 protected:
  void OnExport() {
    constexpr DWORD flags = DWORD{OFN_HIDEREADONLY} | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST;
    CFileDialog dialog(FALSE, "tif", nullptr, flags,
                       "TIFF file (*.tif)|*.tif|Windows bitmap (*.bmp)|*.bmp|JPEG file (*.jpg)|*.jpg||");
    if (dialog.DoModal() != IDOK) return;
    const CWaitCursor wait;
    CImageWindow exporter;  // never shown: it has the export that a document lacks
    if (!exporter.OpenImageFile(GetPathName())) return;
    exporter.m_nCurrPage = GetActivePageNum() + 1;
    exporter.ExportAs(dialog.GetPathName());
  }

  DECLARE_MESSAGE_MAP()
};

IMPLEMENT_DYNCREATE(Document, CZPDoc)

BEGIN_MESSAGE_MAP(Document, CZPDoc)
ON_COMMAND(ID_ZP_FILE_EXPORT, OnExport)
END_MESSAGE_MAP()

/// The keys that the component's menus name.
inline HACCEL CreateKeys() {
  constexpr BYTE kControl = FVIRTKEY | FCONTROL;
  static constexpr ACCEL kKeys[] = {
      {kControl, 'A', ID_FILE_OPEN},         {kControl, 'E', ID_ZP_FILE_EXPORT},
      {kControl, 'S', ID_FILE_PRINT},        {kControl, VK_NEXT, ID_ZP_NEXT_PAGE},
      {kControl, VK_PRIOR, ID_ZP_PREV_PAGE}, {kControl, VK_UP, ID_ZP_ZOOM_IN},
      {kControl, VK_DOWN, ID_ZP_ZOOM_OUT},
  };
  return CreateAcceleratorTable(kKeys, static_cast<int>(std::size(kKeys)));
}

/// An application that opens the files of its command line in a main window.
class Application : public CWinApp {
 public:
  Application() : CWinApp("Tessarel12") {}

 protected:
  void Show(CFrameWnd* frame) {
    frame->m_hAccelTable = m_keys = CreateKeys();
    frame->m_strTitle = m_pszAppName;
    frame->OnUpdateFrameTitle(TRUE);
    frame->ShowWindow(SW_SHOW);
    for (int i = 1; i < m_argc; ++i) OpenDocumentFile(m_argv[i]);
  }
  int ExitInstance() override {
    DestroyAcceleratorTable(m_keys);
    return CWinApp::ExitInstance();
  }

 private:
  HACCEL m_keys = nullptr;
};

}  // namespace shell
