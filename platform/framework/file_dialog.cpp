#include "platform/framework/file_dialog.h"

#include <cstring>
#include <filesystem>

#include "platform/base/path.h"
#include "platform/base/translation.h"
#include "platform/framework/app.h"
#include "platform/window/detail/show_file_dialog.h"

IMPLEMENT_DYNAMIC(CFileDialog, CDialog)

namespace {

/// Lines of text, 0, pattern, 0, up to an empty text.
std::vector<platform::FileDialogRequest::Filter> FiltersOf(const char* list) {
  std::vector<platform::FileDialogRequest::Filter> filters;
  while (list != nullptr && *list != 0) {
    const std::string text = list;
    list += text.size() + 1;
    const std::string patterns = list;
    list += patterns.size() + 1;
    filters.push_back({text, patterns});
  }
  return filters;
}

std::string TextOrEmpty(const char* text) {
  return text == nullptr ? "" : text;
}

/// Of the file that was chosen last: the next one mostly lies beside it.
std::string& LastFolder() {
  static auto& folder = *new std::string;
  return folder;
}

bool Complain(const std::string& path, const char* what) {
  AfxMessageBox((path + "\n" + what).c_str(), MB_ICONEXCLAMATION);
  return false;
}

}  // namespace

CFileDialog::CFileDialog(BOOL open, LPCTSTR defaultExtension, LPCTSTR fileName, DWORD flags, LPCTSTR filter,
                         CWnd* parent)
    : m_open(open), m_defaultExtension(defaultExtension) {
  m_pParentWnd = parent;
  m_ofn.lStructSize = sizeof m_ofn;
  m_ofn.Flags = flags;
  m_ofn.nFilterIndex = 1;
  m_ofn.lpstrFile = m_file;
  m_ofn.nMaxFile = sizeof m_file;
  if (defaultExtension != nullptr) m_ofn.lpstrDefExt = m_defaultExtension;
  if (fileName != nullptr) std::strncpy(m_file, fileName, sizeof m_file - 1);
  if (filter == nullptr) return;
  m_filter = filter;
  for (char& c : m_filter)
    if (c == '|') c = 0;
  m_filter.push_back(0);
  m_ofn.lpstrFilter = m_filter.c_str();
}

std::string CFileDialog::WithExtension(const std::string& path) const {
  const platform::PathParts parts = platform::SplitPath(path);
  if (m_ofn.lpstrDefExt == nullptr || parts.name.find('.') != std::string::npos) return path;
  return path + "." + m_ofn.lpstrDefExt;
}

/// What stands against the path, told or asked.
bool CFileDialog::Accepts(const std::string& typed) {
  const std::string path = WithExtension(typed);
  const platform::PathParts parts = platform::SplitPath(path);
  CFileStatus status;
  const bool exists = CFile::GetStatus(path.c_str(), status) != 0;
  if (path.size() + 1 > m_ofn.nMaxFile)
    return Complain(parts.name, platform::Localized("Il nome del file è troppo lungo."));
  if (exists && (status.m_attribute & CFile::directory) != 0)
    return Complain(path, platform::Localized("È il nome di una cartella. Scegliere un altro nome."));
  const bool folderExists = parts.folder.empty() || CFile::GetStatus(parts.folder.c_str(), status) != 0;
  const bool mustExist = (m_ofn.Flags & OFN_FILEMUSTEXIST) != 0 && m_open != 0;
  if ((mustExist || (m_ofn.Flags & OFN_PATHMUSTEXIST) != 0) && !folderExists)
    return Complain(path, platform::Localized("Il percorso non esiste. Verificare che sia corretto."));
  if (mustExist && !exists)
    return Complain(path, platform::Localized("Il file non esiste. Verificare che il nome sia corretto."));
  if (m_open != 0 || !exists || (m_ofn.Flags & OFN_OVERWRITEPROMPT) == 0) return true;
  return AfxMessageBox((path + platform::Localized(" esiste già.\nSostituirlo?")).c_str(),
                       MB_YESNO | MB_ICONEXCLAMATION) == IDYES;
}

void CFileDialog::TakeOver(const std::string& typed) {
  const std::string path = WithExtension(typed);
  const platform::PathParts parts = platform::SplitPath(path);
  path.copy(m_ofn.lpstrFile, path.size());
  m_ofn.lpstrFile[path.size()] = 0;
  m_ofn.nFileOffset = static_cast<WORD>(parts.folder.size());
  const std::size_t dot = parts.name.rfind('.');
  if (dot == std::string::npos)
    m_ofn.nFileExtension = static_cast<WORD>(path.size());  // the closing 0
  else if (dot + 1 == parts.name.size())
    m_ofn.nFileExtension = 0;
  else
    m_ofn.nFileExtension = static_cast<WORD>(parts.folder.size() + dot + 1);
  if (m_ofn.lpstrFileTitle != nullptr && m_ofn.nMaxFileTitle > 0) {
    const std::size_t length = parts.name.copy(m_ofn.lpstrFileTitle, m_ofn.nMaxFileTitle - 1);
    m_ofn.lpstrFileTitle[length] = 0;
  }
}

int CFileDialog::DoModal() {
  if (m_ofn.lpstrFile == nullptr || m_ofn.nMaxFile == 0) return IDCANCEL;
  platform::FileDialogRequest request;
  request.open = m_open != 0;
  request.title = TextOrEmpty(m_ofn.lpstrTitle);
  request.folder = m_ofn.lpstrInitialDir != nullptr ? m_ofn.lpstrInitialDir : LastFolder();
  request.filters = FiltersOf(m_ofn.lpstrFilter);
  request.path = m_ofn.lpstrFile;
  request.filterIndex = m_ofn.nFilterIndex == 0 ? 1 : m_ofn.nFilterIndex;
  bool chosen = false;
  if (const auto& answer = platform::TheSeams().fileDialog) {
    chosen = answer(request) && Accepts(request.path);
  } else {
    const HWND owner = ModalOwner(m_pParentWnd);
    const bool disable = owner != nullptr && ::IsWindowEnabled(owner) != 0;
    const HWND formerFocus = ::GetFocus();
    ReleaseCapture();
    if (disable) ::EnableWindow(owner, FALSE);
    chosen =
        platform::ShowFileDialog(owner, request, [this](const std::string& path) { return Accepts(path); });
    if (disable && IsWindow(owner) != 0) ::EnableWindow(owner, TRUE);
    if (IsWindow(formerFocus) != 0) ::SetFocus(formerFocus);
  }
  if (!chosen) return IDCANCEL;
  TakeOver(request.path);
  LastFolder() = platform::SplitPath(request.path).folder;
  m_ofn.nFilterIndex = request.filterIndex;
  return IDOK;
}

CString CFileDialog::GetFileName() const {
  return platform::SplitPath(m_ofn.lpstrFile).name.c_str();
}
