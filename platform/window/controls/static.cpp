#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

#include "platform/window/controls/detail/still_control.h"

namespace platform {
namespace {

/// Text with its access key underlined, or a frame or line.
class StaticWidget : public QWidget {
 public:
  StaticWidget(DWORD style, QWidget* parent) : QWidget(parent), m_style(style) {}

  void SetText(const QString& text) {
    m_text = text;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const DWORD type = m_style & SS_TYPEMASK;
    if (IsFrame(type)) {
      DrawFrame(painter, type);
      return;
    }
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(palette().color(group, QPalette::WindowText));
    painter.translate(0, -Overhang());
    painter.drawText(rect(), FlagsOf(type) | Qt::TextDontClip, m_text);
  }

 private:
  /// What a line is higher on this display than the window, whose height comes from whole units: taken from
  /// the room above the letters, so that those below the line stay whole.
  double Overhang() const {
    QFont onDevice = font();
    if (onDevice.pixelSize() <= 0 || (m_style & SS_CENTERIMAGE) != 0) return 0;
    const double scale = devicePixelRatioF();
    onDevice.setPixelSize(qRound(onDevice.pixelSize() * scale));
    const double missing = QFontMetrics(onDevice).height() / scale - height();
    return missing > 0 && missing <= 1 ? missing : 0;
  }

  static bool IsFrame(DWORD type) {
    return (type >= 4 && type <= SS_WHITEFRAME) || (type >= SS_ETCHEDHORZ && type <= SS_ETCHEDFRAME);
  }

  int FlagsOf(DWORD type) const {
    int flags = (m_style & SS_NOPREFIX) != 0 ? 0 : Qt::TextShowMnemonic;
    flags |= (m_style & SS_CENTERIMAGE) != 0 ? Qt::AlignVCenter : Qt::AlignTop;
    flags |= type == SS_CENTER ? Qt::AlignHCenter : type == SS_RIGHT ? Qt::AlignRight : Qt::AlignLeft;
    return type == SS_LEFTNOWORDWRAP || type == SS_SIMPLE ? flags | Qt::TextSingleLine
                                                          : flags | Qt::TextWordWrap;
  }

  void DrawFrame(QPainter& painter, DWORD type) const {
    const QColor dark = palette().color(QPalette::Mid);
    switch (type) {
      case SS_ETCHEDHORZ:
        painter.fillRect(0, 0, width(), 1, dark);
        return;
      case SS_ETCHEDVERT:
        painter.fillRect(0, 0, 1, height(), dark);
        return;
      default:
        break;
    }
    painter.setPen(type == SS_WHITEFRAME   ? palette().color(QPalette::Light)
                   : type == SS_BLACKFRAME ? palette().color(QPalette::Shadow)
                                           : dark);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }

  DWORD m_style;
  QString m_text;
};

}  // namespace

std::shared_ptr<Control> MakeStatic(HWND window, QWidget* parent) {
  const auto style = static_cast<DWORD>(GetWindowLong(window, GWL_STYLE));
  return std::make_shared<StillControl<StaticWidget>>(window, parent, new StaticWidget(style, parent));
}

}  // namespace platform
