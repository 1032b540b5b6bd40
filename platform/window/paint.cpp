#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "platform/graphics/detail/device_context.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

using platform::FindWindowRecord;
using platform::WindowRecord;

namespace {

/// Paint cycles that Qt has begun and not ended.
int g_qtPaints = 0;

/// Device contexts handed out for windows, so that they end with the window if the program forgets them.
std::map<HDC, HWND>& WindowDCs() {
  static auto* dcs = new std::map<HDC, HWND>;  // widgets may outlive statics
  return *dcs;
}

HDC OpenWindowDC(WindowRecord& window, const QRegion& clip) {
  const HWND handle = window.handle;
  platform::RefreshSurface(window);
  QImage& surface = window.surface.image;
  const HDC dc = platform::CreateWindowSurfaceDC(
      surface.isNull() ? nullptr : &surface, surface.devicePixelRatio(), clip, [handle](const QRect& drawn) {
        const WindowRecord* record = FindWindowRecord(handle);
        // Inside Qt's own painting the surface is shown right after.
        if (record != nullptr && record->client && !record->inQtPaint) record->client->update(drawn);
      });
  if (dc == nullptr) return dc;
  platform::SetKeptSurface(dc, &window.surface);
  WindowDCs()[dc] = handle;
  return dc;
}

void CloseWindowDC(HDC dc) {
  if (WindowDCs().erase(dc) != 0) platform::DestroySurfaceDC(dc);
}

QRect ToQRect(const RECT& rect) {
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

RECT ToRect(const QRect& rect) {
  return {rect.left(), rect.top(), rect.right() + 1, rect.bottom() + 1};
}

}  // namespace

namespace platform {

bool InsideQtPaint() {
  return g_qtPaints > 0;
}

void ResizeSurface(WindowRecord& window) {
  const double scale = window.client->devicePixelRatioF();
  const QSize size(static_cast<int>(std::ceil(window.client->width() * scale)),
                   static_cast<int>(std::ceil(window.client->height() * scale)));
  if (size == window.surfaceSize && scale == window.surfaceScale) return;
  const QRect area(QPoint(0, 0), window.client->size());
  QRegion uncovered = area;
  const bool redrawAll = (window.windowClass->style & (CS_HREDRAW | CS_VREDRAW)) != 0;
  if (scale == window.surfaceScale && !redrawAll) {
    const QSize kept(static_cast<int>(window.surfaceSize.width() / scale),
                     static_cast<int>(window.surfaceSize.height() / scale));
    uncovered -= QRect(QPoint(0, 0), kept);
  }
  window.surfaceSize = size;
  window.surfaceScale = scale;
  window.invalid &= area;
  InvalidateRegion(window, uncovered, true);
  const bool drawnOn = std::any_of(WindowDCs().begin(), WindowDCs().end(),
                                   [&](const auto& open) { return open.second == window.handle; });
  if (drawnOn) RefreshSurface(window);
}

void RefreshSurface(WindowRecord& window) {
  const QImage& former = window.surface.image;
  if (former.size() == window.surfaceSize && former.devicePixelRatio() == window.surfaceScale) return;
  const QRect area(QPoint(0, 0), window.client->size());
  QImage surface(window.surfaceSize, QImage::Format_RGB32);
  const bool sameScale = former.devicePixelRatio() == window.surfaceScale;
  if (!surface.isNull() && !former.isNull() && sameScale && !(QRegion(area) - window.invalid).isEmpty()) {
    QPainter painter(&surface);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    QImage pixels = former;
    pixels.setDevicePixelRatio(1);
    painter.drawImage(0, 0, pixels);
  }
  surface.setDevicePixelRatio(window.surfaceScale);
  window.surface.Set(surface);
  for (const auto& [dc, handle] : WindowDCs())
    if (handle == window.handle)
      SetWindowSurface(dc, surface.isNull() ? nullptr : &window.surface.image, window.surfaceScale,
                       QRegion(area));
}

void InvalidateRegion(WindowRecord& window, const QRegion& region, bool erase) {
  const QRegion inside = region & QRect(QPoint(0, 0), window.client->size());
  if (inside.isEmpty()) return;
  window.invalid += inside;
  window.eraseInvalid = window.eraseInvalid || erase;
  window.client->update(inside);
}

void PaintInvalid(HWND handle) {
  FindWindowRecord(handle)->paintBegun = false;
  SendGuarded(handle, WM_PAINT, 0, 0);
  WindowRecord* window = FindWindowRecord(handle);
  // A program that paints without BeginPaint would be asked again for ever.
  if (window != nullptr && !window->paintBegun) ValidateRect(handle, nullptr);
}

void ForgetWindowDCs(HWND window) {
  for (auto it = WindowDCs().begin(); it != WindowDCs().end();) {
    const auto [dc, owner] = *it;
    ++it;
    if (owner == window) CloseWindowDC(dc);
  }
}

void ClientWidget::paintEvent(QPaintEvent* event) {
  WindowRecord* window = FindWindowRecord(m_window);
  if (window == nullptr || window->control) return;
  if (window->surfaceScale != devicePixelRatioF()) ResizeSurface(*window);  // moved to another screen
  const QRegion painted = window->invalid;
  if (!painted.isEmpty() && window->paintDepth == 0) {
    window->inQtPaint = true;
    ++g_qtPaints;
    PaintInvalid(m_window);
    --g_qtPaints;
    window = FindWindowRecord(m_window);
    if (window == nullptr) return;
    window->inQtPaint = false;
  }
  RefreshSurface(*window);
  QPainter painter(this);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(QPoint(0, 0), window->surface.image);
  // What was painted beyond what Qt shows now is shown next time.
  const QRegion rest = painted - event->region();
  if (!rest.isEmpty()) update(rest);
}

}  // namespace platform

BOOL InvalidateRect(HWND handle, const RECT* rect, BOOL erase) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || !window->client) return FALSE;
  platform::InvalidateRegion(*window, rect == nullptr ? window->client->rect() : ToQRect(*rect), erase != 0);
  return TRUE;
}

