#include "viewing/commands/custom_zoom_dlg.h"

#include <cstdlib>

#include "library/resource_ids.h"
#include "platform/framework/ddx.h"
#include "platform/framework/message_box.h"
#include "viewing/bars/scale_text.h"
#include "viewing/bars/typed_keys.h"

namespace {

constexpr WPARAM kMostCharacters = 4;

}  // namespace

BEGIN_MESSAGE_MAP(CCustomZoomDlg, CDialog)
ON_COMMAND(IDC_ZP_ZOOM_OK, OnOk)
ON_COMMAND(IDC_ZP_CANCEL, OnCancel)
END_MESSAGE_MAP()

CCustomZoomDlg::CCustomZoomDlg(int current, int min, int max, CWnd* parent)
    : CDialog(IDD_ZP_CUSTOM_ZOOM, parent), m_nMax(max), m_nMin(min), m_nCurrent(current) {}

void CCustomZoomDlg::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDC_ZP_ZOOM_PERCENT, m_wndEdit);
}

BOOL CCustomZoomDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  m_wndEdit.SendMessage(EM_LIMITTEXT, kMostCharacters);
  m_wndEdit.SetWindowText(ScaleText(m_nCurrent));
  m_wndEdit.SetFocus();
  m_wndEdit.SetSel(0, -1);  // what is typed takes its place
  return TRUE;
}

BOOL CCustomZoomDlg::PreTranslateMessage(MSG* message) {
  if (message->message == WM_CHAR && !IsDigitOrBackspace(message->wParam) && message->wParam != '%')
    return TRUE;
  // The buttons' numbers aren't those that a dialog takes Enter and Escape for.
  if (message->message == WM_KEYDOWN && message->wParam == VK_RETURN) {
    OnOk();
    return TRUE;
  }
  if (message->message == WM_KEYDOWN && message->wParam == VK_ESCAPE) {
    EndDialog(0);
    return TRUE;
  }
  return CDialog::PreTranslateMessage(message);
}

// A button of its own, not the IDOK that OnOK is for.
void CCustomZoomDlg::OnOk() {  // NOLINT(bugprone-virtual-near-miss)
  CString text;
  m_wndEdit.GetWindowText(text);
  const int percent = PercentOfText(text);
  if (percent >= m_nMin && percent <= m_nMax) return EndDialog(percent);
  CString refusal;
  refusal.FormatMessage(IDS_ZP_SCALE_OUT_OF_RANGE, m_nMin, m_nMax);
  AfxMessageBox(refusal);
  m_wndEdit.SetFocus();
  m_wndEdit.SetSel(0, -1);
}

void CCustomZoomDlg::OnCancel() {
  EndDialog(0);
}
