// A document window on the screen: title bar, border and what the mouse does with them.

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QStyleOptionTitleBar>
#include <algorithm>
#include <utility>

#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

constexpr int kGrip = 4;     // from the outer edge
constexpr int kCorner = 16;  // along it
constexpr int kLeastWidth = 120;
constexpr int kLeastInSight = 40;  // of the title bar, inside the client

Qt::CursorShape CursorFor(Qt::Edges edges) {
  const bool horizontal = (edges & (Qt::LeftEdge | Qt::RightEdge)) != 0;
  const bool vertical = (edges & (Qt::TopEdge | Qt::BottomEdge)) != 0;
  if (!horizontal && !vertical) return Qt::ArrowCursor;
  if (!vertical) return Qt::SizeHorCursor;
  if (!horizontal) return Qt::SizeVerCursor;
  const bool falling = edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
  return falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

class MdiChildWidget : public FrameWidget {
 public:
  MdiChildWidget(HWND window, QWidget* parent) : FrameWidget(window, parent, Qt::Widget) {
    setMouseTracking(true);
    setCursor(Qt::ArrowCursor);
  }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent*) override { SetHot(QStyle::SC_None); }
  void childEvent(QChildEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override { event->accept(); }
  void contextMenuEvent(QContextMenuEvent* event) override { event->accept(); }

 private:
  enum class Drag { None, Move, Size };

  const WindowRecord* Record() const { return FindWindowRecord(Window()); }
  int TitleHeight() const { return MdiChildMargins(*Record()).top(); }
  QStyleOptionTitleBar TitleOption() const;
  QStyle::SubControl TitlePartAt(QPoint point) const;
  Qt::Edges EdgesAt(QPoint point) const;
  void SetHot(QStyle::SubControl part);
  void DragTo(QPoint global);
  void Resize(QRect& place, QPoint by) const;
  void Choose(QStyle::SubControl part);

  Drag m_drag = Drag::None;
  Qt::Edges m_edges;
  QPoint m_from;                                   ///< of the pointer, on the screen
  QRect m_place;                                   ///< when the drag began
  QStyle::SubControl m_pressed = QStyle::SC_None;  ///< a button held down
  QStyle::SubControl m_hot = QStyle::SC_None;
};

QStyleOptionTitleBar MdiChildWidget::TitleOption() const {
  const WindowRecord& window = *Record();
  QStyleOptionTitleBar option;
  option.initFrom(this);
  option.rect = QRect(0, 0, width(), TitleHeight());
  option.text = fontMetrics().elidedText(QString::fromStdString(window.text), Qt::ElideRight,
                                         std::max(width() - 4 * TitleHeight(), 0));
  const bool hasIcon = window.windowClass->icon != nullptr;  // not the application's
  option.icon = hasIcon ? windowIcon() : style()->standardIcon(QStyle::SP_FileIcon);
  option.titleBarFlags = Qt::Window | Qt::WindowTitleHint;
  if ((window.style & WS_SYSMENU) != 0)
    option.titleBarFlags |= Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
  if ((window.style & WS_MINIMIZEBOX) != 0) option.titleBarFlags |= Qt::WindowMinimizeButtonHint;
  if ((window.style & WS_MAXIMIZEBOX) != 0) option.titleBarFlags |= Qt::WindowMaximizeButtonHint;
  const bool active = IsActiveMdiChild(window);
  option.titleBarState = MdiStateOf(window) == MdiState::Minimized ? Qt::WindowMinimized : Qt::WindowNoState;
  if (active) option.titleBarState |= static_cast<int>(QStyle::State_Active);
  option.state.setFlag(QStyle::State_Active, active);
  option.palette.setCurrentColorGroup(active ? QPalette::Active : QPalette::Inactive);
  option.subControls = QStyle::SC_All;
  option.activeSubControls = m_pressed != QStyle::SC_None ? m_pressed : m_hot;
  option.state.setFlag(QStyle::State_Sunken, m_pressed != QStyle::SC_None && m_pressed == m_hot);
  option.state.setFlag(QStyle::State_MouseOver, m_hot != QStyle::SC_None);
  return option;
}

void MdiChildWidget::paintEvent(QPaintEvent* event) {
  const WindowRecord* window = Record();
  if (window != nullptr && MdiStateOf(*window) != MdiState::Maximized) {
    QPainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.lineWidth = kGrip;
    frame.state.setFlag(QStyle::State_Active, IsActiveMdiChild(*window));
    style()->drawPrimitive(QStyle::PE_FrameWindow, &frame, &painter, this);
    const QStyleOptionTitleBar title = TitleOption();
    style()->drawComplexControl(QStyle::CC_TitleBar, &title, &painter, this);
  }
  FrameWidget::paintEvent(event);
}

QStyle::SubControl MdiChildWidget::TitlePartAt(QPoint point) const {
  if (!QRect(0, 0, width(), TitleHeight()).contains(point)) return QStyle::SC_None;
  const QStyleOptionTitleBar option = TitleOption();
  return style()->hitTestComplexControl(QStyle::CC_TitleBar, &option, point, this);
}

Qt::Edges MdiChildWidget::EdgesAt(QPoint point) const {
  const WindowRecord& window = *Record();
  if ((window.style & WS_THICKFRAME) == 0 || MdiStateOf(window) != MdiState::Normal) return {};
  if (rect().marginsRemoved({kGrip, kGrip, kGrip, kGrip}).contains(point)) return {};
  // Near a corner both edges move.
  Qt::Edges edges;
  if (point.x() < kCorner) edges |= Qt::LeftEdge;
  if (point.x() >= width() - kCorner) edges |= Qt::RightEdge;
  if (point.y() < kCorner) edges |= Qt::TopEdge;
  if (point.y() >= height() - kCorner) edges |= Qt::BottomEdge;
  return edges;
}

void MdiChildWidget::mousePressEvent(QMouseEvent* event) {
  if (Record() == nullptr || !TakesInput(Window())) return;
  ActivateMdiChildAround(Window());
  if (Record() == nullptr || event->button() != Qt::LeftButton) return;
  const QPoint point = event->position().toPoint();
  m_from = event->globalPosition().toPoint();
  m_place = geometry();
  m_edges = EdgesAt(point);
  if (m_edges) {
    m_drag = Drag::Size;
    return;
  }
  const QStyle::SubControl part = TitlePartAt(point);
  if (part == QStyle::SC_TitleBarLabel) {
    m_drag = MdiStateOf(*Record()) == MdiState::Maximized ? Drag::None : Drag::Move;
  } else if (part != QStyle::SC_None && part != QStyle::SC_TitleBarSysMenu) {
    m_pressed = m_hot = part;
    update();
  }
}

void MdiChildWidget::mouseMoveEvent(QMouseEvent* event) {
  if (Record() == nullptr) return;
  const QPoint point = event->position().toPoint();
  if (m_drag != Drag::None) {
    DragTo(event->globalPosition().toPoint());
    return;
  }
  if (event->buttons() == Qt::NoButton) setCursor(CursorFor(EdgesAt(point)));
  SetHot(TitlePartAt(point));
}

void MdiChildWidget::SetHot(QStyle::SubControl part) {
  if (std::exchange(m_hot, part) != part) update();
}

void MdiChildWidget::childEvent(QChildEvent* event) {
  // On the way from the title bar to the client area the pointer doesn't leave this widget.
  if (event->added()) event->child()->installEventFilter(this);
}

bool MdiChildWidget::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::Enter) SetHot(QStyle::SC_None);
  return false;
}

