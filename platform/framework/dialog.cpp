#include "platform/framework/dialog.h"

#include <algorithm>
#include <utility>
#include "platform/base/seams.h"

#include "platform/base/translation.h"
#include "platform/framework/app.h"
#include "platform/framework/detail/dialog_template.h"
#include "platform/graphics/gdi.h"
#include "platform/resources/detail/find.h"
#include "platform/window/accessible.h"
#include "platform/window/detail/dialog_shown.h"

IMPLEMENT_DYNAMIC(CDialog, CWnd)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_WM_CLOSE()
ON_WM_SETFOCUS()
ON_COMMAND(IDOK, OnOK)
ON_COMMAND(IDCANCEL, OnCancel)
END_MESSAGE_MAP()

namespace {

constexpr const char* kDialogClass = "#32770";
constexpr int kAroundTitle = 96;  // what a desktop's buttons and icon take beside a title

void RegisterDialogClass() {
  const WNDCLASS windowClass = {CS_DBLCLKS,
                                &::DefWindowProc,
                                0,
                                0,
                                nullptr,
                                nullptr,
                                LoadCursor(nullptr, IDC_ARROW),
                                GetSysColorBrush(COLOR_BTNFACE),
                                nullptr,
                                kDialogClass};
  RegisterClassA(&windowClass);  // refused when it is there already
}

}  // namespace

HWND CDialog::ModalOwner(const CWnd* parent) {
  HWND owner = parent == nullptr ? nullptr : parent->m_hWnd;
  if (owner == nullptr) owner = GetActiveWindow();
  if (owner == nullptr && AfxGetMainWnd() != nullptr) owner = AfxGetMainWnd()->m_hWnd;
  return GetTopLevelWindow(owner);
}

CDialog::~CDialog() {
  if (m_hWnd != nullptr) DestroyWindow();
  if (m_font != nullptr) DeleteObject(m_font);
}

BOOL CDialog::MakeWindow(HWND parent) {
  const platform::DialogResource* dialog = platform::FindDialogResource(nullptr, m_lpszTemplateName);
  if (dialog == nullptr) return FALSE;
  RegisterDialogClass();
  if (m_font == nullptr) m_font = platform::FontOfTemplate(*dialog);
  const platform::DialogBaseUnits units = platform::BaseUnitsOf(m_font);
  const DWORD style = dialog->style & ~static_cast<DWORD>(WS_VISIBLE);
  const CString caption(platform::Localized(dialog->caption));
  const int width = std::max((dialog->cx * units.x + 2) / 4,
                             (style & WS_CHILD) == 0 ? caption.GetLength() * units.x + kAroundTitle : 0);
  const int height = (dialog->cy * units.y + 4) / 8;
  if (CreateEx(0, kDialogClass, caption, style, 0, 0, width, height, parent, nullptr) == 0) return FALSE;
  platform::SetAccessible(m_hWnd, platform::AccessibleRole::Dialog);
  const UINT defaultId = platform::MakeControls(*dialog, m_hWnd, m_font);
  if (m_defaultId == 0) m_defaultId = defaultId;
  if ((style & WS_CHILD) == 0) CenterWindow();
  const bool focusFirst = OnInitDialog() != 0;
  platform::NameFieldsByLabels(m_hWnd);
  if (focusFirst && m_hWnd != nullptr) FocusFirst();
  return m_hWnd != nullptr;
}

void CDialog::FocusFirst() {
  if (IsChild(m_hWnd, ::GetFocus()) != 0) return;
  const HWND first = GetNextDlgTabItem(m_hWnd, nullptr, FALSE);
  if (first == nullptr) {
    SetFocus();
    return;
  }
  ::SetFocus(first);
  if ((::SendMessage(first, WM_GETDLGCODE) & DLGC_HASSETSEL) != 0) ::SendMessage(first, EM_SETSEL, 0, -1);
}

