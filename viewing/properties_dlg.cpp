#include "viewing/properties_dlg.h"

#include <string>

#include "library/resource_ids.h"
#include "platform/framework/ddx.h"

namespace {

constexpr double kCentimetresPerInch = 2.54;

CString Number(int value) {
  CString text;
  text.Format("%i", value);
  return text;
}

CString NotAvailable() {
  CString text;
  text.LoadString(IDS_ZP_NOT_AVAILABLE);
  return text;
}

CString OrNotAvailable(const CString& text) {
  return text.IsEmpty() != FALSE ? NotAvailable() : text;
}

/// The record's text, which fills its array when it is long.
CString CompressionOf(const struct_file_information& info) {
  const std::string_view whole(info.Compression, sizeof info.Compression);
  return std::string(whole.substr(0, whole.find('\0'))).c_str();
}

CString SizeOnPaper(const struct_file_information& info) {
  const double width = static_cast<double>(info.Width) / info.XResolution;
  const double height = static_cast<double>(info.Height) / info.YResolution;
  CString text;
  text.Format("%.2f x %.2f inch = %.2f x %.2f cm", width, height, width * kCentimetresPerInch,
              height * kCentimetresPerInch);
  return text;
}

}  // namespace

BEGIN_MESSAGE_MAP(CImagePropertiesDlg, CDialog)
END_MESSAGE_MAP()

CImagePropertiesDlg::CImagePropertiesDlg(CWnd* parent) : CDialog(IDD_ZP_PROPERTIES, parent) {}

void CImagePropertiesDlg::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Text(exchange, IDC_ZP_PAGE_REAL_SIZE, m_strRealSize);
  DDX_Text(exchange, IDC_ZP_PAGE_BITS, m_strBitsPerPixel);
  DDX_Text(exchange, IDC_ZP_PAGE_COMPRESSION, m_strCompression);
  DDX_Text(exchange, IDC_ZP_FILE_NAME, m_strFileName);
  DDX_Text(exchange, IDC_ZP_FILE_SIZE, m_strFileSize);
  DDX_Text(exchange, IDC_ZP_FILE_FORMAT, m_strFormat);
  DDX_Text(exchange, IDC_ZP_FILE_PATH, m_strFolder);
  DDX_Text(exchange, IDC_ZP_PAGE_NUMBER, m_strPageNumber);
  DDX_Text(exchange, IDC_ZP_PAGE_RESOLUTION, m_strResolution);
  DDX_Text(exchange, IDC_ZP_PAGE_PIXELS, m_strPixelSize);
  DDX_Text(exchange, IDC_ZP_FILE_PAGES, m_strPageCount);
}

void FillProperties(CImagePropertiesDlg* dialog, const struct_file_information& info, const CString& format) {
  dialog->m_strFileSize = Number(info.SizeDisk) + " bytes";
  dialog->m_strPageCount = Number(info.TotalPages);
  dialog->m_strFormat = OrNotAvailable(format);
  dialog->m_strCompression = OrNotAvailable(CompressionOf(info));
  dialog->m_strBitsPerPixel = Number(info.BitsPerPixel);
  dialog->m_strPixelSize = Number(info.Width) + " x " + Number(info.Height);
  if (info.XResolution == 0 || info.YResolution == 0) {
    dialog->m_strResolution = NotAvailable();
    dialog->m_strRealSize = NotAvailable();
  } else {
    dialog->m_strResolution = Number(info.XResolution) + " x " + Number(info.YResolution) + " dpi";
    dialog->m_strRealSize = SizeOnPaper(info);
  }
}
