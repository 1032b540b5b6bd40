#include "platform/window/detail/dialog_shown.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

void platform::BlockOwner(HWND dialog) {
  const WindowRecord* record = FindWindowRecord(dialog);
  if (record != nullptr && record->frame && !record->IsChild())
    record->frame->setWindowModality(Qt::WindowModal);
}
