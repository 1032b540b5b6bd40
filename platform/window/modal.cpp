#include <QApplication>
#include <vector>

#include "platform/window/detail/dialog_shown.h"
#include "platform/window/detail/modal_widget.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

void platform::BlockOwner(HWND dialog) {
  const WindowRecord* record = FindWindowRecord(dialog);
  if (record != nullptr && record->frame && !record->IsChild())
    record->frame->setWindowModality(Qt::WindowModal);
}

namespace platform {
namespace {

std::vector<QPointer<QDialog>>& Open() {
  static std::vector<QPointer<QDialog>> open;
  return open;
}

}  // namespace

void RejectModalWidgets() {
  if (QWidget* popup = QApplication::activePopupWidget())
    QMetaObject::invokeMethod(popup, &QWidget::close, Qt::QueuedConnection);
  for (const QPointer<QDialog>& dialog : Open())
    if (dialog) QMetaObject::invokeMethod(dialog.data(), &QDialog::reject, Qt::QueuedConnection);
}

int ExecModal(QDialog& dialog) {
  Open().emplace_back(&dialog);
  if (Queue::Instance().IsQuitPosted()) RejectModalWidgets();
  const int result = dialog.exec();
  Open().pop_back();
  return result;
}

}  // namespace platform
