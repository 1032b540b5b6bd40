#include <cmath>

#include "imagewindow/image_window.h"
#include "viewing/fit.h"
#include "viewing/zoom_steps.h"

CSize CImageWindow::PageSize() const {
  return HasPage() ? CSize(m_Bitmap.Width, m_Bitmap.Height) : CSize();
}

int CImageWindow::RoundDouble(double value) {
  return zoom::RoundHalfDown(value);
}

int CImageWindow::GetScalePercent() const {
  return zoom::Percent(m_dScaleFactor);
}

void CImageWindow::CalcScaleFactor() {
  m_dScaleFactor = zoom::FactorOfDivisor(m_nZoomDivisor);
}

bool CImageWindow::ZoomToScaleFactor(double factor) {
  if (!zoom::IsLegalFactor(factor)) return false;
  if (HasPage()) factor = zoom::KeepSmallestSide(factor, PageSize());
  m_dScaleFactor = factor;
  const int divisor = zoom::DivisorOfFactor(factor);
  const bool changed = divisor != m_nZoomDivisor;
  m_nZoomDivisor = divisor;
  if (m_nCurrPage < 1) return true;  // the factor waits for the first page
  // An unchanged divisor keeps the reduced copy: painting stretches it to the exact factor.
  if (changed && NeedsSmartBitmap()) DoSmartResizing();
  UpdateScroll();
  SetScrollPos(CPoint(0, 0), TRUE);
  return true;
}

double CImageWindow::MultiplyScaleFactor(double multiplier) {
  if (!std::isfinite(multiplier)) return 1.0;  // refused: nothing is scaled
  const zoom::Multiplied scale = zoom::MultiplyFactor(m_dScaleFactor, multiplier);
  ZoomToScaleFactor(scale.factor);
  return scale.multiplier;
}

bool CImageWindow::ZoomInPossible() const {
  return m_nCurrPage >= 1 && zoom::CanStepIn(m_nZoomDivisor);
}

bool CImageWindow::ZoomOutPossible() const {
  return m_nCurrPage >= 1 && zoom::CanStepOut(m_nZoomDivisor);
}

void CImageWindow::StepTo(int divisor, CPoint position) {
  m_nZoomDivisor = divisor;
  CalcScaleFactor();
  if (NeedsSmartBitmap()) DoSmartResizing();
  UpdateScroll();
  SetScrollPos(position, TRUE);
}

// The position doubles or halves for every step, whatever the true ratio of the two scales is.

void CImageWindow::ZoomIn() {
  if (!ZoomInPossible()) return;
  StepTo(zoom::NextDivisorIn(m_nZoomDivisor), CPoint(m_ptScroll.x * 2, m_ptScroll.y * 2));
}

void CImageWindow::ZoomOut() {
  if (!ZoomOutPossible()) return;
  StepTo(zoom::NextDivisorOut(m_nZoomDivisor), CPoint(m_ptScroll.x / 2, m_ptScroll.y / 2));
}

void CImageWindow::FitToWidth() {
  ZoomToScaleFactor(fit::ToWidth({m_szClient, m_szScaled, PageSize()}, GetSystemMetrics(SM_CXVSCROLL)));
}

void CImageWindow::FitToHeight() {
  ZoomToScaleFactor(fit::ToHeight({m_szClient, m_szScaled, PageSize()}, GetSystemMetrics(SM_CYHSCROLL)));
}

void CImageWindow::BestFit() {
  if (fit::Best({m_szClient, m_szScaled, PageSize()}) == fit::Side::Height)
    FitToHeight();
  else
    FitToWidth();
}

void CImageWindow::SetFitMode(int mode) {
  if (mode == m_nFitMode) return;
  m_nFitMode = mode;
  ZoomToFitMode();
}

void CImageWindow::ZoomToFitMode() {
  switch (m_nFitMode) {
    case FitModeWidth:
      FitToWidth();
      break;
    case FitModeHeight:
      FitToHeight();
      break;
    case FitModeBest:
      BestFit();
      break;
    default:
      break;
  }
}
