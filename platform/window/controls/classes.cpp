#include "platform/window/controls/detail/control.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

using Maker = std::shared_ptr<Control> (*)(HWND, QWidget*);

/// The window's widgets show what lies behind them wherever the control's own widget draws nothing.
void MakeTransparent(WindowRecord& record) {
  record.frame->setAutoFillBackground(false);
  record.client->setAttribute(Qt::WA_OpaquePaintEvent, false);
}

void GiveFirstText(const WindowRecord& record) {
  const QSignalBlocker quiet(record.control->Widget());  // the program hears of changes only
  const std::string text = record.text;
  record.control->Handle(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

template <Maker make>
LRESULT ControlProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr) return 0;
  if (message == WM_NCCREATE) {
    WatchControlInput();
    MakeTransparent(*record);
    record->control = make(window, record->client);
    GiveFirstText(*record);
    if ((record->style & WS_DISABLED) != 0) record->control->Widget()->setEnabled(false);
    return TRUE;
  }
  const std::shared_ptr<Control> control = record->control;
  return control ? control->Handle(message, wParam, lParam) : DefWindowProc(window, message, wParam, lParam);
}

void Register(const char* name, WNDPROC procedure) {
  const WNDCLASS windowClass = {CS_DBLCLKS, procedure, 0,       0,       nullptr,
                                nullptr,    nullptr,   nullptr, nullptr, name};
  RegisterClassA(&windowClass);
}

}  // namespace

void RegisterControls() {
  static bool done = false;
  if (done) return;
  done = true;
  Register("BUTTON", &ControlProc<&MakeButton>);
  Register("EDIT", &ControlProc<&MakeEdit>);
  Register("STATIC", &ControlProc<&MakeStatic>);
  Register("COMBOBOX", &ControlProc<&MakeComboBox>);
  Register("msctls_updown32", &ControlProc<&MakeSpin>);
  Register("msctls_progress32", &ControlProc<&MakeProgress>);
}

}  // namespace platform
