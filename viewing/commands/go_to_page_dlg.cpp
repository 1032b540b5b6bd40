#include "viewing/commands/go_to_page_dlg.h"

#include "library/resource_ids.h"
#include "platform/framework/ddx.h"
#include "platform/framework/message_box.h"

namespace {

enum : int { kFirstPage = 0, kLastPage = 1, kNumber = 2 };

}  // namespace

BEGIN_MESSAGE_MAP(CGoToPageDlg, CDialog)
ON_COMMAND(IDC_ZP_GOTO_FIRST, OnRadio1)
ON_COMMAND(IDC_ZP_GOTO_LAST, OnRadio1)
ON_COMMAND(IDC_ZP_GOTO_NUMBER, OnRadio3)
ON_COMMAND(IDC_ZP_CANCEL, OnCancel)
END_MESSAGE_MAP()

CGoToPageDlg::CGoToPageDlg(int currentPage, int maxPage, CWnd* parent)
    : CDialog(IDD_ZP_GOTO_PAGE, parent), m_nMaxPage(maxPage), m_nCurrPage(currentPage) {}

void CGoToPageDlg::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Radio(exchange, IDC_ZP_GOTO_FIRST, m_nRadio);
}

CRect CGoToPageDlg::PlaceOf(const CWnd* control) const {
  CRect place;
  control->GetWindowRect(place);
  ScreenToClient(place);
  return place;
}

BOOL CGoToPageDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  const CRect place = PlaceOf(GetDlgItem(IDC_ZP_GOTO_SPIN_PLACE));
  CWnd* field = GetDlgItem(IDC_ZP_GOTO_EDIT);
  const CRect fieldPlace = PlaceOf(field);
  // At the bottom of the z-order the field is the window before the spin control, which makes it the buddy.
  field->SetWindowPos(&CWnd::wndBottom, fieldPlace.left, fieldPlace.top, fieldPlace.Width(),
                      fieldPlace.Height(), SWP_SHOWWINDOW);
  m_wndSpin.Create(WS_CHILD | WS_VISIBLE | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_AUTOBUDDY | UDS_ARROWKEYS,
                   place, this, ID_ZP_SPIN_PAGE);
  // Both back behind their button, where they are seen, for those who go by Tab or have the dialog read.
  constexpr UINT kOrderOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
  field->SetWindowPos(GetDlgItem(IDC_ZP_GOTO_NUMBER), 0, 0, 0, 0, kOrderOnly);
  m_wndSpin.SetWindowPos(field, 0, 0, 0, 0, kOrderOnly);
  // In 32 bits: a document may have more pages than the 16 bits of the older messages hold.
  m_wndSpin.SendMessage(UDM_SETRANGE32, 1, m_nMaxPage);
  m_wndSpin.SendMessage(UDM_SETPOS32, 0, m_nCurrPage);
  if (m_nCurrPage == 1) GetDlgItem(IDC_ZP_GOTO_FIRST)->EnableWindow(FALSE);
  if (m_nCurrPage == m_nMaxPage) GetDlgItem(IDC_ZP_GOTO_LAST)->EnableWindow(FALSE);
  m_nRadio = kNumber;
  UpdateData(FALSE);
  // What is typed takes the page's place.
  field->SetFocus();
  field->SendMessage(EM_SETSEL, 0, -1);
  return TRUE;
}

void CGoToPageDlg::EnableNumber(BOOL enable) {
  m_wndSpin.EnableWindow(enable);
  GetDlgItem(IDC_ZP_GOTO_EDIT)->EnableWindow(enable);
}

void CGoToPageDlg::OnRadio1() {
  EnableNumber(FALSE);
}

void CGoToPageDlg::OnRadio3() {
  EnableNumber(TRUE);
}

void CGoToPageDlg::OnOK() {
  UpdateData(TRUE);
  if (m_nRadio == kFirstPage) return EndDialog(1);
  if (m_nRadio == kLastPage) return EndDialog(m_nMaxPage);
  BOOL invalid = FALSE;
  const auto page =
      static_cast<int>(m_wndSpin.SendMessage(UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(&invalid)));
  if (invalid == FALSE) return EndDialog(page);
  CString refusal;
  refusal.FormatMessage(IDS_ZP_NO_SUCH_PAGE, m_nMaxPage);
  AfxMessageBox(refusal, MB_ICONEXCLAMATION);
  m_wndSpin.SendMessage(UDM_SETPOS32, 0, m_nCurrPage);
}

void CGoToPageDlg::OnCancel() {
  EndDialog(0);
}
