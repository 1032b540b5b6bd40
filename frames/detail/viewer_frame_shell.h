#pragma once

#include <cstring>

#include "frames/viewer_frame.h"
#include "library/resource_ids.h"
#include "platform/framework/menu.h"
#include "platform/resources/resources.h"

// The viewer frame's windows: how they are made, laid out and emptied. For the sources of the two frames.

namespace viewer_shell {

inline constexpr UINT kButtons[] = {ID_FILE_PRINT,
                                    0,
                                    ID_ZP_DRAG_MODE,
                                    ID_ZP_ZOOM_IN_MODE,
                                    ID_ZP_ZOOM_OUT_MODE,
                                    0,
                                    ID_ZP_PREV_PAGE,
                                    0,  // becomes the page combo
                                    ID_ZP_NEXT_PAGE,
                                    0,
                                    ID_ZP_ZOOM_OUT,
                                    ID_ZP_ZOOM_IN,
                                    0,  // becomes the scale combo
                                    ID_ZP_ZOOM_SELECTED,
                                    0,
                                    ID_ZP_ZOOM_BEST_FIT,
                                    ID_ZP_ZOOM_FIT_TO_WIDTH,
                                    ID_ZP_ZOOM_FIT_TO_HEIGHT,
                                    0,
                                    ID_ZP_ROTATE_LEFT,
                                    ID_ZP_ROTATE_RIGHT,
                                    ID_ZP_ROTATE_180,
                                    0,
                                    ID_ZP_VIEW_THUMBNAILS};
inline constexpr int kPageSlot = 7;
inline constexpr int kScaleSlot = 12;
inline constexpr int kPageComboWidth = 40;
inline constexpr int kScaleComboWidth = 50;
inline constexpr int kComboTop = 2;
inline constexpr int kComboBottom = 102;  // with its list dropped
inline constexpr int kPageCharacters = 3;
inline constexpr int kScaleCharacters = 4;
inline constexpr DWORD kComboStyle = WS_VISIBLE | WS_BORDER | WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWN;
inline constexpr DWORD kToolBarStyle = WS_CHILD | WS_VISIBLE | CBRS_GRIPPER | CBRS_ALIGN_TOP |
                                       CBRS_BORDER_BOTTOM | CBRS_FLYBY | CBRS_TOOLTIPS | CBRS_SIZE_DYNAMIC;
inline constexpr DWORD kStatusBarStyle = WS_CHILD | WS_VISIBLE | CBRS_ALIGN_BOTTOM | CBRS_BORDER_TOP;
inline constexpr UINT kPanes[] = {ID_SEPARATOR, ID_ZP_INDICATOR_ZOOM, ID_ZP_INDICATOR_PAGE};
inline constexpr SIZE kButtonSize = {23, 23};
inline constexpr SIZE kPictureSize = {16, 16};
inline constexpr SIZE kPaneSize = {140, 0};
inline constexpr COLORREF kMagenta = RGB(255, 0, 255);
inline constexpr UINT kPicked = 1024;   // of the strip's WM_COMMAND
inline constexpr int kPickedIndex = 2;  // which 32-bit word of its record is the picture's number

inline LOGFONT ComboFont() {
  LOGFONT font{};
  font.lfHeight = -12;
  font.lfWeight = FW_NORMAL;
  font.lfPitchAndFamily = BYTE{VARIABLE_PITCH} | BYTE{FF_SWISS};
  std::strcpy(font.lfFaceName, "MS Sans Serif");
  return font;
}

}  // namespace viewer_shell

template <typename Base>
CViewerFrame<Base>::~CViewerFrame() {
  // Still there if the window ended otherwise than by being closed.
  delete m_pImageWnd;
  delete m_pThumbsWnd;
  DestroyMenu(m_hOwnMenu);
}

template <typename Base>
BOOL CViewerFrame<Base>::PreCreateWindow(CREATESTRUCT& cs) {
  if (Base::PreCreateWindow(cs) == FALSE) return FALSE;
  cs.dwExStyle &= ~static_cast<DWORD>(WS_EX_CLIENTEDGE);
  const LPCSTR icon = MAKEINTRESOURCE(IDR_ZP_VIEWER);
  cs.lpszClass =
      AfxRegisterWndClass(0, nullptr, nullptr, LoadIconA(AfxFindResourceHandle(icon, RT_GROUP_ICON), icon));
  return TRUE;
}

