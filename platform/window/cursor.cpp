#include <QCursor>
#include <map>
#include <memory>
#include <utility>

#include "platform/base/handle_table.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/pump.h"

namespace {

platform::HandleTable<QCursor, HCURSOR>& Cursors() {
  static auto* table = new platform::HandleTable<QCursor, HCURSOR>;  // lives as long as any window
  return *table;
}

HCURSOR g_cursor = nullptr;

HCURSOR SystemCursor(std::uintptr_t id) {
  static const std::map<std::uintptr_t, Qt::CursorShape> shapes = {
      {32512, Qt::ArrowCursor},   {32513, Qt::IBeamCursor},     {32514, Qt::WaitCursor},
      {32515, Qt::CrossCursor},   {32642, Qt::SizeFDiagCursor}, {32644, Qt::SizeHorCursor},
      {32645, Qt::SizeVerCursor}, {32646, Qt::SizeAllCursor}};
  static std::map<std::uintptr_t, HCURSOR> loaded;
  const auto shape = shapes.find(id);
  if (shape == shapes.end()) return nullptr;
  HCURSOR& cursor = loaded[id];
  if (cursor == nullptr) cursor = Cursors().Add(std::make_unique<QCursor>(shape->second));
  return cursor;
}

}  // namespace

HCURSOR LoadCursor(HINSTANCE instance, LPCSTR name) {
  platform::EnsureApplication();
  return instance == nullptr ? SystemCursor(reinterpret_cast<std::uintptr_t>(name)) : nullptr;
}

HCURSOR SetCursor(HCURSOR cursor) {
  const HCURSOR former = std::exchange(g_cursor, cursor);
  POINT pointer;
  GetCursorPos(&pointer);
  const HWND target = GetCapture() != nullptr ? GetCapture() : WindowFromPoint(pointer);
  const platform::WindowRecord* window = platform::FindWindowRecord(target);
  if (window == nullptr || !window->client) return former;
  const QCursor* shape = Cursors().Get(cursor);
  window->client->setCursor(shape == nullptr ? QCursor(Qt::BlankCursor) : *shape);
  return former;
}

HCURSOR GetCursor() {
  return g_cursor;
}
