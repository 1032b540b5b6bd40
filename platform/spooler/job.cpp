#include "platform/spooler/detail/job.h"

#include <algorithm>

#include "platform/graphics/gdi_constants.h"
#include "platform/spooler/detail/job_following.h"

namespace platform {

Job::Job(const std::string& title, const std::string& output, int& error)
    : m_title(title), m_toFile(!output.empty()) {
  error = m_toFile ? m_file.OpenFor(output) : m_file.Open();
  if (error != 0) return;
  m_pdf = std::make_unique<PdfWriter>(m_file, title);
  error = m_file.Flush();
}

void Job::StartPage(const Sheet& sheet) {
  m_sheet = sheet;
  m_caps = CapsOf(sheet);
  const auto [width, height] = PointsOf(sheet);
  m_height = height;
  if (m_pdf->Pages() == 0) m_firstPaper = sheet.paper;
  m_pdf->BeginPage(width, height);
  m_pageOpen = true;
}

int Job::EndPage() {
  m_pdf->EndPage();
  m_pageOpen = false;
  return m_file.Flush();
}

/// Dots from the printable area's corner downwards to points from the sheet's lower left corner.
PdfRect Job::PointsOnPage(const PdfRect& dots) const {
  const double x = 72.0 / m_sheet.dpiX;
  const double y = 72.0 / m_sheet.dpiY;
  return {(dots.x + m_caps.at(PHYSICALOFFSETX)) * x,
          m_height - (dots.y + dots.height + m_caps.at(PHYSICALOFFSETY)) * y, dots.width * x,
          dots.height * y};
}

void Job::Draw(const PrinterImage& image, const RECT& part, const PdfRect& place, const RECT& clip) {
  const double left = std::min(place.x, place.x + place.width);
  const double right = std::max(place.x, place.x + place.width);
  const double top = std::min(place.y, place.y + place.height);
  const double bottom = std::max(place.y, place.y + place.height);
  const bool inside = left >= clip.left && right <= clip.right && top >= clip.top && bottom <= clip.bottom;
  const PdfRect clipPoints = PointsOnPage({static_cast<double>(clip.left), static_cast<double>(clip.top),
                                           static_cast<double>(clip.right) - clip.left,
                                           static_cast<double>(clip.bottom) - clip.top});
  m_pdf->AddImage(image, part, PointsOnPage(place), inside ? nullptr : &clipPoints);
}

int Job::Finish(const std::string& queue, const std::function<bool()>& goOn) {
  if (m_pdf->Pages() == 0) return 1;
  m_pdf->Finish();
  if (const int error = m_file.Flush(); error != 0) return error;
  if (m_toFile) {
    if (!goOn()) return SP_APPABORT;
    const int error = m_file.Commit();
    return error == 0 ? 1 : error;
  }
  const int sent = CurrentPrintService().Send(queue, {m_file, m_title, m_firstPaper, goOn});
  FollowJob(queue, sent);
  return sent;
}

}  // namespace platform
