#pragma once

#include "library/failure.h"
#include "viewing/detail/page_window_input.h"
#include "viewing/detail/page_window_scale.h"
#include "viewing/detail/page_window_scroll.h"
#include "viewing/page_paint.h"

// Creation, painting and the message map of a window that shows a page. For the sources of the two windows.

template <typename Base>
CPageWindow<Base>::CPageWindow() = default;

template <typename Base>
CPageWindow<Base>::~CPageWindow() = default;

template <typename Base>
BOOL CPageWindow<Base>::PreCreateWindow(CREATESTRUCT& cs) {
  if (Base::PreCreateWindow(cs) == FALSE) return FALSE;
  cs.lpszClass = window_parts::WindowClass();
  return TRUE;
}

template <typename Base>
LRESULT CPageWindow<Base>::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  try {
    return Base::WindowProc(message, wParam, lParam);
  } catch (const std::exception& exception) {
    Self().Report(FailureOf(exception));
    return message == WM_CREATE ? -1 : 0;
  }
}

template <typename Base>
int CPageWindow<Base>::OnCreate(LPCREATESTRUCT cs) {
  if (Base::OnCreate(cs) == -1) return -1;
  scroll_bars::Add(*this);
  return 0;
}

template <typename Base>
bool CPageWindow<Base>::PaintShown(HDC dc, RECT* clip) {
  const struct_LEAD_Bitmap* const page = Self().ShownPage();
  if (page == nullptr) return false;
  const bool reduced = IsReduced() && ShowsReducedCopy(dc, Self().m_SmartBitmap);
  try {
    PaintPage(dc, reduced ? Self().m_SmartBitmap : *page, Self().m_ptScroll, Self().m_szScaled, clip);
  } catch (CLeadtoolsException* exception) {
    Self().Report(exception);
    return false;
  } catch (const std::exception& exception) {
    Self().Report(FailureOf(exception));
    return false;
  }
  return true;
}

BEGIN_TEMPLATE_MESSAGE_MAP(CPageWindow, Base, Base)
ON_WM_CREATE()
ON_WM_SIZE()
ON_WM_HSCROLL()
ON_WM_VSCROLL()
ON_WM_SETCURSOR()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_MOUSEMOVE()
ON_WM_CAPTURECHANGED()
ON_WM_MOUSEWHEEL()
ON_WM_MOUSEHWHEEL()
ON_WM_KEYDOWN()
ON_WM_KEYUP()
ON_WM_CONTEXTMENU()
END_MESSAGE_MAP()
