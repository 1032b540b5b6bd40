#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <string>

#include "platform/base/translation.h"
#include "platform/window/detail/modal_widget.h"
#include "platform/window/detail/show_message_box.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/message_box_flags.h"
#include "platform/window/pump.h"

namespace {

struct BoxButton {
  int result;
  QMessageBox::StandardButton button;
  const char* text;  // of OwnTexts; Qt's own texts would be English
};

constexpr BoxButton kOk = {IDOK, QMessageBox::Ok, "OK"};
constexpr BoxButton kCancel = {IDCANCEL, QMessageBox::Cancel, "Annulla"};
constexpr BoxButton kAbort = {IDABORT, QMessageBox::Abort, "Interrompi"};
constexpr BoxButton kRetry = {IDRETRY, QMessageBox::Retry, "Riprova"};
constexpr BoxButton kIgnore = {IDIGNORE, QMessageBox::Ignore, "Ignora"};
constexpr BoxButton kYes = {IDYES, QMessageBox::Yes, "Sì"};
constexpr BoxButton kNo = {IDNO, QMessageBox::No, "No"};

std::vector<BoxButton> ButtonsOf(UINT type) {
  switch (type & MB_TYPEMASK) {
    case MB_OKCANCEL:
      return {kOk, kCancel};
    case MB_ABORTRETRYIGNORE:
      return {kAbort, kRetry, kIgnore};
    case MB_YESNOCANCEL:
      return {kYes, kNo, kCancel};
    case MB_YESNO:
      return {kYes, kNo};
    case MB_RETRYCANCEL:
      return {kRetry, kCancel};
    default:
      return {kOk};
  }
}

QMessageBox::Icon IconOf(UINT type) {
  switch (type & MB_ICONMASK) {
    case MB_ICONERROR:
      return QMessageBox::Critical;
    case MB_ICONQUESTION:
      return QMessageBox::Question;
    case MB_ICONEXCLAMATION:
      return QMessageBox::Warning;
    case MB_ICONINFORMATION:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

}  // namespace

namespace platform {

int ShowMessageBox(const char* title, const char* text, UINT type) {
  EnsureApplication();
  if (InsideQtPaint() && ButtonsOf(type).size() == 1) {
    QTimer::singleShot(0, [title = std::string(title), text = std::string(text), type] {
      ShowMessageBox(title.c_str(), text.c_str(), type);
    });
    return IDOK;
  }
  ReleaseCapture();
  // The owner may end while the box is up, and the box with it.
  const ModalWidget<QMessageBox> guarded(new QMessageBox(
      IconOf(type), QString::fromUtf8(title), QString::fromUtf8(text), QMessageBox::NoButton, WindowInUse()));
  QMessageBox& box = *guarded.Get();
  box.setAccessibleDescription(QString::fromUtf8(text));  // read together with the title
  box.setTextFormat(Qt::PlainText);                       // a file name may look like markup
  const std::vector<BoxButton> buttons = ButtonsOf(type);
  for (const BoxButton& button : buttons)
    box.addButton(button.button)->setText(QString::fromUtf8(platform::Localized(button.text)));
  const auto preset = static_cast<std::size_t>((type & MB_DEFMASK) >> 8);
  box.setDefaultButton(buttons[std::min(preset, buttons.size() - 1)].button);
  const int pressed = guarded.Exec();
  for (const BoxButton& button : buttons)
    if (button.button == pressed) return button.result;
  return buttons.size() == 1 ? buttons.front().result : IDCANCEL;
}

}  // namespace platform
