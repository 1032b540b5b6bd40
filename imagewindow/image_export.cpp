#include <filesystem>
#include <system_error>

#include "imagewindow/export_rules.h"
#include "imagewindow/image_window.h"
#include "library/resource_ids.h"
#include "platform/base/kernel.h"
#include "platform/framework/message_box.h"
#include "platform/framework/object_hold.h"
#include "viewing/page_source.h"

namespace {

namespace fs = std::filesystem;

/// A page in memory for as long as it is written.
class ExportedPage {
 public:
  ExportedPage() { LEADTOOLS::InitBitmap(&m_bitmap, 0, 0, 1); }
  ~ExportedPage() { LEADTOOLS::FreeBitmap(&m_bitmap); }
  ExportedPage(const ExportedPage&) = delete;
  ExportedPage& operator=(const ExportedPage&) = delete;
  struct_LEAD_Bitmap* Get() { return &m_bitmap; }

 private:
  struct_LEAD_Bitmap m_bitmap{};
};

/// Where the pages go. A target that is the source itself, under whatever name, is written beside it and put
/// in its place at the end, since it is read until then.
class ExportTarget {
 public:
  ExportTarget(const CString& source, const CString& target) : m_target(target), m_written(target) {
    std::error_code error;
    m_isSource = source.IsEmpty() == FALSE &&
                 fs::equivalent(static_cast<const char*>(source), static_cast<const char*>(target), error);
    if (m_isSource) m_written += ".export";
  }
  ~ExportTarget() {
    std::error_code error;
    if (m_isSource) fs::remove(static_cast<const char*>(m_written), error);
  }
  ExportTarget(const ExportTarget&) = delete;
  ExportTarget& operator=(const ExportTarget&) = delete;

  const CString& Path() const { return m_written; }
  /// False if the finished file can't take the source's place.
  bool Finish() const {
    std::error_code error;
    if (m_isSource)
      fs::rename(static_cast<const char*>(m_written), static_cast<const char*>(m_target), error);
    return !error;
  }

 private:
  CString m_target;
  CString m_written;
  bool m_isSource = false;
};

void ExportAllPages(const PageSource& source, const CString& target, int pages) {
  for (int page = 1; page <= pages; ++page) {
    ExportedPage bitmap;
    _LOADFILEOPTION load{};
    _SAVEFILEOPTION save{};
    LEADTOOLS::GetDefaultLoadFileOption(&load);
    LEADTOOLS::GetDefaultSaveFileOption(&save);
    load.PageNumber = save.PageNumber = page;
    struct_file_information info{};
    source.Describe(&info, &load);
    source.Load(bitmap.Get(), info.BitsPerPixel, 1, &load);
    const exporting::Format format = exporting::TifFormatOf(info.BitsPerPixel);
    LEADTOOLS::SaveBitmap(target, bitmap.Get(), format.code, format.bits, format.quality, &save);
  }
}

/// options null: the first page.
void ExportOnePage(const PageSource& source, const CString& target, const struct_file_information& first,
                   _LOADFILEOPTION* options, const exporting::Format& format) {
  ExportedPage bitmap;
  source.Load(bitmap.Get(), first.BitsPerPixel, 1, options);
  LEADTOOLS::SaveBitmap(target, bitmap.Get(), format.code, format.bits, format.quality, nullptr);
}

}  // namespace

bool CImageWindow::ExportByCopy(const CString& target) {
  if (CopyFileA(m_strFilePath, target, FALSE) == FALSE) {
    CString text;
    text.LoadString(IDS_ZP_COPY_ERROR);
    m_pfnReportError(0, text);
    return false;
  }
  CString text;
  text.FormatMessage(IDS_ZP_FILE_COPIED, static_cast<const char*>(m_strFilePath),
                     static_cast<const char*>(target));
  AfxMessageBox(text, MB_ICONINFORMATION);
  return true;
}

bool CImageWindow::ExportPages(const CString& target) {
  const PageSource source = PageSource::Of(m_strFilePath, m_pFileBuf, m_nFileBufSize);
  const ExportTarget output(m_strFilePath, target);
  const exporting::Kind kind = exporting::KindOf(target);
  if (kind == exporting::Kind::Tif) {
    ExportAllPages(source, output.Path(), m_nMaxPage);
  } else {
    struct_file_information first{};
    source.Describe(&first, nullptr);
    _LOADFILEOPTION options{};
    const bool choose = m_nMaxPage > 1;
    if (choose) {
      const platform::ObjectHold hold(this);
      if (AfxMessageBox(IDS_ZP_EXPORT_ONE_PAGE, MB_OKCANCEL | MB_ICONEXCLAMATION) != IDOK) return false;
      if (!hold.Exists()) return false;
      LEADTOOLS::GetDefaultLoadFileOption(&options);
      options.PageNumber = m_nCurrPage;
    }
    ExportOnePage(source, output.Path(), first, choose ? &options : nullptr,
                  kind == exporting::Kind::Bmp ? exporting::kBmp : exporting::kJpg);
  }
  if (output.Finish()) return true;
  CString text;
  text.LoadString(IDS_ZP_COPY_ERROR);
  m_pfnReportError(0, text);
  return false;
}

bool CImageWindow::ExportAs(
    CString target) {  // NOLINT(performance-unnecessary-value-param): the interface's shape
  if (m_strFilePath.IsEmpty() == FALSE && exporting::IsPlainCopy(m_strFilePath, target))
    return ExportByCopy(target);
  if (exporting::KindOf(target) == exporting::Kind::Unknown) {
    CString text;
    text.Format("Il file %s non può essere esportato: il formato dev'essere tif, bmp o jpg.",
                static_cast<const char*>(target));
    m_pfnReportError(0, text);
    return false;
  }
  if (m_nMaxPage < 1) {
    m_pfnReportError(0, "Non c'è nessuna pagina da esportare.");
    return false;
  }
  try {
    if (!ExportPages(target)) return false;
  } catch (CLeadtoolsException* exception) {
    Report(exception);
    return false;
  }
  AfxMessageBox(IDS_ZP_EXPORT_DONE, MB_ICONINFORMATION);
  return true;
}
