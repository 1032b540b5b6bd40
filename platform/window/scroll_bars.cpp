#include <QStyle>
#include <QWheelEvent>
#include <algorithm>
#include <cstdint>

#include "platform/window/detail/queue.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

using platform::FindWindowRecord;
using platform::ScrollBarState;
using platform::WindowRecord;

namespace platform {
namespace {

DWORD StyleOf(int bar) {
  return bar == SB_HORZ ? WS_HSCROLL : WS_VSCROLL;
}

/// Highest position at which the page still lies in the range.
int LastPosition(const ScrollBarState& state) {
  const std::int64_t page = std::max<std::int64_t>(state.page, 1);
  return static_cast<int>(std::max<std::int64_t>(state.minimum, state.maximum - page + 1));
}

void Clamp(ScrollBarState& state) {
  state.maximum = std::max(state.maximum, state.minimum);
  const std::int64_t range = static_cast<std::int64_t>(state.maximum) - state.minimum + 1;
  state.page = static_cast<UINT>(std::min<std::int64_t>(state.page, range));
  state.position = std::clamp(state.position, state.minimum, LastPosition(state));
}

/// A bar has something to do while its page doesn't cover its range.
bool IsNeeded(const ScrollBarState& state) {
  const std::int64_t range = static_cast<std::int64_t>(state.maximum) - state.minimum;
  return range > 0 && state.page <= range;
}

void UpdateWidget(WindowRecord& window, int bar) {
  const ScrollBarState& state = window.scroll[static_cast<std::size_t>(bar)];
  WindowScrollBar* widget = window.bars[static_cast<std::size_t>(bar)];
  if (widget == nullptr) return;
  const QSignalBlocker quiet(widget);
  widget->setRange(state.minimum, LastPosition(state));
  widget->setPageStep(static_cast<int>(std::max(state.page, 1U)));
  widget->setEnabled(IsNeeded(state));
  if (!widget->isSliderDown()) widget->setValue(state.position);
}

bool ShowBar(WindowRecord& window, int bar, bool show) {
  const DWORD style = StyleOf(bar);
  if (((window.style & style) != 0) == show) return false;
  window.style = show ? window.style | style : window.style & ~style;
  return true;
}

}  // namespace

void RefreshScrollBar(WindowRecord& window, int bar) {
  const HWND handle = window.handle;
  if (ShowBar(window, bar, IsNeeded(window.scroll[static_cast<std::size_t>(bar)]))) LayoutWindow(window);
  // WM_SIZE may have changed or ended the window.
  if (WindowRecord* alive = FindWindowRecord(handle)) UpdateWidget(*alive, bar);
}

// The widget

WindowScrollBar::WindowScrollBar(HWND window, int bar, FrameWidget* parent)
    : QScrollBar(bar == SB_HORZ ? Qt::Horizontal : Qt::Vertical, parent), m_window(window), m_bar(bar) {
  setFocusPolicy(Qt::NoFocus);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setCursor(Qt::ArrowCursor);
  connect(this, &QScrollBar::actionTriggered, this, [this](int action) { OnAction(action); });
  connect(this, &QScrollBar::sliderReleased, this, [this] { OnReleased(); });
}

void WindowScrollBar::wheelEvent(QWheelEvent* event) {
  // Qt would move the slider; the wheel is the window's, which scrolls by its own measure.
  event->accept();
  if (m_window != nullptr) QueueWheel(m_window, *event);
}

void WindowScrollBar::Send(int code, int position) {
  if (m_window == nullptr || !TakesInput(m_window)) return;
  SendGuarded(m_window, m_bar == SB_HORZ ? WM_HSCROLL : WM_VSCROLL, MAKEWPARAM(code, position), 0);
}

void WindowScrollBar::OnAction(int action) {
  WindowRecord* window = FindWindowRecord(m_window);
  if (window == nullptr) return;
  ScrollBarState& state = window->scroll[static_cast<std::size_t>(m_bar)];
  const QPointer<WindowScrollBar> alive = this;
  const int position = sliderPosition();
  int code = -1;
  switch (action) {
    case SliderSingleStepAdd:
      code = SB_LINEDOWN;
      break;
    case SliderSingleStepSub:
      code = SB_LINEUP;
      break;
    case SliderPageStepAdd:
      code = SB_PAGEDOWN;
      break;
    case SliderPageStepSub:
      code = SB_PAGEUP;
      break;
    case SliderToMinimum:
      code = SB_TOP;
      break;
    case SliderToMaximum:
      code = SB_BOTTOM;
      break;
    case SliderMove:
      code = SB_THUMBTRACK;
      break;
    default:
      return;
  }
  if (code == SB_THUMBTRACK) {
    state.track = position;
    state.tracking = true;
    Send(code, position);
    return;
  }
  setSliderPosition(state.position);  // the program moves the bar
  Send(code, 0);
  if (alive) Send(SB_ENDSCROLL, 0);
}

void WindowScrollBar::OnReleased() {
  WindowRecord* window = FindWindowRecord(m_window);
  if (window == nullptr) return;
  ScrollBarState& state = window->scroll[static_cast<std::size_t>(m_bar)];
  if (!state.tracking) return;
  const HWND handle = m_window;
  const int bar = m_bar;
  const QPointer<WindowScrollBar> alive = this;
  Send(SB_THUMBPOSITION, state.track);
  if (alive) Send(SB_ENDSCROLL, 0);
  if (WindowRecord* still = FindWindowRecord(handle)) {
    still->scroll[static_cast<std::size_t>(bar)].tracking = false;
    UpdateWidget(*still, bar);
  }
}

}  // namespace platform

