#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSizeGrip>
#include <QStyleOptionToolBar>
#include <QStyleOptionToolButton>

#include "platform/graphics/detail/dc_record.h"
#include "platform/window/detail/theme.h"

namespace platform {
namespace {

/// Options of one part, as an enabled widget with the application's colours would give them.
template <typename Option>
Option PartOption(const QRect& place) {
  Option option;
  option.rect = place;
  option.palette = QApplication::palette();
  option.direction = QApplication::layoutDirection();
  option.state = QStyle::State_Enabled | QStyle::State_Active;
  return option;
}

}  // namespace

void PaintTheme(HDC dc, const RECT& place, const std::function<void(QPainter&, const QRect&)>& draw) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || qApp == nullptr) return;
  const QRect units = UnitsOf(*record, place.left, place.top, std::int64_t{place.right} - place.left,
                              std::int64_t{place.bottom} - place.top);
  if (units.isEmpty()) return;
  // Styles keep pictures of their parts; only a device that tells its scale gets sharp ones.
  const double scale = ScaleOf(*record);
  QImage part((QSizeF(units.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  if (part.isNull()) return;
  part.setDevicePixelRatio(scale);
  part.fill(Qt::transparent);
  {
    QPainter painter(&part);
    draw(painter, QRect(QPoint(0, 0), units.size()));
  }
  PaintWithQt(*record, units, [&](QPainter& painter) { painter.drawImage(units, part); });
}

void DrawToolButtonFace(HDC dc, const RECT& place, const ToolButtonLook& look) {
  const bool raised = look.hot && look.enabled;
  if (!raised && !look.pressed && !look.checked) return;
  PaintTheme(dc, place, [&](QPainter& painter, const QRect& rect) {
    auto option = PartOption<QStyleOptionToolButton>(rect);
    option.state |= QStyle::State_AutoRaise;
    option.state.setFlag(QStyle::State_Enabled, look.enabled);
    option.state.setFlag(QStyle::State_MouseOver, raised);
    option.state.setFlag(QStyle::State_Sunken, look.pressed);
    option.state.setFlag(QStyle::State_On, look.checked);
    option.state.setFlag(QStyle::State_Raised, raised && !look.pressed && !look.checked);
    QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter);
  });
}

void DrawFocusFrame(HDC dc, const RECT& place) {
  constexpr double kWidth = 2;
  PaintTheme(dc, place, [&](QPainter& painter, const QRect& rect) {
    // The text's colour stands out from the face of a bar in every palette; that of a selection need not.
    painter.setPen(QPen(QApplication::palette().color(QPalette::WindowText), kWidth));
    painter.drawRect(QRectF(rect).adjusted(kWidth / 2, kWidth / 2, -kWidth / 2, -kWidth / 2));
  });
}

void DrawGripper(HDC dc, const RECT& place, bool vertical) {
  PaintTheme(dc, place, [&](QPainter& painter, const QRect& rect) {
    auto option = PartOption<QStyleOptionToolBar>(rect);
    option.state.setFlag(QStyle::State_Horizontal, !vertical);
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorToolBarHandle, &option, &painter);
  });
}

void DrawSeparatorLine(HDC dc, const RECT& place, bool vertical) {
  PaintTheme(dc, place, [&](QPainter& painter, const QRect& rect) {
    auto option = PartOption<QStyleOption>(rect);
    option.state.setFlag(QStyle::State_Horizontal, vertical);
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorToolBarSeparator, &option, &painter);
  });
}

void DrawSizeGrip(HDC dc, const RECT& place) {
  PaintTheme(dc, place, [&](QPainter& painter, const QRect& rect) {
    auto option = PartOption<QStyleOptionSizeGrip>(rect);
    option.corner = Qt::BottomRightCorner;
    QApplication::style()->drawControl(QStyle::CE_SizeGrip, &option, &painter);
  });
}

void DrawSplitterBar(HDC dc, const RECT& place, bool vertical) {
  PaintTheme(dc, place, [&](QPainter& painter, const QRect& rect) {
    auto option = PartOption<QStyleOption>(rect);
    option.state.setFlag(QStyle::State_Horizontal, vertical);
    painter.fillRect(rect, option.palette.window());
    QApplication::style()->drawControl(QStyle::CE_Splitter, &option, &painter);
  });
}

}  // namespace platform
