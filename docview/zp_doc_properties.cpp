#include "docview/zp_doc.h"
#include "platform/base/path.h"
#include "viewing/file_formats.h"
#include "viewing/properties_dlg.h"

CString CZPDoc::GetFileFormat(int nFormat) {
  return FileFormatName(nFormat);
}

void CZPDoc::ShowPageInfo() {
  CZPPage* const page = PageOrActive(-1);
  if (page == nullptr) return;
  const struct_file_information& info = *page->GetPageInfo();
  CImagePropertiesDlg dialog;
  FillProperties(&dialog, info, GetFileFormat(info.Format));
  const platform::PathParts parts = platform::SplitPath(static_cast<const char*>(GetPathName()));
  dialog.m_strFileName = parts.name.c_str();
  dialog.m_strFolder = parts.folder.c_str();
  dialog.m_strPageCount.Format("%i", GetPagesNum());
  dialog.m_strPageNumber.Format("%i", m_nActivePage + 1);
  dialog.DoModal();
}