namespace {

ScrollBarState* StateOf(HWND handle, int bar) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || (bar != SB_HORZ && bar != SB_VERT)) return nullptr;
  return &window->scroll[static_cast<std::size_t>(bar)];
}

int Store(HWND handle, int bar, ScrollBarState& state, BOOL redraw) {
  platform::Clamp(state);
  const int position = state.position;
  if (redraw != 0) platform::RefreshScrollBar(*FindWindowRecord(handle), bar);
  return position;
}

}  // namespace

int SetScrollInfo(HWND handle, int bar, const SCROLLINFO* info, BOOL redraw) {
  ScrollBarState* state = StateOf(handle, bar);
  if (state == nullptr || info == nullptr) return 0;
  if ((info->fMask & SIF_RANGE) != 0) {
    state->minimum = info->nMin;
    state->maximum = info->nMax;
  }
  if ((info->fMask & SIF_PAGE) != 0) state->page = info->nPage;
  if ((info->fMask & SIF_POS) != 0) state->position = info->nPos;
  return Store(handle, bar, *state, redraw);
}

BOOL GetScrollInfo(HWND handle, int bar, SCROLLINFO* info) {
  const ScrollBarState* state = StateOf(handle, bar);
  if (state == nullptr || info == nullptr) return FALSE;
  if ((info->fMask & SIF_RANGE) != 0) {
    info->nMin = state->minimum;
    info->nMax = state->maximum;
  }
  if ((info->fMask & SIF_PAGE) != 0) info->nPage = state->page;
  if ((info->fMask & SIF_POS) != 0) info->nPos = state->position;
  if ((info->fMask & SIF_TRACKPOS) != 0) info->nTrackPos = state->tracking ? state->track : state->position;
  return TRUE;
}

int SetScrollPos(HWND handle, int bar, int position, BOOL redraw) {
  ScrollBarState* state = StateOf(handle, bar);
  if (state == nullptr) return 0;
  const int former = state->position;
  state->position = position;
  Store(handle, bar, *state, redraw);
  return former;
}

int GetScrollPos(HWND handle, int bar) {
  const ScrollBarState* state = StateOf(handle, bar);
  return state == nullptr ? 0 : state->position;
}

BOOL ShowScrollBar(HWND handle, int bar, BOOL show) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || bar < SB_HORZ || bar > SB_BOTH || bar == SB_CTL) return FALSE;
  if (bar != SB_VERT) platform::ShowBar(*window, SB_HORZ, show != 0);
  if (bar != SB_HORZ) platform::ShowBar(*window, SB_VERT, show != 0);
  platform::LayoutWindow(*window);
  if (WindowRecord* alive = FindWindowRecord(handle)) {
    platform::UpdateWidget(*alive, SB_HORZ);
    platform::UpdateWidget(*alive, SB_VERT);
  }
  return TRUE;
}