BOOL ValidateRect(HWND handle, const RECT* rect) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return FALSE;
  window->invalid = rect == nullptr ? QRegion() : window->invalid - ToQRect(*rect);
  if (window->invalid.isEmpty()) window->eraseInvalid = false;
  return TRUE;
}

BOOL GetUpdateRect(HWND handle, RECT* rect, BOOL) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (rect != nullptr) *rect = {};
  if (window == nullptr || window->invalid.isEmpty()) return FALSE;
  if (rect != nullptr) *rect = ToRect(window->invalid.boundingRect());
  return TRUE;
}

BOOL UpdateWindow(HWND handle) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return FALSE;
  if (window->invalid.isEmpty() || window->paintDepth != 0 || IsWindowVisible(handle) == 0) return TRUE;
  platform::PaintInvalid(handle);
  window = FindWindowRecord(handle);
  if (window != nullptr && window->client && !window->inQtPaint) window->client->repaint();
  return TRUE;
}

HDC BeginPaint(HWND handle, PAINTSTRUCT* paint) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || paint == nullptr) return nullptr;
  const QRegion invalid = std::exchange(window->invalid, QRegion());
  const bool erase = std::exchange(window->eraseInvalid, false);
  window->paintBegun = true;
  ++window->paintDepth;
  paint->hdc = OpenWindowDC(*window, invalid);
  paint->rcPaint = invalid.isEmpty() ? RECT{} : ToRect(invalid.boundingRect());
  paint->fErase = FALSE;
  if (erase) paint->fErase = SendMessage(handle, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0) == 0;
  return paint->hdc;
}

BOOL EndPaint(HWND handle, const PAINTSTRUCT* paint) {
  if (paint == nullptr) return FALSE;
  CloseWindowDC(paint->hdc);
  WindowRecord* window = FindWindowRecord(handle);
  if (window != nullptr && window->paintDepth > 0) --window->paintDepth;
  return TRUE;
}

HDC GetDC(HWND handle) {
  if (handle == nullptr) return platform::CreateWindowSurfaceDC(nullptr, 1, QRegion(), {});
  WindowRecord* window = FindWindowRecord(handle);
  return window == nullptr || !window->client ? nullptr : OpenWindowDC(*window, window->client->rect());
}

int ReleaseDC(HWND handle, HDC dc) {
  if (handle == nullptr) return platform::DestroySurfaceDC(dc) ? 1 : 0;
  const auto found = WindowDCs().find(dc);
  if (found == WindowDCs().end() || found->second != handle) return 0;
  CloseWindowDC(dc);
  return 1;
}
