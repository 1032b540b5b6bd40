#include "docview/document_frame.h"
#include "docview/zp_view.h"
#include "platform/framework/frame_wnd.h"
#include "viewing/fit.h"
#include "viewing/zoom_steps.h"

// Scale, zoom steps and fits. Unlike the image window's, a fit goes on running, and a zoom keeps the middle
// of the window where it is.

int CZPView::RoundDouble(double value) {
  return zoom::RoundHalfDown(value);
}

int CZPView::GetScalePercent() const {
  return zoom::Percent(m_dScaleFactor);
}

void CZPView::CalcScaleFactor() {
  m_dScaleFactor = zoom::FactorOfDivisor(m_nZoomDivisor);
}

void CZPView::UpdateZoomStatus() {
  auto* const frame = dynamic_cast<CZPDocumentFrame*>(GetParentFrame());
  if (frame != nullptr) frame->UpdateZoomStatus();
}

// Zoom by number and step

int CZPView::ZoomToScaleFactor(double factor) {
  SetFitMode(FitModeNone);
  if (!zoom::IsLegalFactor(factor)) return 0;
  if (m_pBitmap != nullptr) factor = zoom::KeepSmallestSide(factor, PageSize());
  const double oldFactor = m_dScaleFactor;
  m_dScaleFactor = factor;
  m_nZoomDivisor = zoom::DivisorOfFactor(factor);
  if (m_pBitmap != nullptr) ShowScale(oldFactor);  // else the factor waits for the first page
  return 1;
}

double CZPView::MultiplyScale(double multiplier) {
  const zoom::Multiplied scale = zoom::MultiplyFactor(m_dScaleFactor, multiplier);
  ZoomToScaleFactor(scale.factor);
  return scale.multiplier;
}

int CZPView::ZoomInPossible() const {
  return m_pBitmap != nullptr && zoom::CanStepIn(m_nZoomDivisor) ? 1 : 0;
}

int CZPView::ZoomOutPossible() const {
  return m_pBitmap != nullptr && view::CanStepOut(m_nZoomDivisor, PageSize()) ? 1 : 0;
}

void CZPView::ZoomIn() {
  SetFitMode(FitModeNone);
  if (ZoomInPossible() != 0) StepTo(zoom::NextDivisorIn(m_nZoomDivisor));
}

void CZPView::ZoomOut() {
  SetFitMode(FitModeNone);
  if (ZoomOutPossible() != 0) StepTo(zoom::NextDivisorOut(m_nZoomDivisor));
}

void CZPView::StepTo(int divisor) {
  m_nZoomDivisor = divisor;
  const double oldFactor = m_dScaleFactor;
  CalcScaleFactor();
  ShowScale(oldFactor);
}

void CZPView::ShowScale(double oldFactor) {
  if (IsReduced()) DoSmartResizing();
  // A bar that goes enlarges the client area, and the position of the old scale would be held within the
  // limits of the new one before it is converted.
  const CPoint position = m_ptScroll;
  UpdateScroll();
  m_ptScroll = position;
  SetZoomedScrollPos(oldFactor);
}

// Fits

void CZPView::ZoomKeepingFit(double factor) {
  if (!zoom::IsLegalFactor(factor)) return;
  const int mode = m_nFitMode;
  ZoomToScaleFactor(factor);
  m_nFitMode = mode;
}

void CZPView::ZoomFitToWidth() {
  ZoomKeepingFit(fit::ToWidth({m_szClient, m_szScaled, PageSize()}, GetSystemMetrics(SM_CXVSCROLL)));
}

void CZPView::ZoomFitToHeight() {
  ZoomKeepingFit(fit::ToHeight({m_szClient, m_szScaled, PageSize()}, GetSystemMetrics(SM_CYHSCROLL)));
}

void CZPView::ZoomBestFit() {
  if (fit::Best({m_szClient, m_szScaled, PageSize()}) == fit::Side::Height)
    ZoomFitToHeight();
  else
    ZoomFitToWidth();
}

void CZPView::SetFitMode(int mode) {
  if (mode == m_nFitMode) return;
  m_nFitMode = mode;
  ZoomToFitMode();
}

void CZPView::ZoomToFitMode() {
  switch (m_nFitMode) {
    case FitModeWidth:
      ZoomFitToWidth();
      break;
    case FitModeHeight:
      ZoomFitToHeight();
      break;
    case FitModeBest:
      ZoomBestFit();
      break;
    default:
      break;
  }
}
