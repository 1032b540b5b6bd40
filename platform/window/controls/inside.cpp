#include "platform/window/controls/inside.h"

#include "platform/window/controls/detail/control.h"
#include "platform/window/detail/cursors.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/virtual_keys.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

QWidget* ClientOf(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record == nullptr ? nullptr : record->client.data();
}

QWidget* ControlWidgetOf(HWND window) {
  const std::shared_ptr<Control> control = ControlOf(window);
  return control ? control->Widget() : nullptr;
}

QAbstractSlider* BarOf(HWND window, int bar) {
  const WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr || (bar != SB_HORZ && bar != SB_VERT)) return nullptr;
  return record->bars[static_cast<std::size_t>(bar)].data();
}

bool IsDocumentWindow(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record != nullptr && record->mdiChild;
}

}  // namespace

const Inside& TheInside() {
  static constexpr Inside inside = {
      &ClientOf,
      &ControlWidgetOf,
      &BarOf,
      &IsDocumentWindow,
      &VirtualKeyOf,
      &PreTranslateByHook,
      [](UINT milliseconds) { Queue::Instance().AdvanceTimers(milliseconds); },
      [](bool hold) { Queue::Instance().HoldKick(hold); },
      &CursorNumber,
      &ChooseMenuItem,
  };
  return inside;
}

}  // namespace platform
