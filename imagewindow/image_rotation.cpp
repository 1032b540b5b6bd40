#include "imagewindow/image_window.h"

namespace {

constexpr int kHundredths = 100;  // of a degree, the imaging service's unit
constexpr unsigned kRotateFlags = 5;
constexpr int kFullTurn = 360;

}  // namespace

bool CImageWindow::Rotate(int degrees, bool store) {
  StopPrintingPage();
  try {
    LEADTOOLS::RotateBitmap(&m_Bitmap, degrees % kFullTurn * kHundredths, kRotateFlags, 0);
    // The reduced copy is turned, not made anew.
    if (IsReduced() && (m_SmartBitmap.Flags & leadtools12::kAllocated) != 0)
      LEADTOOLS::RotateBitmap(&m_SmartBitmap, degrees % kFullTurn * kHundredths, kRotateFlags, 0);
  } catch (CLeadtoolsException* exception) {
    Report(exception);
    return false;
  }
  UpdateScroll();
  SetScrollPos(CPoint(0, 0), TRUE);
  if (store) m_nRotation = (m_nRotation + degrees % kFullTurn) % kFullTurn;
  return true;
}