template <typename Base>
int CViewerFrame<Base>::OnCreate(LPCREATESTRUCT cs) {
  if constexpr (Traits::kSharesMenu) {
    const LPCSTR menu = MAKEINTRESOURCE(IDR_ZP_VIEWER);
    m_hOwnMenu = LoadMenuA(AfxFindResourceHandle(menu, RT_MENU), menu);
    this->m_hMenuShared = m_hOwnMenu;
  }
  if (Base::OnCreate(cs) == -1) return -1;
  if (CreateToolBar() == FALSE || CreateStatusBar() == FALSE) return -1;
  m_wndToolBar.EnableDocking(CBRS_ALIGN_ANY);
  this->EnableDocking(CBRS_ALIGN_ANY);
  this->DockControlBar(&m_wndToolBar);
  return 0;
}

template <typename Base>
BOOL CViewerFrame<Base>::CreateToolBar() {
  using namespace viewer_shell;
  if (m_wndToolBar.CreateEx(this, TBSTYLE_FLAT, kToolBarStyle, CRect(0, 0, 0, 0), AFX_IDW_TOOLBAR) == FALSE)
    return FALSE;
  m_wndToolBar.SetSizes(kButtonSize, kPictureSize);
  if (m_wndToolBar.SetButtons(kButtons, static_cast<int>(std::size(kButtons))) == FALSE) return FALSE;
  m_wndToolBar.SetBitmap(IDB_ZP_VIEWER_TOOLBAR, kMagenta);
  if (!CreateCombo(&m_wndComboPage, kPageSlot, ID_ZP_COMBO_PAGE, kPageComboWidth, kComboStyle,
                   kPageCharacters) ||
      !CreateCombo(&m_wndComboScale, kScaleSlot, ID_ZP_COMBO_SCALE, kScaleComboWidth,
                   kComboStyle | CBS_AUTOHSCROLL, kScaleCharacters))
    return FALSE;
  m_wndComboScale.Initialize();
  if (GetSystemMetrics(SM_DBCSENABLED) != 0) {
    m_fontCombos.Attach(GetStockObject(SYSTEM_FONT));
  } else {
    const LOGFONT font = ComboFont();
    if (m_fontCombos.Attach(CreateFontIndirectA(&font)) == FALSE) return TRUE;
  }
  for (CWnd* combo : {static_cast<CWnd*>(&m_wndComboPage), static_cast<CWnd*>(&m_wndComboScale)})
    combo->SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(m_fontCombos.m_hObject), TRUE);
  return TRUE;
}

template <typename Base>
bool CViewerFrame<Base>::CreateCombo(CComboBox* combo, int button, UINT id, int width, DWORD style,
                                     int mostCharacters) {
  m_wndToolBar.SetButtonInfo(button, id, TBBS_SEPARATOR, width);
  CRect place;
  m_wndToolBar.GetItemRect(button, &place);
  place.top = viewer_shell::kComboTop;
  place.bottom = viewer_shell::kComboBottom;
  if (combo->Create(style, place, &m_wndToolBar, id) == FALSE) return false;
  combo->SendMessage(CB_LIMITTEXT, static_cast<WPARAM>(mostCharacters));
  combo->EnableWindow(FALSE);
  return true;
}

template <typename Base>
BOOL CViewerFrame<Base>::CreateStatusBar() {
  using namespace viewer_shell;
  if (m_wndStatusBar.Create(this, kStatusBarStyle, ID_VIEW_STATUS_BAR) == FALSE ||
      m_wndStatusBar.SetIndicators(kPanes, static_cast<int>(std::size(kPanes))) == FALSE)
    return FALSE;
  SetPaneWidth(ID_ZP_INDICATOR_ZOOM, IDS_ZP_ZOOM_RULER);
  SetPaneWidth(ID_ZP_INDICATOR_PAGE, IDS_ZP_PAGE_RULER);
  return TRUE;
}

template <typename Base>
bool CViewerFrame<Base>::SetPaneWidth(UINT pane, UINT rulerText) {
  CString ruler;
  ruler.LoadString(rulerText);
  CClientDC dc(&m_wndStatusBar);
  SIZE size{};
  GetTextExtentPoint32A(dc.m_hDC, ruler, ruler.GetLength(), &size);
  // Disabled: blank until something is open.
  m_wndStatusBar.SetPaneInfo(m_wndStatusBar.CommandToIndex(pane), pane, SBPS_DISABLED, size.cx);
  return true;
}

