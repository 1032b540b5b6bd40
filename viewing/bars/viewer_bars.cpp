#include "viewing/bars/viewer_bars.h"

#include <cstring>

#include "controls/tool_bar_256.h"
#include "platform/resources/resource_tables.h"
#include "platform/window/accessible.h"
#include "viewing/bars/scale_text.h"

namespace viewer_bars {

namespace {

constexpr int kPageSlot = 7;
constexpr int kScaleSlot = 12;
constexpr int kPageComboWidth = 40;
constexpr int kPageCharacters = 3;
constexpr int kComboTop = 2;
constexpr DWORD kComboStyle = WS_VISIBLE | WS_BORDER | WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWN;
constexpr DWORD kToolBarStyle = WS_CHILD | WS_VISIBLE | CBRS_GRIPPER | CBRS_ALIGN_TOP | CBRS_BORDER_BOTTOM |
                                CBRS_FLYBY | CBRS_TOOLTIPS | CBRS_SIZE_DYNAMIC;
constexpr DWORD kStatusBarStyle = WS_CHILD | WS_VISIBLE | CBRS_ALIGN_BOTTOM | CBRS_BORDER_TOP;
constexpr UINT kPanes[] = {ID_SEPARATOR, ID_ZP_INDICATOR_ZOOM, ID_ZP_INDICATOR_PAGE};
constexpr SIZE kButtonSize = {24, 24};  // the least that a finger or an unsteady hand is sure to hit
constexpr SIZE kPictureSize = {16, 16};
constexpr COLORREF kMagenta = RGB(255, 0, 255);

LOGFONT ComboFont() {
  LOGFONT font{};
  font.lfHeight = -12;
  font.lfWeight = FW_NORMAL;
  font.lfPitchAndFamily = BYTE{VARIABLE_PITCH} | BYTE{FF_SWISS};
  std::strcpy(font.lfFaceName, "MS Sans Serif");
  return font;
}

/// Puts a combo in the place of a separator.
struct ComboPlace {
  int button;
  UINT id;
  int width;
  DWORD style;
  int characters;
  UINT name;  ///< string
};

bool CreateCombo(CToolBar256& bar, CComboBox& combo, const ComboPlace& place, int bottom) {
  bar.SetButtonInfo(place.button, place.id, TBBS_SEPARATOR, place.width);
  CRect rect;
  bar.GetItemRect(place.button, &rect);
  rect.top = kComboTop;
  rect.bottom = bottom;
  if (combo.Create(place.style, rect, &bar, place.id) == FALSE) return false;
  combo.SendMessage(CB_LIMITTEXT, static_cast<WPARAM>(place.characters));
  combo.EnableWindow(FALSE);
  CString name;
  name.LoadString(place.name);
  platform::SetAccessibleName(combo.m_hWnd, name);
  return true;
}

/// Both combos keep the font that they have if this one can't be made.
void SetComboFont(const ToolBarParts& parts) {
  if (GetSystemMetrics(SM_DBCSENABLED) != 0) {
    parts.comboFont.Attach(GetStockObject(SYSTEM_FONT));
  } else {
    const LOGFONT font = ComboFont();
    if (parts.comboFont.Attach(CreateFontIndirectA(&font)) == FALSE) return;
  }
  for (CWnd* combo : {static_cast<CWnd*>(&parts.page), static_cast<CWnd*>(&parts.scale)})
    combo->SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(parts.comboFont.m_hObject), TRUE);
}

void SetPaneWidth(CStatusBar& bar, UINT pane, UINT rulerText) {
  CString ruler;
  ruler.LoadString(rulerText);
  CClientDC dc(&bar);
  SIZE size{};
  GetTextExtentPoint32A(dc.m_hDC, ruler, ruler.GetLength(), &size);
  // Disabled: blank until something is open.
  bar.SetPaneInfo(bar.CommandToIndex(pane), pane, SBPS_DISABLED, size.cx);
}

}  // namespace

