#pragma once

#include "imaging/ltwrap.h"
#include "library/export.h"
#include "platform/framework/dialog.h"

/// The properties dialog: shows what it is filled with before DoModal. Closed by its one button.
class TESSAREL_API CImagePropertiesDlg : public CDialog {
 public:
  explicit CImagePropertiesDlg(CWnd* parent = nullptr);
  ~CImagePropertiesDlg() override = default;

  CString m_strRealSize;  ///< on paper
  CString m_strBitsPerPixel;
  CString m_strCompression;
  CString m_strFileName;
  CString m_strFileSize;
  CString m_strFormat;
  CString m_strFolder;
  CString m_strPageNumber;
  CString m_strResolution;
  CString m_strPixelSize;
  CString m_strPageCount;

 protected:
  void DoDataExchange(CDataExchange* exchange) override;

  DECLARE_MESSAGE_MAP()
};

/// Fills what the imaging service knows of a page: all fields but name, folder and page number. What it
/// doesn't know is named as not available.
void FillProperties(CImagePropertiesDlg* dialog, const struct_file_information& info, const CString& format);
