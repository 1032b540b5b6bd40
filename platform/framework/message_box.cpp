#include "platform/framework/message_box.h"

#include "platform/framework/app.h"
#include "platform/framework/wnd.h"
#include "platform/testing.h"
#include "platform/window/detail/show_message_box.h"

namespace {

platform::testing::MessageBoxAnswer g_answer = nullptr;

CString& LastTitle() {
  static CString title;
  return title;
}

}  // namespace

void platform::testing::SetMessageBoxAnswer(MessageBoxAnswer answer) {
  g_answer = answer;
}

CString platform::testing::LastMessageBoxTitle() {
  return LastTitle();
}

int AfxMessageBox(LPCTSTR text, UINT type, UINT helpId) {
  if (g_answer != nullptr) {
    LastTitle() = AfxGetAppName();
    return g_answer(CString(text), type);
  }
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
  if (g_answer != nullptr) {
    LastTitle() = caption == nullptr ? AfxGetAppName() : caption;
    return g_answer(CString(text), type);
  }
  return platform::ShowMessageBox(caption == nullptr ? AfxGetAppName() : caption, text == nullptr ? "" : text,
                                  type);
}