void MdiChildWidget::DragTo(QPoint global) {
  const QPoint by = global - m_from;
  QRect place = m_place;
  if (m_drag == Drag::Size)
    Resize(place, by);
  else
    place.translate(by);
  // The title bar stays where it can be taken hold of.
  const QSize room = parentWidget()->size();
  if (m_drag == Drag::Move)
    place.moveTo(
        std::clamp(place.x(), kLeastInSight - place.width(), std::max(room.width() - kLeastInSight, 0)),
        std::clamp(place.y(), 0, std::max(room.height() - TitleHeight(), 0)));
  SetWindowPos(Window(), nullptr, place.x(), place.y(), place.width(), place.height(),
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void MdiChildWidget::Resize(QRect& place, QPoint by) const {
  const int leastHeight = TitleHeight() + kGrip;
  if (m_edges & Qt::LeftEdge) place.setLeft(std::min(place.left() + by.x(), place.right() + 1 - kLeastWidth));
  if (m_edges & Qt::RightEdge)
    place.setRight(std::max(place.right() + by.x(), place.left() - 1 + kLeastWidth));
  if (m_edges & Qt::TopEdge)
    place.setTop(std::clamp(place.top() + by.y(), 0, std::max(place.bottom() + 1 - leastHeight, 0)));
  if (m_edges & Qt::BottomEdge)
    place.setBottom(std::max(place.bottom() + by.y(), place.top() - 1 + leastHeight));
}

void MdiChildWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  m_drag = Drag::None;
  const QStyle::SubControl pressed = std::exchange(m_pressed, QStyle::SC_None);
  update();
  if (Record() == nullptr || pressed == QStyle::SC_None || !TakesInput(Window())) return;
  if (TitlePartAt(event->position().toPoint()) == pressed) Choose(pressed);
}

void MdiChildWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (Record() == nullptr || event->button() != Qt::LeftButton || !TakesInput(Window())) return;
  const QStyle::SubControl part = TitlePartAt(event->position().toPoint());
  m_drag = Drag::None;
  if (part == QStyle::SC_TitleBarLabel)
    PostMessage(Window(), WM_SYSCOMMAND,
                MdiStateOf(*Record()) == MdiState::Normal ? SC_MAXIMIZE : SC_RESTORE);
  else if (part == QStyle::SC_TitleBarSysMenu)
    PostMessage(Window(), WM_SYSCOMMAND, SC_CLOSE);
  else
    mousePressEvent(event);
}

void MdiChildWidget::Choose(QStyle::SubControl part) {
  static constexpr std::pair<QStyle::SubControl, UINT> kCommands[] = {
      {QStyle::SC_TitleBarMinButton, SC_MINIMIZE},
      {QStyle::SC_TitleBarMaxButton, SC_MAXIMIZE},
      {QStyle::SC_TitleBarNormalButton, SC_RESTORE},
      {QStyle::SC_TitleBarCloseButton, SC_CLOSE},
  };
  for (const auto& [button, command] : kCommands)
    if (button == part) PostMessage(Window(), WM_SYSCOMMAND, command);
}

}  // namespace

FrameWidget* MakeMdiChildWidget(HWND window, QWidget* parent) {
  return new MdiChildWidget(window, parent);
}

}  // namespace platform
