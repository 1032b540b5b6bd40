// What is done with the pages that a window shows.

#include <algorithm>

#include "clipboard_copy.h"
#include "pages_dialog.h"
#include "resources.h"
#include "settings.h"
#include "turned_copy.h"
#include "viewer_page.h"
#include "viewer_window.h"
#include "windowless.h"

namespace {

/// While it lives, the pointer tells that the program is busy.
class WaitCursor {
 public:
  explicit WaitCursor(CWnd& window) : m_window(window) { m_window.BeginWaitCursor(); }
  ~WaitCursor() { m_window.EndWaitCursor(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  CWnd& m_window;
};

std::string NameOf(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

int CountOf(const PageRanges& ranges) {
  int count = 0;
  for (const PageRange& range : ranges) count += range.last - range.first + 1;
  return count;
}

void ShowPrintFailure(int /*code*/, CString text) {  // NOLINT(performance-unnecessary-value-param)
  AfxMessageBox(text, MB_OK | MB_ICONEXCLAMATION);
}

}  // namespace

void CViewerWindow::ShowError(const std::string& text) {
  MessageBox(text.c_str(), AfxGetAppName(), MB_OK | MB_ICONEXCLAMATION);
}

// Clipboard

void CViewerWindow::OnCopy() {
  const CRect part = PageWindow()->SelectedPart();
  if (!CopyToClipboard(*m_pImageWnd, part))
    ShowError(static_cast<const char*>(Text(IDS_COPY_FAILED)));
  else
    SetMessageText(Text(part.IsRectEmpty() != FALSE ? IDS_COPIED_PAGE : IDS_COPIED_PART));
}

void CViewerWindow::OnSelectArea() {
  PageWindow()->ArmSelection();
  SetMessageText(Text(IDS_SELECT_HINT));
}

void CViewerWindow::OnClearSelection() {
  PageWindow()->ClearSelection();
}

// Export and print

std::string CViewerWindow::AskForTarget(const std::string& filters, UINT title, const std::string& name) {
  CFileDialog dialog(FALSE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST,
                     filters.c_str(), this);
  std::vector<char> path(4096);
  name.copy(path.data(), path.size() - 1);
  dialog.m_ofn.lpstrFile = path.data();
  dialog.m_ofn.nMaxFile = static_cast<DWORD>(path.size());
  const CString caption = Text(title);
  dialog.m_ofn.lpstrTitle = caption;
  const std::string folder = settings::ReadText("Folder");
  if (!folder.empty()) dialog.m_ofn.lpstrInitialDir = folder.c_str();
  // The kind that is chosen completes a name without an ending.
  if (dialog.DoModal() != IDOK || m_hWnd == nullptr || m_file == nullptr) return {};
  std::string target = dialog.m_ofn.lpstrFile;
  constexpr const char* kEndings[] = {".tif", ".pdf", ".png", ".jpg"};
  const DWORD kind = std::clamp<DWORD>(dialog.m_ofn.nFilterIndex, 1, 4) - 1;
  if (!std::filesystem::path(target).has_extension()) target += kEndings[kind];
  return target;
}

void CViewerWindow::OnExportPages() {
  if (m_file == nullptr || !IsOpen()) return;
  Options options;
  if (Pages() > 1) {
    CPagesDialog dialog(CPagesDialog::Purpose::Export, Page(), Pages(), this);
    if (dialog.DoModal() != IDOK || m_hWnd == nullptr) return;
    options.pages = dialog.Ranges();
  } else {
    options.pages = {{1, 1}};
  }
  const std::string filters(Text(IDS_EXPORT_FILTERS));
  options.target = AskForTarget(filters, IDS_ZP_EXPORT_TITLE, {});
  if (options.target.empty()) return;
  SetMessageText(UINT{IDS_ZP_EXPORTING});
  try {
    const WaitCursor wait(*this);
    ExportPages(*m_file, options);
  } catch (const FileError& error) {
    SetMessageText(UINT{AFX_IDS_IDLEMESSAGE});
    ShowError(error.what());
    return;
  }
  const std::string ending = std::filesystem::path(options.target).extension();
  const bool single =
      CountOf(options.pages) == 1 || ending == ".tif" || ending == ".tiff" || ending == ".pdf";
  const std::string name = NameOf(options.target);
  SetMessageText(single ? TextWith(IDS_EXPORTED, name.c_str())
                        : TextWith(IDS_EXPORTED_SEVERAL, CountOf(options.pages), name.c_str()));
}

void CViewerWindow::OnPrintPages() {
  if (m_file == nullptr || !IsOpen()) return;
  if (PrinterNames().empty()) {
    ShowError(static_cast<const char*>(Text(IDS_NO_PRINTERS)));
    return;
  }
  CPagesDialog dialog(CPagesDialog::Purpose::Print, Page(), Pages(), this);
  if (dialog.DoModal() != IDOK || m_hWnd == nullptr || m_file == nullptr) return;
  try {
    const WaitCursor wait(*this);
    PrintRanges(*m_file, dialog.Printer(), dialog.Ranges());
  } catch (const FileError& error) {
    ShowError(error.what());
    return;
  } catch (int failure) {
    ReportPrintFailure(failure, &ShowPrintFailure);
    return;
  }
  SetMessageText(TextWith(IDS_PRINTED, dialog.Printer().c_str()));
}

// A copy with the turn that is shown

void CViewerWindow::OnSaveTurned() {
  if (m_file == nullptr || !IsShown()) return;
  constexpr int kQuarter = 90;
  const int quarters = m_pImageWnd->m_nRotation / kQuarter;
  const std::filesystem::path path(m_file->Name());
  const std::string ending = path.extension();
  const CString name = TextWith(IDS_TURNED_NAME, path.stem().c_str(), ending.c_str());
  const std::string filter = "*" + ending + "|*" + ending + "||";
  const std::string target = AskForTarget(
      filter, IDS_TURNED_TITLE, HasPath() ? std::string(static_cast<const char*>(name)) : std::string());
  if (target.empty()) return;
  try {
    const WaitCursor wait(*this);
    SaveTurnedCopy(m_file->Path(), target, quarters);
  } catch (const FileError& error) {
    ShowError(error.what());
    return;
  }
  SetMessageText(TextWith(IDS_TURNED_SAVED, NameOf(target).c_str()));
}
