#include "viewing/bars/combo_page_num.h"

#include <cstdlib>

#include "library/resource_ids.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "viewing/bars/typed_keys.h"

BEGIN_MESSAGE_MAP(CComboPageNum, CComboBox)
END_MESSAGE_MAP()

void CComboPageNum::Enter() {
  CString text;
  GetWindowText(text);
  const int page = std::atoi(text);
  const auto pages = static_cast<int>(SendMessage(CB_GETCOUNT));
  if (page >= 1 && page <= pages) {
    SendMessage(CB_SETCURSEL, static_cast<WPARAM>(page - 1));
    TellFrameOfPick(*this, ID_ZP_COMBO_PAGE);
  } else {
    CString refusal;
    refusal.FormatMessage(IDS_ZP_NO_SUCH_PAGE, pages);
    AfxMessageBox(refusal, MB_ICONEXCLAMATION);
  }
  SetFocus();
}

BOOL CComboPageNum::PreTranslateMessage(MSG* message) {
  if (message->message == WM_KEYDOWN && message->wParam == VK_RETURN) {
    Enter();
  } else if (message->message == WM_KEYDOWN && message->wParam == VK_ESCAPE) {
    // Above the toolbar: the frame, which hands the keyboard to what it shows. What was typed goes with it.
    CWnd* bar = GetParent();
    CWnd* frame = bar == nullptr ? nullptr : bar->GetParent();
    if (frame != nullptr) frame->SetFocus();
  } else if (message->message == WM_CHAR && !IsDigitOrBackspace(message->wParam)) {
    return TRUE;
  }
  return CWnd::PreTranslateMessage(message);
}