bool CreateToolBar(CFrameWnd* frame, const ToolBarParts& parts, const ToolBarLook& look) {
  CToolBar256& bar = parts.bar;
  if (bar.CreateEx(frame, TBSTYLE_FLAT, kToolBarStyle, CRect(0, 0, 0, 0), AFX_IDW_TOOLBAR) == FALSE)
    return false;
  bar.SetSizes(kButtonSize, kPictureSize);
  if (bar.SetButtons(kButtons.data(), static_cast<int>(kButtons.size())) == FALSE) return false;
  bar.SetBitmap(look.pictures, kMagenta);
  const ComboPlace page{kPageSlot,   ID_ZP_COMBO_PAGE, kPageComboWidth,
                        kComboStyle, kPageCharacters,  IDS_ZP_PAGE_COMBO_NAME};
  const ComboPlace scale{kScaleSlot,           ID_ZP_COMBO_SCALE,
                         look.scaleComboWidth, kComboStyle | CBS_AUTOHSCROLL,
                         look.scaleCharacters, IDS_ZP_SCALE_COMBO_NAME};
  if (!CreateCombo(bar, parts.page, page, look.comboBottom) ||
      !CreateCombo(bar, parts.scale, scale, look.comboBottom))
    return false;
  parts.scale.Initialize();
  if (look.highScales)
    for (const char* scale : {"800%", "1000%"}) parts.scale.AddString(scale);
  SetComboFont(parts);
  return true;
}

bool CreateStatusBar(CFrameWnd* frame, CStatusBar& bar) {
  if (bar.Create(frame, kStatusBarStyle, ID_VIEW_STATUS_BAR) == FALSE ||
      bar.SetIndicators(kPanes, static_cast<int>(std::size(kPanes))) == FALSE)
    return false;
  SetPaneWidth(bar, ID_ZP_INDICATOR_ZOOM, IDS_ZP_ZOOM_RULER);
  SetPaneWidth(bar, ID_ZP_INDICATOR_PAGE, IDS_ZP_PAGE_RULER);
  return true;
}

void DockToolBar(CFrameWnd* frame, CToolBar256& bar) {
  if (bar.m_hWnd == nullptr) return;
  bar.EnableDocking(CBRS_ALIGN_ANY);
  frame->EnableDocking(CBRS_ALIGN_ANY);
  frame->DockControlBar(&bar);
}

LPCTSTR FrameClass(UINT icon) {
  const LPCSTR name = MAKEINTRESOURCE(icon);
  return AfxRegisterWndClass(0, nullptr, nullptr,
                             LoadIconA(AfxFindResourceHandle(name, RT_GROUP_ICON), name));
}

ViewerBars Present(ViewerBars bars) {
  const auto forget = [](auto*& bar) {
    if (bar != nullptr && bar->m_hWnd == nullptr) bar = nullptr;
  };
  forget(bars.status);
  forget(bars.page);
  forget(bars.scale);
  return bars;
}

// Status bar

void SetPane(CStatusBar& bar, UINT pane, const CString& text, BOOL update) {
  bar.SetPaneText(bar.CommandToIndex(pane), text, update);
}

void EnablePane(CStatusBar& bar, UINT pane, bool enable) {
  bar.SetPaneStyle(bar.CommandToIndex(pane), enable ? UINT{SBPS_NORMAL} : UINT{SBPS_DISABLED});
}

void ShowPagePane(CStatusBar& bar, int page, int pages, BOOL update) {
  CString text;
  text.FormatMessage(ID_ZP_INDICATOR_PAGE, page, pages);
  SetPane(bar, ID_ZP_INDICATOR_PAGE, text, update);
}

void ShowScale(const ViewerBars& bars, int percent, BOOL update) {
  if (bars.status != nullptr) {
    CString text;
    text.FormatMessage(ID_ZP_INDICATOR_ZOOM, percent);
    SetPane(*bars.status, ID_ZP_INDICATOR_ZOOM, text, update);
  }
  if (bars.scale == nullptr) return;
  CComboScale& combo = *bars.scale;
  const CString scale = ScaleText(percent);
  // An entry picked before must not stand for a scale that has come by another way.
  const int entry = combo.GetCurSel();
  CString picked;
  if (entry != CB_ERR) combo.GetLBText(entry, picked);
  if (picked != scale) combo.SetCurSel(-1);
  combo.SetWindowText(scale);
}

// Combos

void FillPageCombo(CComboPageNum& combo, int pages) {
  if (combo.SendMessage(CB_GETCOUNT) != 0) combo.SendMessage(CB_RESETCONTENT);
  CString number;
  for (int page = 1; page <= pages; ++page) {
    number.Format("%d", page);
    combo.SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(static_cast<LPCSTR>(number)));
  }
}

CString ChosenScale(CComboScale& combo, bool fromEntry) {
  CString text;
  const auto entry = static_cast<int>(combo.SendMessage(CB_GETCURSEL));
  if (fromEntry && entry != CB_ERR) {
    combo.GetLBText(entry, text);
    return text;
  }
  combo.GetWindowText(text);
  if (text.IsEmpty() != FALSE) {
    combo.SendMessage(CB_SETCURSEL, 0);
    combo.GetWindowText(text);
  }
  return text;
}

}  // namespace viewer_bars
