#include "platform/framework/message_box.h"

#include "platform/base/seams.h"
#include "platform/framework/app.h"
#include "platform/framework/wnd.h"
#include "platform/window/detail/show_message_box.h"

int AfxMessageBox(LPCTSTR text, UINT type, UINT helpId) {
  if (const auto& answer = platform::TheSeams().messageBox)
    return answer(CString(text), CString(AfxGetAppName()), type);
  CWinApp* app = AfxGetApp();
  return app == nullptr ? platform::ShowMessageBox(AfxGetAppName(), text == nullptr ? "" : text, type)
                        : app->DoMessageBox(text == nullptr ? "" : text, type, helpId);
}

int AfxMessageBox(UINT stringId, UINT type, UINT helpId) {
  CString text;
  text.LoadString(stringId);
  return AfxMessageBox(text, type, helpId);
}

int CWnd::MessageBox(LPCTSTR text, LPCTSTR caption, UINT type) {
  const char* title = caption == nullptr ? AfxGetAppName() : caption;
  if (const auto& answer = platform::TheSeams().messageBox)
    return answer(CString(text), CString(title), type);
  return platform::ShowMessageBox(title, text == nullptr ? "" : text, type);
}
