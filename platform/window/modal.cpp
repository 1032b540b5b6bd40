#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/dialog_shown_internal.h"

void platform::BlockOwner(HWND dialog) {
  const WindowRecord* record = FindWindowRecord(dialog);
  if (record != nullptr && record->frame && !record->IsChild())
    record->frame->setWindowModality(Qt::WindowModal);
}
