#include <utility>

#include "tessarel12_testing.h"

namespace platform::testing {
namespace {

CString& LastTitle() {
  static CString title;
  return title;
}

}  // namespace

void SetMessageBoxAnswer(MessageBoxAnswer answer) {
  auto& place = TheSeams().messageBox;
  place = nullptr;
  if (answer == nullptr) return;
  place = [answer](const CString& text, const CString& title, UINT type) {
    LastTitle() = title;
    return answer(text, type);
  };
}

CString LastMessageBoxTitle() {
  return LastTitle();
}

void SetFileDialogAnswer(FileDialogAnswer answer) {
  TheSeams().fileDialog = answer;
}

void SetPrintDialogAnswer(PrintDialogAnswer answer) {
  TheSeams().printDialog = answer;
}

void SetMenuAnswer(MenuAnswer answer) {
  TheSeams().popupMenu = answer;
}

void OnNextDialog(std::function<void(HWND)> action) {
  TheSeams().dialogShown = [action = std::move(action)](HWND dialog) {
    const auto once = action;  // it may name the next one, which ends this function's own copy
    TheSeams().dialogShown = nullptr;
    if (once) once(dialog);
  };
}

}  // namespace platform::testing
