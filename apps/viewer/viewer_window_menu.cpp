// What the application adds to the viewer's menu, status bar and keys.

#include <algorithm>
#include <array>
#include <iterator>

#include "recent_files.h"
#include "resources.h"
#include "settings.h"
#include "viewer_app.h"
#include "viewer_page.h"
#include "viewer_window.h"

namespace {

enum Place : int { kFileMenu, kEditMenu, kViewMenu, kPageMenu, kZoomMenu };

void Insert(CMenu* menu, UINT at, UINT command) {
  menu->InsertMenu(at, MF_BYPOSITION | MF_STRING, command, Text(MenuTextOf(command)));
}

void Append(CMenu* menu, UINT command) {
  menu->AppendMenu(MF_STRING, command, Text(MenuTextOf(command)));
}

/// Items of a new pop-up, which the menu that it is put into destroys.
HMENU PopupOf(std::initializer_list<UINT> commands) {
  CMenu popup;
  popup.CreatePopupMenu();
  for (const UINT command : commands) Append(&popup, command);
  return popup.Detach();
}

void InsertPopup(CMenu* menu, UINT at, UINT text, HMENU popup) {
  menu->InsertMenu(at, MF_BYPOSITION | MF_POPUP, reinterpret_cast<std::uintptr_t>(popup), Text(text));
}

bool IsInsideLetter(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;  // of UTF-8
}

void DropFirst(std::string& text) {
  text.erase(0, 1);
  while (!text.empty() && IsInsideLetter(text.front())) text.erase(0, 1);
}

void DropLast(std::string& text) {
  while (!text.empty() && IsInsideLetter(text.back())) text.pop_back();
  if (!text.empty()) text.pop_back();
}

/// A text without its middle, if it has to be; empty if nothing of use would be left.
CString Shortened(CDC& dc, const CString& text, int room) {
  constexpr std::size_t kLeast = 8;
  if (dc.GetTextExtent(text).cx <= room) return text;
  std::string head(static_cast<const char*>(text));
  std::size_t half = head.size() / 2;
  while (half < head.size() && IsInsideLetter(head[half])) ++half;
  std::string tail = head.substr(half);
  head.resize(half);
  while (head.size() + tail.size() > kLeast) {
    if (head.size() > tail.size())
      DropLast(head);
    else
      DropFirst(tail);
    CString shown = head.c_str();
    shown += "…";
    shown += tail.c_str();
    if (dc.GetTextExtent(shown).cx <= room) return shown;
  }
  return {};
}

/// "&" is a letter in file names.
CString MenuName(std::size_t index, const std::string& path) {
  constexpr std::size_t kLongest = 60;
  std::string shown = path;
  if (shown.size() > kLongest) shown = "…/" + std::filesystem::path(path).filename().string();
  for (std::size_t at = 0; (at = shown.find('&', at)) != std::string::npos; at += 2) shown.insert(at, 1, '&');
  return TextWith(IDS_RECENT_ITEM, static_cast<int>(index + 1), shown.c_str());
}

}  // namespace

// Menu

void CViewerWindow::AddMenuItems() {
  InsertPopup(GetMenu(), kEditMenu, IDS_EDIT_MENU, PopupOf({kCopy, kSelectArea, kClearSelection}));
  CMenu* const file = GetMenu()->GetSubMenu(kFileMenu);
  UINT at = 1;  // behind the item that opens
  for (const UINT command : {kReload, kNextFile, kPreviousFile}) Insert(file, at++, command);
  CMenu recent;
  recent.CreatePopupMenu();
  recent.AppendMenu(MF_STRING, kFirstRecent, Text(IDS_NO_RECENT));
  InsertPopup(file, at, IDS_RECENT_MENU, recent.Detach());
  constexpr UINT kPrintItem = 7;
  Insert(file, kPrintItem, kPrintPages);
  Insert(file, kPrintItem + 1, kSaveTurned);
  file->InsertMenu(kPrintItem + 2, MF_BYPOSITION | MF_SEPARATOR);
  Insert(file, kPrintItem + 3, kWatchFolder);
  Insert(file, kPrintItem + 4, kOpenNewFiles);
  CMenu* const view = GetMenu()->GetSubMenu(kViewMenu);
  Append(view, kFullScreen);
  Append(view, kTurnAtEnd);
  CMenu* const zoom = GetMenu()->GetSubMenu(kZoomMenu);
  const UINT behindFits = static_cast<UINT>(zoom->GetMenuItemCount()) - 2;
  InsertPopup(zoom, behindFits, IDS_KEEP_FIT_MENU, PopupOf({kKeepNoFit, kKeepWidth, kKeepHeight, kKeepPage}));
  DrawMenuBar();
}

