#include "platform/window/detail/widgets.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolTip>

#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/window_record.h"

namespace platform {

void FrameWidgetGone(HWND window);

namespace {

UINT ButtonMessage(Qt::MouseButton button, UINT ofLeft) {
  switch (button) {
    case Qt::LeftButton:
      return ofLeft;
    case Qt::RightButton:
      return ofLeft + 3;
    case Qt::MiddleButton:
      return ofLeft + 6;
    default:
      return WM_NULL;
  }
}

bool WantsDoubleClicks(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record != nullptr && (record->windowClass->style & CS_DBLCLKS) != 0;
}

/// Queues the WM_MOUSELEAVE that the program asked for.
void TellLeave(HWND window) {
  WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr || !record->trackLeave) return;
  record->trackLeave = false;
  Queue::Instance().PostInput({window, WM_MOUSELEAVE, 0, 0, MessageTime(), PointerPosition(), 0});
}

/// False where the window has no text to show.
bool ShowToolTip(HWND window, QWidget& client, const QHelpEvent& event) {
  const WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr || record->toolTip == nullptr) return false;
  RECT area = {};
  const CString text = record->toolTip(window, {event.x(), event.y()}, &area);
  if (text.IsEmpty() != 0) {
    QToolTip::hideText();
    return true;
  }
  QToolTip::showText(event.globalPos(), QString::fromUtf8(static_cast<const char*>(text)), &client,
                     QRect(area.left, area.top, area.right - area.left, area.bottom - area.top));
  return true;
}

}  // namespace

void SetToolTipSource(HWND window, ToolTipSource source) {
  if (WindowRecord* record = FindWindowRecord(window)) record->toolTip = source;
}

// FrameWidget

FrameWidget::FrameWidget(HWND window, QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), m_window(window) {
  setFocusPolicy(Qt::NoFocus);
  setAutoFillBackground(true);  // edge and corner between the bars
}

FrameWidget::~FrameWidget() {
  if (m_window != nullptr) FrameWidgetGone(m_window);
}

bool FrameWidget::event(QEvent* event) {
  // On a child the pointer is still inside the parent for Qt, which isn't told when it goes on from there.
  if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) TellLeave(GetParent(m_window));
  if (m_window != nullptr && isWindow()) {
    if (event->type() == QEvent::WindowActivate) SendGuarded(m_window, WM_ACTIVATE, 1, 0);
    if (event->type() == QEvent::WindowDeactivate) {
      // The mouse isn't ours any more once another window is at the front.
      const HWND capture = GetCapture();
      if (capture == m_window || IsChild(m_window, capture)) ReleaseCapture();
      SendGuarded(m_window, WM_ACTIVATE, 0, 0);
    }
  }
  return QWidget::event(event);
}

void FrameWidget::paintEvent(QPaintEvent*) {
  const WindowRecord* window = FindWindowRecord(m_window);
  if (window == nullptr || window->control) return;
  QPainter painter(this);
  if ((window->exStyle & WS_EX_CLIENTEDGE) != 0) {
    QStyleOptionFrame option;
    option.initFrom(this);
    option.rect = rect().marginsRemoved(MdiChildMargins(*window));
    option.rect.setTop(option.rect.top() + MenuBarHeight(*window));
    option.lineWidth = GetSystemMetrics(SM_CXEDGE);
    option.state |= QStyle::State_Sunken;
    style()->drawPrimitive(QStyle::PE_Frame, &option, &painter, this);
  }
}

void FrameWidget::resizeEvent(QResizeEvent*) {
  if (WindowRecord* window = FindWindowRecord(m_window)) LayoutWindow(*window);
}

void FrameWidget::moveEvent(QMoveEvent* event) {
  SendGuarded(m_window, WM_MOVE, 0, MAKELPARAM(event->pos().x(), event->pos().y()));
}

void FrameWidget::showEvent(QShowEvent*) {
  WindowRecord* window = FindWindowRecord(m_window);
  if (window == nullptr) return;
  LayoutWindow(*window);
  InvalidateRect(m_window, nullptr, TRUE);
}

void FrameWidget::closeEvent(QCloseEvent* event) {
  if (m_window == nullptr) return;
  event->ignore();  // the program decides, by its answer to WM_CLOSE
  if (TakesInput(m_window)) PostMessage(m_window, WM_CLOSE);
}

void FrameWidget::keyPressEvent(QKeyEvent* event) {
  if (m_window == nullptr || !QueueKey(m_window, *event)) event->ignore();
}

void FrameWidget::keyReleaseEvent(QKeyEvent* event) {
  if (m_window == nullptr || !QueueKey(m_window, *event)) event->ignore();
}

