#include "platform/window/detail/program_style.h"

#include <QApplication>
#include <QIcon>
#include <QIconEngine>
#include <QPainter>
#include <QProxyStyle>

#include "platform/window/detail/scroll_bar_pictures.h"

namespace platform {
namespace {

/// A picture of the desktop's style that is read when it is first painted.
class LateIcon : public QIconEngine {
 public:
  explicit LateIcon(QStyle::StandardPixmap picture) : m_picture(picture) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    Read().paint(painter, rect, Qt::AlignCenter, mode, state);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return Read().pixmap(size, mode, state);
  }
  QIconEngine* clone() const override { return new LateIcon(*this); }

 private:
  const QIcon& Read() {
    const auto* style = dynamic_cast<const QProxyStyle*>(QApplication::style());
    if (m_icon.isNull() && style != nullptr) m_icon = style->baseStyle()->standardIcon(m_picture);
    return m_icon;
  }

  QStyle::StandardPixmap m_picture;
  QIcon m_icon;
};

/// The desktop's style where it costs less. A menu bar asks for the arrow behind its last menu even where
/// everything fits. The first picture that is read makes Qt load all its image plugins, which is a part of
/// the time until the first window shows.
class ProgramStyle : public QProxyStyle {
 public:
  QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                     const QWidget* widget) const override {
    return picture == SP_ToolBarHorizontalExtensionButton
               ? QIcon(new LateIcon(picture))
               : QProxyStyle::standardIcon(picture, option, widget);
  }
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override {
    const auto* bar =
        control == CC_ScrollBar ? qstyleoption_cast<const QStyleOptionSlider*>(option) : nullptr;
    if (bar == nullptr || !m_scrollBars.Draw(*baseStyle(), *bar, *painter, widget))
      QProxyStyle::drawComplexControl(control, option, painter, widget);
  }

 private:
  mutable ScrollBarPictures m_scrollBars;
};

}  // namespace

void SetProgramStyle() {
  QApplication::setStyle(new ProgramStyle);
}

}  // namespace platform
