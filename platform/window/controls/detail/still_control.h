#pragma once

#include "platform/window/control_messages.h"
#include "platform/window/controls/detail/control.h"

namespace platform {

/// A control that only shows a text: it takes neither the mouse nor the keyboard. StillWidget has
/// SetText(QString).
template <typename StillWidget>
class StillControl : public Control {
 public:
  StillControl(HWND window, QWidget* parent, StillWidget* widget) : Control(window, widget) {
    parent->parentWidget()->setAttribute(Qt::WA_TransparentForMouseEvents);
    parent->setFocusProxy(nullptr);
  }

 protected:
  QString Text() const override { return m_text; }
  void SetText(const QString& text) override {
    m_text = text;
    static_cast<StillWidget*>(Widget())->SetText(text);
  }
  bool TakesFocusByMouse() const override { return false; }
  int DialogCode() const override { return DLGC_STATIC; }

 private:
  QString m_text;
};

}  // namespace platform
