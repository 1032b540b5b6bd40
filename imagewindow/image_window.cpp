#include "imagewindow/image_window.h"

#include "imagewindow/frame_link.h"
#include "library/failure.h"
#include "platform/base/path.h"
#include "viewing/detail/page_window_map.h"
#include "viewing/saved_scale.h"

template class CPageWindow<CWnd>;

IMPLEMENT_DYNCREATE(CImageWindow, CWnd)

BEGIN_MESSAGE_MAP(CImageWindow, CPageWindow<CWnd>)
ON_WM_CREATE()
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_DROPFILES()
END_MESSAGE_MAP()

namespace {

std::array<RGBQUAD, 256> LinearGray() {
  std::array<RGBQUAD, 256> palette{};
  for (std::size_t i = 0; i < palette.size(); ++i) {
    const auto level = static_cast<BYTE>(i);
    palette[i] = {level, level, level, 0};
  }
  return palette;
}

}  // namespace

CImageWindow::CImageWindow() : m_dScaleFactor(saved_scale::Factor()), m_GrayPalette(LinearGray()) {
  // The settings are taken as they are; the first page load replaces a scale that isn't legal.
  try {
    LEADTOOLS::InitBitmap(&m_Bitmap, 0, 0, 1);
    LEADTOOLS::InitBitmap(&m_SmartBitmap, 0, 0, 1);
  } catch (CLeadtoolsException* exception) {
    Report(exception);
  }
}

CImageWindow::~CImageWindow() {
  StopPrinting();
  FreeBitmaps();
}

void CImageWindow::Report(CLeadtoolsException* exception) {
  ReportFailure(exception, m_pfnReportError);
}

void CImageWindow::ReportErrorDefault(int code, CString text) {  // NOLINT: the callback's type
  ShowErrorBox(code, text);
}

void CImageWindow::SetReportErrorCallBack(ReportErrorFunction function) {
  m_pfnReportError = function != nullptr ? function : &CImageWindow::ReportErrorDefault;
}

CString CImageWindow::GetFileName() const {
  return platform::SplitPath(static_cast<const char*>(m_strFilePath)).name.c_str();
}

void CImageWindow::GetFileBuf(char** block, int* size) const {
  *block = m_pFileBuf;
  *size = m_nFileBufSize;
}

BOOL CImageWindow::PreCreateWindow(CREATESTRUCT& cs) {
  if (CPageWindow::PreCreateWindow(cs) == FALSE) return FALSE;
  cs.dwExStyle |= WS_EX_CLIENTEDGE;
  cs.style &= ~static_cast<DWORD>(WS_BORDER);
  return TRUE;
}

int CImageWindow::OnCreate(LPCREATESTRUCT cs) {
  if (CPageWindow::OnCreate(cs) == -1) return -1;
  SetClassLong(m_hWnd, GCL_HCURSOR, 0);  // the window alone decides on its cursor
  DragAcceptFiles(TRUE);
  return 0;
}

// Mouse modes

void CImageWindow::SetMouseMode(int mode) {
  // A selection goes before any mode, and goes on.
  if (mode != m_nMouseMode && !m_bZoomSelect) BreakOff();
  m_nMouseMode = mode;
  ShowModeCursor(ClickZoomsIn(), true);  // the limit isn't looked at before the pointer moves again
}

CRect CImageWindow::GetStartEndRect(CPoint start, CPoint end) {
  return mouse::SelectionRect(start, end);
}

// The frame

CImageWindowFrame* CImageWindow::Frame() const {
  CWnd* parent = GetParent();
  // The window may sit in the pane of a splitter.
  if (parent != nullptr && parent->IsKindOf(RUNTIME_CLASS(CFrameWnd)) == FALSE) parent = parent->GetParent();
  return dynamic_cast<CImageWindowFrame*>(parent);
}

void CImageWindow::UpdateZoomStatus() {
  CImageWindowFrame* frame = Frame();
  if (frame != nullptr) frame->UpdateZoomStatus();
}