template <typename Base>
BOOL CViewerFrame<Base>::OnCreateClient(LPCREATESTRUCT, CCreateContext* context) {
  using viewer_shell::kPaneSize;
  if (m_wndSplitter.CreateStatic(this, 1, 2, WS_CHILD | WS_VISIBLE, AFX_IDW_PANE_FIRST) == FALSE ||
      m_wndSplitter.CreateView(0, 0, RUNTIME_CLASS(CThumbsWindow), kPaneSize, context) == FALSE)
    return FALSE;
  m_pThumbsWnd = static_cast<CThumbsWindow*>(m_wndSplitter.GetPane(0, 0));
  if (m_wndSplitter.CreateView(0, 1, RUNTIME_CLASS(CImageWindow), kPaneSize, context) == FALSE) return FALSE;
  m_pImageWnd = static_cast<CImageWindow*>(m_wndSplitter.GetPane(0, 1));
  if (m_bThumbsVisible == FALSE) m_wndSplitter.HideColumn(0);
  return TRUE;
}

template <typename Base>
void CViewerFrame<Base>::OnSetFocus(CWnd*) {
  // Nothing of the frame takes keys but what it shows.
  if (m_pImageWnd != nullptr) m_pImageWnd->SetFocus();
}

template <typename Base>
void CViewerFrame<Base>::ShowMessage(UINT text) {
  CString message;
  message.LoadString(text);
  m_wndStatusBar.SetWindowText(message);
  m_wndStatusBar.UpdateWindow();
}

template <typename Base>
void CViewerFrame<Base>::SetPane(UINT pane, const CString& text, BOOL update) {
  m_wndStatusBar.SetPaneText(m_wndStatusBar.CommandToIndex(pane), text, update);
}

template <typename Base>
void CViewerFrame<Base>::EnablePane(UINT pane, bool enable) {
  m_wndStatusBar.SetPaneStyle(m_wndStatusBar.CommandToIndex(pane),
                              enable ? UINT{SBPS_NORMAL} : UINT{SBPS_DISABLED});
}

template <typename Base>
void CViewerFrame<Base>::Clear() {
  // A combo that loses the keyboard writes page or scale once more, so it has to lose it before it is
  // emptied.
  if (::IsChild(m_wndToolBar.m_hWnd, ::GetFocus()) != FALSE) m_pImageWnd->SetFocus();
  EnablePane(ID_ZP_INDICATOR_ZOOM, false);
  EnablePane(ID_ZP_INDICATOR_PAGE, false);
  ShowMessage(AFX_IDS_IDLEMESSAGE);
  m_wndComboPage.SendMessage(CB_RESETCONTENT);
  m_wndComboPage.EnableWindow(FALSE);
  m_wndComboScale.SetWindowText("");
  m_wndComboScale.EnableWindow(FALSE);
  m_wndToolBar.Invalidate();
  m_pImageWnd->ShowScrollBar(SB_BOTH, FALSE);
  m_pImageWnd->Invalidate();
  m_pImageWnd->SetMouseMode(MouseModeNone);
}

// Thumbnails

template <typename Base>
void CViewerFrame<Base>::FillThumbs() {
  const CString path = m_pImageWnd->GetFilePath();
  char* block = nullptr;
  int size = 0;
  m_pImageWnd->GetFileBuf(&block, &size);
  if (path.IsEmpty() == FALSE)
    m_pThumbsWnd->CreateThumbsFile(path);
  else if (block != nullptr)
    m_pThumbsWnd->CreateThumbsMemory(block, size);
  m_bThumbsCreated = TRUE;
}

template <typename Base>
void CViewerFrame<Base>::OnViewThumbnails() {
  if (m_pImageWnd == nullptr) return;
  m_bThumbsVisible = m_bThumbsVisible == FALSE ? TRUE : FALSE;
  if (m_bThumbsVisible == FALSE) {
    m_wndSplitter.HideColumn(0);
    return;
  }
  if (m_bThumbsCreated == FALSE) {
    this->BeginWaitCursor();
    FillThumbs();
    this->EndWaitCursor();
  }
  m_wndSplitter.ShowColumn();
  m_pThumbsWnd->SetSel(m_pImageWnd->m_nCurrPage);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateViewThumbnails(CCmdUI* ui) {
  ui->SetCheck(m_bThumbsVisible);
}

template <typename Base>
BOOL CViewerFrame<Base>::OnCommand(WPARAM wParam, LPARAM lParam) {
  using namespace viewer_shell;
  if (LOWORD(wParam) != m_wndSplitter.IdFromRowCol(0, 0)) return CFrameWnd::OnCommand(wParam, lParam);
  if (HIWORD(wParam) != kPicked || m_pImageWnd == nullptr) return TRUE;
  const int page = reinterpret_cast<const int*>(lParam)[kPickedIndex] + 1;
  if (page == m_pImageWnd->m_nCurrPage || !m_pImageWnd->LoadPage(page)) return TRUE;
  m_wndComboPage.SendMessage(CB_SETCURSEL, static_cast<WPARAM>(m_pImageWnd->m_nCurrPage - 1));
  ShowPageStatus(TRUE);
  return TRUE;
}
