#include "imagewindow/detail/export_room.h"
#include "imagewindow/export_rules.h"
#include "imagewindow/image_window.h"
#include "library/failure.h"
#include "library/resource_ids.h"
#include "platform/base/kernel.h"
#include "platform/base/translation.h"
#include "platform/framework/message_box.h"
#include "platform/framework/object_hold.h"
#include "viewing/long_command.h"
#include "viewing/page_source.h"

namespace {

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

/// Whatever fails, a target that was there stays; it may be the source itself, which is read until the end.
void ExportAllPages(const PageSource& source, const CString& target, int pages, LongCommand& command) {
  leadtools12::NewFile file(target);
  for (int page = 1; page <= pages; ++page) {
    if (!command.Reach(page, pages)) imaging::Fail(imaging::kErrorUserAbort, "Ended by the user");
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
  file.Complete();
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
  const platform::ObjectHold hold(this);
  if (!exporting::HasRoom(target, exporting::SizeOfFile(m_strFilePath), m_pfnReportError) || !hold.Exists())
    return false;
  const CString source = m_strFilePath;
  const ReportErrorFunction report = m_pfnReportError;
  BOOL copied = FALSE;
  bool stopped = false;
  {
    const LongCommand command(this, IDS_ZP_EXPORTING_PAGE);
    platform::RunAside([&] { copied = CopyFileA(source, target, FALSE); });
    stopped = command.IsStopped();
  }
  CString text;
  if (copied == FALSE) {
    text.LoadString(IDS_ZP_COPY_ERROR);
    if (!stopped) report(0, text);
    return false;
  }
  text.FormatMessage(IDS_ZP_FILE_COPIED, static_cast<const char*>(source), static_cast<const char*>(target));
  AfxMessageBox(text, MB_ICONINFORMATION);
  return true;
}

bool CImageWindow::ExportPages(const CString& target) {
  const platform::ObjectHold hold(this);
  const PageSource source = PageSource::Of(m_strFilePath, m_pFileBuf, m_nFileBufSize);
  const exporting::Kind kind = exporting::KindOf(target);
  if (kind == exporting::Kind::Tif) {
    const int pages = m_nMaxPage;
    const ReportErrorFunction report = m_pfnReportError;
    LongCommand command(this, IDS_ZP_EXPORTING_PAGE);
    const exporting::Size size = exporting::SizeOfTif(source, pages, target);
    if (!exporting::HasRoom(target, size, report) || !hold.Exists()) return false;
    ExportAllPages(source, target, pages, command);
  } else {
    struct_file_information first{};
    source.Describe(&first, nullptr);
    _LOADFILEOPTION options{};
    const bool choose = m_nMaxPage > 1;
    if (choose) {
      if (AfxMessageBox(IDS_ZP_EXPORT_ONE_PAGE, MB_OKCANCEL | MB_ICONEXCLAMATION) != IDOK) return false;
      if (!hold.Exists()) return false;
      LEADTOOLS::GetDefaultLoadFileOption(&options);
      options.PageNumber = m_nCurrPage;
    }
    const exporting::Format& format = kind == exporting::Kind::Bmp ? exporting::kBmp : exporting::kJpg;
    struct_file_information page{};
    source.Describe(&page, choose ? &options : nullptr);
    const exporting::Size size = exporting::SizeOf(page, format);
    if (!exporting::HasRoom(target, size, m_pfnReportError) || !hold.Exists()) return false;
    const LongCommand command(this, IDS_ZP_EXPORTING_PAGE);
    ExportOnePage(source, target, first, choose ? &options : nullptr, format);
  }
  return true;
}

bool CImageWindow::ExportAs(
    CString target) {  // NOLINT(performance-unnecessary-value-param): the interface's shape
  if (m_strFilePath.IsEmpty() == FALSE && exporting::IsPlainCopy(m_strFilePath, target))
    return ExportByCopy(target);
  if (exporting::KindOf(target) == exporting::Kind::Unknown) {
    CString text;
    text.Format(
        platform::Localized("Il file %s non può essere esportato: il formato dev'essere tif, bmp o jpg."),
        static_cast<const char*>(target));
    m_pfnReportError(0, text);
    return false;
  }
  if (m_nMaxPage < 1) {
    m_pfnReportError(0, platform::Localized("Non c'è nessuna pagina da esportare."));
    return false;
  }
  const ReportErrorFunction report = m_pfnReportError;  // the window may go meanwhile
  try {
    if (!ExportPages(target)) return false;
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception, report);
    return false;
  }
  AfxMessageBox(IDS_ZP_EXPORT_DONE, MB_ICONINFORMATION);
  return true;
}
