// What is done with the pages that a window shows.

#include <algorithm>
#include <array>

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

std::string CViewerWindow::AskForTarget(const std::string& filters, UINT title, const std::string& name,
                                        DWORD& kind) {
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
  if (dialog.DoModal() != IDOK || m_hWnd == nullptr || m_file == nullptr) return {};
  kind = std::max<DWORD>(dialog.m_ofn.nFilterIndex, 1) - 1;
  return dialog.m_ofn.lpstrFile;
}

bool CViewerWindow::MayReplace(const std::vector<std::string>& targets, const std::string& asked) {
  const auto found = std::ranges::find_if(targets, [&](const std::string& target) {
    std::error_code ignored;
    return target != asked && std::filesystem::exists(target, ignored);
  });
  if (found == targets.end()) return true;
  const CString question = TextWith(IDS_REPLACE, NameOf(*found).c_str());
  return MessageBox(question, AfxGetAppName(), MB_YESNO | MB_ICONEXCLAMATION) == IDYES && m_hWnd != nullptr;
}

/// What is to be exported, and where to; false if the user gives up.
bool CViewerWindow::AskForExport(Options& options) {
  options.pages = {{1, 1}};
  if (Pages() > 1) {
    CPagesDialog dialog(CPagesDialog::Purpose::Export, Page(), Pages(), this);
    if (dialog.DoModal() != IDOK || m_hWnd == nullptr) return false;
    options.pages = dialog.Ranges();
  }
  DWORD kind = 0;
  const std::string asked =
      AskForTarget(static_cast<const char*>(Text(IDS_EXPORT_FILTERS)), IDS_ZP_EXPORT_TITLE, {}, kind);
  if (asked.empty()) return false;
  constexpr std::array<const char*, 4> kEndings = {".tif", ".pdf", ".png", ".jpg"};
  options.target = asked;
  // The kind that was chosen completes a name that tells none.
  if (ExportEnding(asked).empty())
    options.target += kEndings[std::min<std::size_t>(kind, kEndings.size() - 1)];
  return MayReplace(ExportTargets(options.target, options.pages), asked) && m_hWnd != nullptr &&
         m_file != nullptr;
}

void CViewerWindow::OnExportPages() {
  Options options;
  if (m_file == nullptr || !IsOpen() || !AskForExport(options)) return;
  SetMessageText(UINT{IDS_ZP_EXPORTING});
  try {
    const WaitCursor wait(*this);
    LongCommand command(this, IDS_ZP_EXPORTING_PAGE);
    ExportPages(*m_file, options, [&](int page, int pages) { return command.Reach(page, pages); });
  } catch (const Stopped&) {
    SetMessageText(UINT{AFX_IDS_IDLEMESSAGE});
    return;
  } catch (const FileError& error) {
    SetMessageText(UINT{AFX_IDS_IDLEMESSAGE});
    ShowError(error.what());
    return;
  }
  const auto files = ExportTargets(options.target, options.pages);
  const int count = static_cast<int>(files.size());
  SetMessageText(count == 1 ? TextWith(IDS_EXPORTED, NameOf(files[0]).c_str())
                            : TextWith(IDS_EXPORTED_SEVERAL, count, NameOf(options.target).c_str()));
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
    const LongCommand command(this, IDS_ZP_PRINTING_PAGE);
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
  const std::string proposal = HasPath() ? std::string(static_cast<const char*>(name)) : std::string();
  DWORD kind = 0;
  const std::string asked = AskForTarget(filter, IDS_TURNED_TITLE, proposal, kind);
  const bool complete = std::filesystem::path(asked).has_extension();
  const std::string target = complete ? asked : asked + ending;
  if (asked.empty() || !MayReplace({target}, asked) || m_file == nullptr) return;
  try {
    const WaitCursor wait(*this);
    const LongCommand command(this, IDS_ZP_EXPORTING_PAGE);
    SaveTurnedCopy(m_file->Path(), target, quarters);
  } catch (const Stopped&) {
    return;
  } catch (const FileError& error) {
    ShowError(error.what());
    return;
  }
  SetMessageText(TextWith(IDS_TURNED_SAVED, NameOf(target).c_str()));
}
