#include "imagewindow/image_window.h"
#include "platform/base/path.h"
#include "platform/framework/object_hold.h"
#include "viewing/file_formats.h"
#include "viewing/page_source.h"
#include "viewing/properties_dlg.h"

namespace {

/// Without its closing separator, unless it is the root.
std::string FolderOf(const platform::PathParts& parts) {
  const std::string& folder = parts.folder;
  return folder.size() > 1 ? folder.substr(0, folder.size() - 1) : folder;
}

}  // namespace

CString CImageWindow::GetFileFormat(int code) {
  return FileFormatName(code);
}

void CImageWindow::ShowPropertiesDlg() {
  const platform::ObjectHold hold(this);
  CImagePropertiesDlg dialog;
  // After a failure the dialog opens all the same and shows what is known.
  struct_file_information info{};
  const PageSource source = PageSource::Of(m_strFilePath, m_pFileBuf, m_nFileBufSize);
  try {
    _LOADFILEOPTION options{};
    LEADTOOLS::GetDefaultLoadFileOption(&options);
    options.PageNumber = m_nCurrPage;
    source.Describe(&info, &options, true);
  } catch (CLeadtoolsException* exception) {
    Report(exception);
    if (!hold.Exists() || m_hWnd == nullptr) return;
  }
  if (source.IsFile()) {
    const platform::PathParts parts = platform::SplitPath(static_cast<const char*>(m_strFilePath));
    dialog.m_strFileName = parts.name.c_str();
    dialog.m_strFolder = FolderOf(parts).c_str();
  } else {
    dialog.m_strFolder = "Memory file";
  }
  FillProperties(&dialog, info, GetFileFormat(info.Format));
  dialog.m_strPageNumber.Format("%i", m_nCurrPage);
  dialog.DoModal();
}
