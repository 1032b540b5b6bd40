#pragma once

#include <cmath>

#include "platform/framework/object_hold.h"
#include "viewing/page_window.h"
#include "viewing/viewport.h"
#include "viewing/zoom_steps.h"

// Scale, zoom steps and fits of a window that shows a page.

template <typename Base>
void CPageWindow<Base>::FreeSmartBitmap() {
  if ((Self().m_SmartBitmap.Flags & leadtools12::kAllocated) != 0)
    LEADTOOLS::FreeBitmap(&Self().m_SmartBitmap);
}

template <typename Base>
CSize CPageWindow<Base>::PageSize() const {
  const struct_LEAD_Bitmap* const page = Self().ShownPage();
  return page != nullptr ? CSize(page->Width, page->Height) : CSize();
}

template <typename Base>
bool CPageWindow<Base>::IsReduced() const {
  return Self().ShownPage() != nullptr && zoom::IsReduced(Self().m_nZoomDivisor, Self().IsBilevel());
}

template <typename Base>
int CPageWindow<Base>::RoundDouble(double value) {
  return zoom::RoundHalfDown(value);
}

template <typename Base>
int CPageWindow<Base>::GetWidthBytes(int bits) {
  return static_cast<int>((std::int64_t{bits} + 31) / 32 * 4);
}

template <typename Base>
int CPageWindow<Base>::GetScalePercent() const {
  return zoom::Percent(Self().m_dScaleFactor);
}

template <typename Base>
void CPageWindow<Base>::CalcScaleFactor() {
  Self().m_dScaleFactor = zoom::FactorOfDivisor(Self().m_nZoomDivisor);
}

// Zoom by number

template <typename Base>
void CPageWindow<Base>::EndRunningFit() {
  if constexpr (Traits::kFitRuns) Self().m_nFitMode = FitModeNone;
}

template <typename Base>
bool CPageWindow<Base>::ScaleTo(double factor) {
  EndRunningFit();
  if (!zoom::IsLegalFactor(factor)) return false;
  if (Self().ShownPage() != nullptr) factor = zoom::KeepSmallestSide(factor, PageSize());
  const double before = Self().m_dScaleFactor;
  const int divisor = zoom::DivisorOfFactor(factor);
  // Painting stretches a copy that stays to the exact factor.
  const bool renews = Traits::kRenewsCopy || divisor != Self().m_nZoomDivisor;
  Self().m_dScaleFactor = factor;
  Self().m_nZoomDivisor = divisor;
  if (!Self().IsAtPage()) return true;    // the factor waits for the first page
  const platform::ObjectHold hold(this);  // a failure is told
  if (renews && IsReduced()) Self().DoSmartResizing();
  if (hold.Exists()) ShowScale(before, CPoint(0, 0));
  return true;
}

template <typename Base>
double CPageWindow<Base>::MultiplyScale(double multiplier) {
  if (!std::isfinite(multiplier)) return 1.0;  // refused: nothing is scaled
  const zoom::Multiplied scale = zoom::MultiplyFactor(Self().m_dScaleFactor, multiplier);
  Self().ZoomToScaleFactor(scale.factor);
  return scale.multiplier;
}

template <typename Base>
void CPageWindow<Base>::ShowScale(double before, CPoint corner) {
  // Of the old scale: a bar that goes enlarges the client area, and the position would be held within the
  // limits of the new one before it is converted.
  const CPoint position = Self().m_ptScroll;
  UpdateScroll();
  if constexpr (Traits::kKeepsMiddle)
    SetScrollPos(viewport::KeepingCentre(position, Self().m_szClient, Self().m_dScaleFactor / before), TRUE);
  else
    SetScrollPos(corner, TRUE);
}

// Zoom by step

template <typename Base>
auto CPageWindow<Base>::ZoomInPossible() const -> Answer {
  return static_cast<Answer>(Self().IsAtPage() && zoom::CanStepIn(Self().m_nZoomDivisor));
}

template <typename Base>
auto CPageWindow<Base>::ZoomOutPossible() const -> Answer {
  if (!Self().IsAtPage()) return static_cast<Answer>(false);
  return static_cast<Answer>(Traits::kStepLeavesSide ? zoom::CanStepOut(Self().m_nZoomDivisor, PageSize())
                                                     : zoom::CanStepOut(Self().m_nZoomDivisor));
}

template <typename Base>
void CPageWindow<Base>::StepTo(int divisor, CPoint corner) {
  const double before = Self().m_dScaleFactor;
  Self().m_nZoomDivisor = divisor;
  CalcScaleFactor();
  const platform::ObjectHold hold(this);
  if (IsReduced()) Self().DoSmartResizing();
  if (hold.Exists()) ShowScale(before, corner);
}

// The corner's position doubles or halves for every step, whatever the true ratio of the two scales is.

template <typename Base>
void CPageWindow<Base>::ZoomIn() {
  EndRunningFit();
  if (!ZoomInPossible()) return;
  StepTo(zoom::NextDivisorIn(Self().m_nZoomDivisor),
         CPoint(Self().m_ptScroll.x * 2, Self().m_ptScroll.y * 2));
}

template <typename Base>
void CPageWindow<Base>::ZoomOut() {
  EndRunningFit();
  if (!ZoomOutPossible()) return;
  StepTo(zoom::NextDivisorOut(Self().m_nZoomDivisor),
         CPoint(Self().m_ptScroll.x / 2, Self().m_ptScroll.y / 2));
}

// Fits

template <typename Base>
void CPageWindow<Base>::ZoomToFit(double factor) {
  if constexpr (Traits::kFitRuns) {
    if (!zoom::IsLegalFactor(factor)) return;
    const int mode = Self().m_nFitMode;
    Self().ZoomToScaleFactor(factor);
    Self().m_nFitMode = mode;
  } else {
    Self().ZoomToScaleFactor(factor);
  }
}

template <typename Base>
void CPageWindow<Base>::FitSide(fit::Side side) {
  const fit::Situation at{Self().m_szClient, Self().m_szScaled, PageSize()};
  ZoomToFit(side == fit::Side::Width ? fit::ToWidth(at, GetSystemMetrics(SM_CXVSCROLL))
                                     : fit::ToHeight(at, GetSystemMetrics(SM_CYHSCROLL)));
}

template <typename Base>
void CPageWindow<Base>::FitBestSide() {
  if (fit::Best({Self().m_szClient, Self().m_szScaled, PageSize()}) == fit::Side::Height)
    Self().FitToHeight();
  else
    Self().FitToWidth();
}

template <typename Base>
void CPageWindow<Base>::SetFitMode(int mode) {
  if (mode == Self().m_nFitMode) return;
  Self().m_nFitMode = mode;
  ZoomToFitMode();
}

template <typename Base>
void CPageWindow<Base>::ZoomToFitMode() {
  switch (Self().m_nFitMode) {
    case FitModeWidth:
      Self().FitToWidth();
      break;
    case FitModeHeight:
      Self().FitToHeight();
      break;
    case FitModeBest:
      Self().BestFit();
      break;
    default:
      break;
  }
}