void CViewerWindow::OnUpdateRecent(CCmdUI* ui) {
  const std::vector<std::string> files = RecentFiles();
  if (ui->m_pSubMenu == nullptr) {
    Enable(ui, !files.empty());
    return;
  }
  // Asked about the sub-menu as the menu above opens.
  CMenu& menu = *ui->m_pSubMenu;
  while (menu.GetMenuItemCount() > 0) menu.DeleteMenu(0, MF_BYPOSITION);
  for (std::size_t i = 0; i < files.size(); ++i)
    menu.AppendMenu(MF_STRING, kFirstRecent + i, MenuName(i, files[i]));
  if (files.empty()) menu.AppendMenu(MF_STRING | MF_GRAYED, kFirstRecent, Text(IDS_NO_RECENT));
}

void CViewerWindow::OnFullScreen() {
  if (platform::ShowFullScreen(m_hWnd, !m_fullScreen)) m_fullScreen = !m_fullScreen;
}

void CViewerWindow::OnAbout() {
  MessageBox(TextWith(IDS_ABOUT, TESSAREL_VERSION), AfxGetAppName(), MB_OK | MB_ICONINFORMATION);
}

void CViewerWindow::OnTurnAtEnd() {
  const bool turn = !PageWindow()->TurnsAtEnd();
  PageWindow()->TurnAtEnd(turn);
  settings::WriteNumber("TurnAtEnd", turn ? 1 : 0);
}

void CViewerWindow::OnUpdateTurnAtEnd(CCmdUI* ui) {
  ui->SetCheck(m_pImageWnd != nullptr && PageWindow()->TurnsAtEnd() ? 1 : 0);
}

void CViewerWindow::OnKeepFit(UINT command) {
  const int mode = static_cast<int>(command - kKeepNoFit);  // the commands stand in the modes' order
  PageWindow()->KeepFit(mode);
  settings::WriteNumber("KeepFit", mode);
}

void CViewerWindow::OnUpdateKeepFit(CCmdUI* ui) {
  if (ui->m_pSubMenu == nullptr && m_pImageWnd != nullptr)
    ui->SetRadio(m_pImageWnd->GetFitMode() == static_cast<int>(ui->m_nID - kKeepNoFit) ? TRUE : FALSE);
}

// Status bar

bool CViewerWindow::MakePanes() {
  constexpr std::array<UINT, 6> kPanes = {ID_SEPARATOR, kDamagePane,          kNamePane,
                                          kDpiPane,     ID_ZP_INDICATOR_ZOOM, ID_ZP_INDICATOR_PAGE};
  if (m_wndStatusBar.SetIndicators(kPanes.data(), static_cast<int>(kPanes.size())) == FALSE) return false;
  // As wide as in the viewer's own bar.
  CClientDC dc(&m_wndStatusBar);
  const auto widen = [&](UINT pane, UINT ruler) {
    m_wndStatusBar.SetPaneInfo(m_wndStatusBar.CommandToIndex(pane), pane, SBPS_DISABLED,
                               dc.GetTextExtent(Text(ruler)).cx);
  };
  widen(ID_ZP_INDICATOR_ZOOM, IDS_ZP_ZOOM_RULER);
  widen(ID_ZP_INDICATOR_PAGE, IDS_ZP_PAGE_RULER);
  for (const UINT pane : {kDamagePane, kNamePane, kDpiPane})
    m_wndStatusBar.SetPaneInfo(m_wndStatusBar.CommandToIndex(pane), pane, SBPS_NOBORDERS, 0);
  return true;
}

CString CViewerWindow::PaneText(UINT pane) const {
  if (m_file == nullptr || m_pImageWnd == nullptr || m_pImageWnd->GetMaxPage() < 1) return {};
  const struct_file_information& page = m_pImageWnd->GetPageInfo();
  if (pane == kNamePane) return std::filesystem::path(m_file->Name()).filename().c_str();
  if (pane == kDamagePane && page.DamagedRows == 1) return Text(IDS_DAMAGED_ROW);
  if (pane == kDamagePane && page.DamagedRows > 1) return TextWith(IDS_DAMAGED_ROWS, page.DamagedRows);
  if (pane != kDpiPane || page.XResolution <= 0 || page.YResolution <= 0) return {};
  if (page.XResolution == page.YResolution) return TextWith(IDS_DPI, page.XResolution);
  return TextWith(IDS_DPI_BOTH, page.XResolution, page.YResolution);
}

