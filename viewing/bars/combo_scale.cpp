#include "viewing/bars/combo_scale.h"

#include "library/resource_ids.h"
#include "platform/framework/frame_wnd.h"
#include "viewing/bars/typed_keys.h"

BEGIN_MESSAGE_MAP(CComboScale, CComboBox)
END_MESSAGE_MAP()

void CComboScale::Initialize() {
  for (const char* scale : {"25%", "50%", "75%", "100%", "200%", "400%"})
    SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(scale));
}

BOOL CComboScale::PreTranslateKey(MSG* message) {
  CFrameWnd* frame = GetParentFrame();
  switch (message->wParam) {
    case VK_RETURN:
      TellFrameOfPick(*this, ID_ZP_COMBO_SCALE);
      if (frame != nullptr) frame->SetFocus();
      break;
    case VK_ESCAPE:
      if (frame != nullptr) frame->SetFocus();
      break;
    case VK_DELETE:  // for the edit field, before an accelerator of the host takes it
      SendMessage(WM_KEYDOWN, message->wParam, message->lParam);
      return TRUE;
    case VK_BACK:
      PostMessage(WM_CHAR, message->wParam, message->lParam);
      return TRUE;
    default:
      break;
  }
  return CWnd::PreTranslateMessage(message);
}

BOOL CComboScale::PreTranslateMessage(MSG* message) {
  if (message->message == WM_KEYDOWN) return PreTranslateKey(message);
  if (message->message == WM_CHAR && !IsDigitOrBackspace(message->wParam) && message->wParam != '%')
    return TRUE;
  return CWnd::PreTranslateMessage(message);
}
