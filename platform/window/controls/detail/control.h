#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>

#include "platform/window/control_messages.h"
#include "platform/window/window.h"

namespace platform {

/// What makes a window a standard control: one of Qt's widgets, which fills the window, behind the window's
/// messages. Input reaches the widget only when the program has let the message pass to the control's
/// procedure. Owned by the window's record; a call in progress keeps it alive.
class Control {
 public:
  Control(HWND window, QWidget* widget);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// Default processing of a message.
  virtual LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  QWidget* Widget() const { return m_widget; }
  HWND Window() const { return m_window; }
  /// True while the widget's keyboard is at a list of its own, which the program doesn't take for a loss.
  virtual bool KeepsFocus() const { return false; }
  /// A key at the open list of the control. True: dealt with.
  virtual bool ListKey(int virtualKey) { return virtualKey < 0; }

 protected:
  virtual QString Text() const { return {}; }
  virtual void SetText(const QString&) {}
  virtual bool HasText() const { return true; }
  virtual void KeyDown(int, Qt::KeyboardModifiers) {}
  virtual void KeyUp(int, Qt::KeyboardModifiers) {}
  virtual void Char(char32_t) {}
  virtual void FocusChanged(bool) {}
  virtual bool TakesFocusByMouse() const { return true; }
  virtual void FontChanged() {}
  virtual int DialogCode() const { return 0; }
  /// The widget that a mouse message at this place is for.
  virtual void Resized(int width, int height);

  DWORD Style() const { return static_cast<DWORD>(GetWindowLong(m_window, GWL_STYLE)); }
  /// Sends WM_COMMAND to the parent. The control may be gone from the window system afterwards.
  void Notify(int code);
  /// Context for connections to the widget's signals: they end with the control, not with the widget.
  QObject* Context() { return &m_context; }
  /// Runs a handler of the widget's signal, which may end the control.
  std::shared_ptr<Control> KeepAlive() const;
  static void GiveKey(QWidget& widget, QEvent::Type type, int qtKey, Qt::KeyboardModifiers modifiers,
                      const QString& text = {});

 private:
  void GiveMouse(UINT message, WPARAM flags, LPARAM point);
  void GiveWheel(WPARAM wParam, LPARAM lParam);
  LRESULT HandleText(UINT message, WPARAM wParam, LPARAM lParam);
  bool HandleInput(UINT message, WPARAM wParam, LPARAM lParam);

  HWND m_window;
  QPointer<QWidget> m_widget;
  QPointer<QWidget> m_mouseTarget;  ///< has seen a button go down
  HFONT m_font = nullptr;
  QObject m_context;
};

/// The control of a window, null for a window of another kind.
std::shared_ptr<Control> ControlOf(HWND window);

// One for each window class, the widget made inside the parent

std::shared_ptr<Control> MakeButton(HWND window, QWidget* parent);
std::shared_ptr<Control> MakeEdit(HWND window, QWidget* parent);
std::shared_ptr<Control> MakeStatic(HWND window, QWidget* parent);
std::shared_ptr<Control> MakeComboBox(HWND window, QWidget* parent);
std::shared_ptr<Control> MakeSpin(HWND window, QWidget* parent);
std::shared_ptr<Control> MakeProgress(HWND window, QWidget* parent);

/// Sees to it that input for the widgets of controls becomes messages.
void WatchControlInput();

Qt::KeyboardModifiers CurrentModifiers();
/// An arrow key of a field for the spin control beside it, if there is one.
bool SpinByKey(HWND field, int virtualKey);

}  // namespace platform