int CDialog::DoModal() {
  const HWND owner = ModalOwner(m_pParentWnd);
  const HWND formerFocus = ::GetFocus();
  const bool disable = owner != nullptr && ::IsWindowEnabled(owner) != 0;
  ReleaseCapture();
  m_nModalResult = -1;
  m_nFlags |= WF_CONTINUEMODAL;  // so that OnInitDialog may end the dialog
  if (disable) ::EnableWindow(owner, FALSE);
  if (MakeWindow(owner) != 0 && ContinueModal() != 0) {
    platform::BlockOwner(m_hWnd);
    ShowWindow(SW_SHOW);
    if (const auto& shown = platform::TheSeams().dialogShown) shown(m_hWnd);
    if (ContinueModal() != 0) RunModalLoop();
  }
  m_nFlags &= ~static_cast<UINT>(WF_MODALLOOP | WF_CONTINUEMODAL);
  // First the owner, so that the desktop finds it ready to be the active window again.
  if (disable && IsWindow(owner) != 0) ::EnableWindow(owner, TRUE);
  if (m_hWnd != nullptr) DestroyWindow();
  if (IsWindow(owner) != 0) SetForegroundWindow(owner);
  if (IsWindow(formerFocus) != 0) ::SetFocus(formerFocus);
  return m_nModalResult;
}

BOOL CDialog::Create(LPCTSTR templateName, CWnd* parent) {
  m_lpszTemplateName = templateName;
  m_pParentWnd = parent;
  if (parent == nullptr) parent = AfxGetMainWnd();
  if (MakeWindow(parent == nullptr ? nullptr : parent->m_hWnd) == 0) return FALSE;
  const platform::DialogResource* dialog = platform::FindDialogResource(nullptr, m_lpszTemplateName);
  if ((dialog->style & WS_VISIBLE) != 0) ShowWindow(SW_SHOW);
  return TRUE;
}

void CDialog::EndDialog(int result) {
  if ((m_nFlags & (WF_MODALLOOP | WF_CONTINUEMODAL)) != 0) {
    EndModalLoop(result);
  } else {
    m_nModalResult = result;
    ShowWindow(SW_HIDE);
  }
}

BOOL CDialog::OnInitDialog() {
  UpdateData(FALSE);
  return TRUE;
}

void CDialog::OnOK() {
  if (UpdateData(TRUE) != 0) EndDialog(IDOK);
}

void CDialog::OnCancel() {
  EndDialog(IDCANCEL);
}

void CDialog::OnClose() {
  const HWND cancel = ::GetDlgItem(m_hWnd, IDCANCEL);
  if (cancel != nullptr && ::IsWindowEnabled(cancel) == 0) return;
  SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(cancel));
}

void CDialog::OnSetFocus(CWnd*) {
  FocusFirst();
}

BOOL CDialog::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
  if (CWnd::OnCmdMsg(id, code, extra, handlerInfo) != 0) return TRUE;
  // Commands that the dialog has no handler for are its owner's; a control's notifications stay here.
  if (code != CN_COMMAND && code != CN_UPDATE_COMMAND_UI) return FALSE;
  if (id < 0x8000 || id >= 0xF000) return FALSE;
  CWnd* owner = GetParent();
  if (owner != nullptr && owner->OnCmdMsg(id, code, extra, handlerInfo) != 0) return TRUE;
  return AfxGetThread()->OnCmdMsg(id, code, extra, handlerInfo);
}

BOOL CDialog::PreTranslateMessage(MSG* message) {
  if (CWnd::PreTranslateMessage(message) != 0) return TRUE;
  return IsDialogMessage(message);
}

LRESULT CDialog::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_GETFONT:
      return reinterpret_cast<LRESULT>(m_font);
    case DM_GETDEFID:
      return m_defaultId == 0 ? 0 : MAKELONG(static_cast<int>(m_defaultId), DC_HASDEFID);
    case WM_ACTIVATE:
      // The control that had the keyboard gets it back.
      if (LOWORD(wParam) == 0) {
        if (IsChild(m_hWnd, ::GetFocus()) != 0) m_lastFocus = ::GetFocus();
      } else if (IsChild(m_hWnd, ::GetFocus()) == 0 && IsWindowEnabled() != 0) {
        if (IsWindow(m_lastFocus) != 0 && IsChild(m_hWnd, m_lastFocus) != 0)
          ::SetFocus(m_lastFocus);
        else
          FocusFirst();
      }
      return 0;
    default:
      return CWnd::DefWindowProc(message, wParam, lParam);
  }
}

void CDialog::SetDefID(UINT id) {
  ::SendMessage(::GetDlgItem(m_hWnd, static_cast<int>(m_defaultId)), BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
  m_defaultId = id;
  ::SendMessage(::GetDlgItem(m_hWnd, static_cast<int>(id)), BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
}