/// What a narrow window leaves for a pane, once the message and the panes before it in this order have
/// theirs.
int CViewerWindow::RoomFor(UINT pane) const {
  constexpr int kMessage = 100;
  constexpr int kAround = 10;
  CRect bar;
  m_wndStatusBar.GetClientRect(bar);
  int room = bar.Width() - kMessage;
  for (const UINT other : {UINT{ID_ZP_INDICATOR_PAGE}, UINT{ID_ZP_INDICATOR_ZOOM}, UINT{kDamagePane},
                           UINT{kDpiPane}, UINT{kNamePane}}) {
    if (other == pane) break;
    CRect place;
    m_wndStatusBar.GetItemRect(m_wndStatusBar.CommandToIndex(other), place);
    room -= place.Width();
  }
  return room - kAround;
}

void CViewerWindow::OnUpdatePane(CCmdUI* ui) {
  constexpr int kWidest = 220;
  CClientDC dc(&m_wndStatusBar);
  const CString text = Shortened(dc, PaneText(ui->m_nID), std::min(RoomFor(ui->m_nID), kWidest));
  const int index = m_wndStatusBar.CommandToIndex(ui->m_nID);
  if (m_wndStatusBar.GetPaneText(index) == text) return;
  const UINT style = text.IsEmpty() != FALSE ? SBPS_NOBORDERS : SBPS_NORMAL;
  m_wndStatusBar.SetPaneInfo(index, ui->m_nID, style, dc.GetTextExtent(text).cx);
  m_wndStatusBar.SetPaneText(index, text);
}

// Keys

void CViewerWindow::StepFocus(bool back) {
  // As the window is read: from its top, then from the left. The page comes last, and is where one begins.
  std::vector<HWND> stops;
  if (m_wndToolBar.IsWindowVisible() != FALSE) stops.push_back(m_wndToolBar.m_hWnd);
  for (const CWnd* combo : {static_cast<CWnd*>(&m_wndComboPage), static_cast<CWnd*>(&m_wndComboScale)})
    if (combo->IsWindowEnabled() != FALSE && combo->IsWindowVisible() != FALSE)
      stops.push_back(combo->m_hWnd);
  if (m_bThumbsVisible != FALSE) stops.push_back(m_pThumbsWnd->m_hWnd);
  stops.push_back(m_pImageWnd->m_hWnd);
  // A combo stands in the bar, which comes before it.
  const HWND focus = ::GetFocus();
  const auto at = std::find_if(stops.rbegin(), stops.rend(), [focus](HWND stop) {
    return stop == focus || ::IsChild(stop, focus) != FALSE;
  });
  const std::size_t count = stops.size();
  const std::size_t index = at == stops.rend() ? count - 1 : static_cast<std::size_t>(stops.rend() - at - 1);
  ::SetFocus(stops[(index + (back ? count - 1 : 1)) % count]);
}

bool CViewerWindow::TakesFocusKey(const MSG& message) {
  constexpr WPARAM kF6 = VK_F1 + 5;
  if (message.message != WM_KEYDOWN || (message.wParam != kF6 && message.wParam != VK_TAB) ||
      GetKeyState(VK_CONTROL) < 0)
    return false;
  StepFocus(GetKeyState(VK_SHIFT) < 0);
  return true;
}

bool CViewerWindow::TakesEscape(const MSG& message) {
  if (message.message != WM_KEYDOWN || message.wParam != VK_ESCAPE || message.hwnd != m_pImageWnd->m_hWnd)
    return false;
  if (PageWindow()->ClearSelection()) return true;
  if (m_fullScreen) OnFullScreen();
  return true;
}

/// In the bar, keys that move are its own, and in a field those that copy.
static bool IsBarKey(const MSG& message, HWND bar) {
  const bool inField = ::IsChild(bar, message.hwnd) != FALSE;
  if (message.message != WM_KEYDOWN || (!inField && message.hwnd != bar)) return false;
  const bool copies = GetKeyState(VK_CONTROL) < 0 && (message.wParam == 'C' || message.wParam == 'A');
  return message.wParam == VK_HOME || message.wParam == VK_END || (inField && copies);
}

BOOL CViewerWindow::PreTranslateMessage(MSG* message) {
  if (m_pImageWnd == nullptr) return CImageFrame::PreTranslateMessage(message);
  if (TakesFocusKey(*message) || TakesEscape(*message)) return TRUE;
  if (IsBarKey(*message, m_wndToolBar.m_hWnd)) return FALSE;
  return CImageFrame::PreTranslateMessage(message);
}