void FrameWidget::focusInEvent(QFocusEvent*) {
  FocusGained(m_window);
}

void FrameWidget::focusOutEvent(QFocusEvent*) {
  FocusLost(m_window);
}

// ClientWidget

ClientWidget::ClientWidget(HWND window, FrameWidget* parent) : QWidget(parent), m_window(window) {
  setFocusPolicy(Qt::NoFocus);  // by SetFocus only
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_InputMethodEnabled, false);
  setAcceptDrops(true);  // what the window itself doesn't take, its parents are asked for
}

bool ClientWidget::event(QEvent* event) {
  // Alt with a letter opens our own bar's menus, but after the program has seen the key; the shortcuts that
  // Qt makes for a bar would come first.
  if (event->type() == QEvent::ShortcutOverride && HasMenuBar(GetTopLevelWindow(m_window)) &&
      static_cast<QKeyEvent*>(event)->modifiers() == Qt::AltModifier &&
      !static_cast<QKeyEvent*>(event)->text().isEmpty()) {
    event->accept();
    return true;
  }
  if (event->type() == QEvent::ToolTip && ShowToolTip(m_window, *this, static_cast<QHelpEvent&>(*event)))
    return true;
  return QWidget::event(event);
}

void ClientWidget::leaveEvent(QEvent*) {
  TellLeave(m_window);
}

void ClientWidget::mousePressEvent(QMouseEvent* event) {
  const UINT message = ButtonMessage(event->button(), WM_LBUTTONDOWN);
  if (m_window != nullptr && message != WM_NULL) QueueMouse(m_window, *event, message, *this);
}

void ClientWidget::mouseReleaseEvent(QMouseEvent* event) {
  const UINT message = ButtonMessage(event->button(), WM_LBUTTONUP);
  if (m_window != nullptr && message != WM_NULL) QueueMouse(m_window, *event, message, *this);
}

void ClientWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  const UINT message =
      ButtonMessage(event->button(), WantsDoubleClicks(m_window) ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN);
  if (m_window != nullptr && message != WM_NULL) QueueMouse(m_window, *event, message, *this);
}

void ClientWidget::mouseMoveEvent(QMouseEvent* event) {
  if (m_window != nullptr) QueueMouse(m_window, *event, WM_MOUSEMOVE, *this);
}

void ClientWidget::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (m_window != nullptr) QueueWheel(m_window, *event);
}

void ClientWidget::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  // The mouse's context menu follows from WM_RBUTTONUP; only the keyboard's begins here.
  if (m_window == nullptr || event->reason() != QContextMenuEvent::Keyboard || !TakesInput(m_window)) return;
  PostMessage(m_window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(m_window),
              MenuPlaceWithoutPointer(m_window));
}

void ClientWidget::dragEnterEvent(QDragEnterEvent* event) {
  const WindowRecord* record = FindWindowRecord(m_window);
  const bool takes = record != nullptr && (record->exStyle & WS_EX_ACCEPTFILES) != 0 && TakesInput(m_window);
  event->setAccepted(takes && CarriesFiles(event->mimeData()));
}

void ClientWidget::dropEvent(QDropEvent* event) {
  if (m_window == nullptr || !TakesInput(m_window)) return;
  event->setDropAction(Qt::CopyAction);  // the files stay where they are
  event->accept();
  QueueDrop(m_window, *event);
}

void ClientWidget::keyPressEvent(QKeyEvent* event) {
  if (m_window == nullptr || !QueueKey(m_window, *event)) event->ignore();
}

void ClientWidget::keyReleaseEvent(QKeyEvent* event) {
  if (m_window == nullptr || !QueueKey(m_window, *event)) event->ignore();
}

void ClientWidget::inputMethodEvent(QInputMethodEvent* event) {
  for (const char32_t c : event->commitString().toUcs4()) PostMessage(m_window, WM_CHAR, c, 1);
}

void ClientWidget::focusInEvent(QFocusEvent*) {
  FocusGained(m_window);
}

void ClientWidget::focusOutEvent(QFocusEvent* event) {
  const bool toMenu = event->reason() == Qt::PopupFocusReason || event->reason() == Qt::MenuBarFocusReason;
  if (!toMenu) FocusLost(m_window);
}

}  // namespace platform

BOOL TrackMouseEvent(TRACKMOUSEEVENT* event) {
  platform::WindowRecord* window = event == nullptr ? nullptr : platform::FindWindowRecord(event->hwndTrack);
  if (window == nullptr || event->dwFlags != TME_LEAVE) return FALSE;
  window->trackLeave = true;
  return TRUE;
}
