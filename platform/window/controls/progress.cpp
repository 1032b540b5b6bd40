#include <QProgressBar>
#include <algorithm>

#include "platform/window/controls/detail/control.h"

namespace platform {
namespace {

class ProgressControl : public Control {
 public:
  ProgressControl(HWND window, QWidget* parent) : Control(window, new QProgressBar(parent)) {
    parent->parentWidget()->setAttribute(Qt::WA_TransparentForMouseEvents);
    parent->setFocusProxy(nullptr);
    Bar().setTextVisible(false);
    Bar().setRange(0, 100);
    Bar().setValue(0);
  }

  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override {
    const auto words = static_cast<WPARAM>(lParam);
    switch (message) {
      case PBM_SETRANGE:
        return SetRange(LOWORD(words), HIWORD(words));
      case PBM_SETPOS:
        return MoveTo(static_cast<int>(wParam));
      case PBM_STEPIT: {
        const int next = Bar().value() + kStep;  // beyond the end it begins again
        return MoveTo(next > Bar().maximum() ? Bar().minimum() + next - Bar().maximum() : next);
      }
      case PBM_GETPOS:
        return Bar().value();
      default:
        return Control::Handle(message, wParam, lParam);
    }
  }

 protected:
  bool HasText() const override { return false; }
  int DialogCode() const override { return DLGC_STATIC; }

 private:
  QProgressBar& Bar() const { return *static_cast<QProgressBar*>(Widget()); }

  LRESULT SetRange(int low, int high) const {
    const LRESULT former = MAKELONG(Bar().minimum(), Bar().maximum());
    const int value = std::clamp(Bar().value(), low, std::max(low, high));
    Bar().setRange(low, std::max(low, high));
    Bar().setValue(value);
    return former;
  }

  /// The former position.
  LRESULT MoveTo(int position) const {
    const int former = Bar().value();
    Bar().setValue(std::clamp(position, Bar().minimum(), Bar().maximum()));
    return former;
  }

  enum : int { kStep = 10 };
};

}  // namespace

std::shared_ptr<Control> MakeProgress(HWND window, QWidget* parent) {
  return std::make_shared<ProgressControl>(window, parent);
}

}  // namespace platform
