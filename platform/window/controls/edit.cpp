#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>

#include "platform/window/controls/detail/control.h"
#include "platform/window/controls/detail/line_field.h"

namespace platform {
namespace {

Qt::Alignment AlignmentOf(DWORD style) {
  if ((style & ES_CENTER) != 0) return Qt::AlignHCenter | Qt::AlignVCenter;
  return ((style & ES_RIGHT) != 0 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

class EditControl : public Control {
 public:
  EditControl(HWND window, QWidget* parent) : Control(window, new QLineEdit(parent)), m_field(Line()) {
    const auto exStyle = static_cast<DWORD>(GetWindowLong(window, GWL_EXSTYLE));
    Line().setFrame((Style() & WS_BORDER) != 0 || (exStyle & WS_EX_CLIENTEDGE) != 0);
    Line().setAlignment(AlignmentOf(Style()));
    if ((Style() & ES_PASSWORD) != 0) Line().setEchoMode(QLineEdit::Password);
    Line().setReadOnly((Style() & ES_READONLY) != 0);
    QObject::connect(&Line(), &QLineEdit::textChanged, Context(), [this] { Changed(); });
    QObject::connect(&Line(), &QLineEdit::textEdited, Context(), [this] { m_field.CutExcess(); });
  }

  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override {
    switch (message) {
      case EM_LIMITTEXT:
        m_field.SetLimit(static_cast<int>(wParam));
        return 0;
      case EM_SETREADONLY:
        SetReadOnly(wParam != 0);
        return TRUE;
      case EM_SETSEL:
        m_field.Select(static_cast<int>(wParam), static_cast<int>(lParam));
        return 0;
      case EM_GETSEL:
        return m_field.Selection(reinterpret_cast<DWORD*>(wParam), reinterpret_cast<DWORD*>(lParam));
      case EM_REPLACESEL:
        Line().insert(QString::fromUtf8(reinterpret_cast<const char*>(lParam)));
        return 0;
      case WM_CONTEXTMENU:
        m_field.ShowMenu(lParam);
        return 0;
      default:
        return Control::Handle(message, wParam, lParam);
    }
  }

 protected:
  QString Text() const override { return Line().text(); }
  void SetText(const QString& text) override {
    Line().setText(text);
    m_field.Settle();
  }
  void KeyDown(int key, Qt::KeyboardModifiers modifiers) override {
    if ((key == VK_UP || key == VK_DOWN) && SpinByKey(Window(), key)) return;
    m_field.KeyDown(key, modifiers);
  }
  void Char(char32_t c) override {
    const bool printable = c >= U' ' && c != 0x7f;
    if ((Style() & ES_NUMBER) != 0 && printable && (c < U'0' || c > U'9')) return;
    m_field.Char(c);
  }
  void FocusChanged(bool gained) override { Notify(gained ? EN_SETFOCUS : EN_KILLFOCUS); }
  int DialogCode() const override { return DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS; }

 private:
  QLineEdit& Line() const { return *static_cast<QLineEdit*>(Widget()); }

  void SetReadOnly(bool readOnly) {
    Line().setReadOnly(readOnly);
    const DWORD style = readOnly ? Style() | ES_READONLY : Style() & ~static_cast<DWORD>(ES_READONLY);
    SetWindowLong(Window(), GWL_STYLE, static_cast<std::intptr_t>(style));
  }

  void Changed() {
    if (!m_field.Settle()) return;
    const std::shared_ptr<Control> alive = KeepAlive();
    Notify(EN_UPDATE);
    if (IsWindow(Window()) != 0) Notify(EN_CHANGE);
  }

  LineField m_field;
};

}  // namespace

std::shared_ptr<Control> MakeEdit(HWND window, QWidget* parent) {
  return std::make_shared<EditControl>(window, parent);
}

}  // namespace platform
