// What a main window shows of its active document window: the title, and the buttons of a maximised one.

#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

constexpr int kButtonSide = 18;
constexpr int kPictureSide = 10;
constexpr const char* kCommand = "command";

/// The marks as they stand on title bars, in the colour of text.
QIcon MarkOf(UINT command, const QWidget& widget) {
  const qreal scale = widget.devicePixelRatioF();
  QPixmap pixmap(QSize(kPictureSide, kPictureSide) * scale);
  pixmap.setDevicePixelRatio(scale);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setPen(QPen(widget.palette().color(QPalette::ButtonText), 2, Qt::SolidLine, Qt::FlatCap));
  if (command == SC_MINIMIZE) painter.drawLine(1, 8, 9, 8);
  if (command == SC_CLOSE) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawLine(1, 1, 9, 9);
    painter.drawLine(1, 9, 9, 1);
  }
  if (command == SC_RESTORE) {
    painter.setPen(QPen(painter.pen().color(), 1));
    const QRect front(0, 4, 6, 5);
    painter.drawRect(front);
    painter.drawLine(front.topLeft() + QPoint(0, 1), front.topRight() + QPoint(1, 1));
    painter.drawPolyline(QPolygon({{3, 3}, {3, 0}, {9, 0}, {9, 6}, {7, 6}}));
    painter.drawLine(3, 1, 9, 1);
  }
  return {pixmap};
}

MdiClient* ClientOfFrame(HWND frame) {
  const WindowRecord* record = FindWindowRecord(frame);
  return record == nullptr ? nullptr : FindMdiClient(record->mdiClientOfFrame);
}

void AddButton(QWidget& bar, UINT command, HWND frame) {
  auto* button = new QToolButton(&bar);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::NoFocus);
  button->setIcon(MarkOf(command, *button));
  button->setIconSize(QSize(kPictureSide, kPictureSide));
  button->setFixedSize(kButtonSide, kButtonSide);
  button->setProperty(kCommand, command);
  bar.layout()->addWidget(button);
  QObject::connect(button, &QToolButton::clicked, &bar, [=] {
    const MdiClient* client = ClientOfFrame(frame);
    if (client != nullptr && TakesInput(frame)) PostMessage(client->active, WM_SYSCOMMAND, command);
  });
}

QWidget* MakeButtons(QWidget* parent, HWND frame) {
  auto* bar = new QWidget(parent);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 2, 0);
  layout->setSpacing(1);
  AddButton(*bar, SC_MINIMIZE, frame);
  AddButton(*bar, SC_RESTORE, frame);
  AddButton(*bar, SC_CLOSE, frame);
  return bar;
}

}  // namespace

bool ShowMdiButtons(WindowRecord& frame) {
  MdiClient* client = FindMdiClient(frame.mdiClientOfFrame);
  if (client == nullptr || !frame.menuBar) return false;
  const bool wanted = MaximizedMdiChild(*client) != nullptr;
  if (wanted && !client->buttons) client->buttons = MakeButtons(frame.menuBar, frame.handle);
  const bool shown = client->buttons && frame.menuBar->cornerWidget() == client->buttons;
  if (wanted == shown) return false;
  // The bar keeps room for a corner's window as long as it has one.
  frame.menuBar->setCornerWidget(wanted ? client->buttons.data() : nullptr);
  if (wanted)  // the pointer may be at the corner where they would show up first
    client->buttons->move(frame.menuBar->width() - client->buttons->sizeHint().width(), 0);
  client->buttons->setVisible(wanted);
  return true;
}

void RefreshMdiFrame(const MdiClient& client) {
  WindowRecord* frame = FindWindowRecord(client.frame);
  if (frame == nullptr || client.closing) return;
  std::string title = client.title;
  if (const WindowRecord* child = MaximizedMdiChild(client)) title += " - [" + child->text + "]";
  if (title != frame->text)
    DefWindowProc(client.frame, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(title.c_str()));
  if (ShowMdiButtons(*frame)) LayoutWindow(*frame);
}

}  // namespace platform

using platform::FindWindowRecord;
using platform::MdiClient;
using platform::WindowRecord;

LRESULT DefFrameProc(HWND frame, HWND clientHandle, UINT message, WPARAM wParam, LPARAM lParam) {
  MdiClient* client = platform::FindMdiClient(clientHandle);
  if (client == nullptr) return DefWindowProc(frame, message, wParam, lParam);
  const auto id = static_cast<UINT>(LOWORD(wParam));
  switch (message) {
    case WM_SETTEXT:
      client->title = lParam == 0 ? "" : reinterpret_cast<const char*>(lParam);
      platform::RefreshMdiFrame(*client);
      return TRUE;
    case WM_COMMAND:
      if (lParam == 0 && id >= client->firstId && id - client->firstId < client->order.size()) {
        const HWND child = client->order[id - client->firstId];
        const WindowRecord* window = FindWindowRecord(child);
        if ((window->style & WS_MINIMIZE) != 0)
          ShowWindow(child, SW_RESTORE);
        else
          platform::ActivateMdiChild(clientHandle, child);
      }
      return 0;
    case WM_INITMENUPOPUP:
      if (reinterpret_cast<HMENU>(wParam) == client->windowMenu) platform::RefreshMdiList(*client, true);
      return 0;
    case WM_SETFOCUS:
      SetFocus(clientHandle);
      return 0;
    default:
      return DefWindowProc(frame, message, wParam, lParam);
  }
}
