#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <map>
#include <memory>
#include <utility>

#include "platform/base/detail/handle_table.h"
#include "platform/resources/detail/find.h"
#include "platform/resources/detail/picture.h"
#include "platform/window/detail/cursors.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/pump.h"

namespace {

/// Cursors and icons share one kind of handle.
struct PointerPicture {
  UINT number = 0;
  QCursor cursor;
  QIcon icon;
};

platform::HandleTable<PointerPicture, HCURSOR>& Pictures() {
  static auto* table = new platform::HandleTable<PointerPicture, HCURSOR>;  // lives as long as any window
  return *table;
}

/// What has been loaded: a module's cursor or icon has one handle, however often it is asked for.
using LoadedKey = std::pair<HINSTANCE, std::uintptr_t>;

HCURSOR g_cursor = nullptr;

QPixmap PixmapOf(const platform::Picture* picture) {
  const platform::PicturePixels pixels = platform::ReadPicture(picture);
  if (pixels.height == 0) return {};
  const auto* bytes = reinterpret_cast<const uchar*>(pixels.argb.data());
  const QImage image(bytes, pixels.width, pixels.height, pixels.width * 4, QImage::Format_ARGB32);
  return QPixmap::fromImage(image);
}

PointerPicture SystemCursor(std::uintptr_t id) {
  static const std::map<std::uintptr_t, Qt::CursorShape> shapes = {
      {32512, Qt::ArrowCursor},   {32513, Qt::IBeamCursor},     {32514, Qt::WaitCursor},
      {32515, Qt::CrossCursor},   {32642, Qt::SizeFDiagCursor}, {32644, Qt::SizeHorCursor},
      {32645, Qt::SizeVerCursor}, {32646, Qt::SizeAllCursor}};
  const auto shape = shapes.find(id);
  if (shape == shapes.end()) return {};
  return {static_cast<UINT>(id), QCursor(shape->second), {}};
}

PointerPicture ResourceCursor(HINSTANCE instance, LPCSTR name) {
  const platform::CursorResource* resource = platform::FindCursorResource(instance, name);
  if (resource == nullptr) return {};
  const QPixmap pixmap = PixmapOf(resource->picture);
  if (pixmap.isNull()) return {};
  return {resource->id, QCursor(pixmap, resource->hotSpot.x, resource->hotSpot.y), {}};
}

PointerPicture ResourceIcon(HINSTANCE instance, LPCSTR name) {
  const platform::IconResource* resource = platform::FindIconResource(instance, name);
  if (resource == nullptr) return {};
  const QPixmap pixmap = PixmapOf(resource->picture);
  if (pixmap.isNull()) return {};
  return {resource->id, {}, QIcon(pixmap)};
}

/// The handle that was given out before, or a new one for what load makes.
template <typename Load>
HCURSOR LoadOnce(std::map<LoadedKey, HCURSOR>& loaded, const LoadedKey& key, Load load) {
  platform::EnsureApplication();
  const auto known = loaded.find(key);
  if (known != loaded.end()) return known->second;
  auto picture = std::make_unique<PointerPicture>(load());
  if (picture->number == 0) return nullptr;
  return loaded[key] = Pictures().Add(std::move(picture));
}

}  // namespace

QIcon platform::IconOf(HICON icon) {
  const PointerPicture* picture = Pictures().Get(icon);
  return picture == nullptr ? QIcon() : picture->icon;
}

UINT platform::CursorNumber(HCURSOR cursor) {
  const PointerPicture* picture = Pictures().Get(cursor);
  return picture == nullptr ? 0 : picture->number;
}

HCURSOR LoadCursor(HINSTANCE instance, LPCSTR name) {
  static std::map<LoadedKey, HCURSOR> loaded;
  const auto number = reinterpret_cast<std::uintptr_t>(name);
  return LoadOnce(loaded, {instance, number}, [=] {
    return instance == nullptr ? SystemCursor(number) : ResourceCursor(instance, name);
  });
}

HICON LoadIconA(HINSTANCE instance, LPCSTR name) {
  static std::map<LoadedKey, HICON> loaded;
  if (instance == nullptr) return nullptr;
  return LoadOnce(loaded, {instance, reinterpret_cast<std::uintptr_t>(name)},
                  [=] { return ResourceIcon(instance, name); });
}

HCURSOR SetCursor(HCURSOR cursor) {
  const HCURSOR former = std::exchange(g_cursor, cursor);
  POINT pointer;
  GetCursorPos(&pointer);
  const HWND target = GetCapture() != nullptr ? GetCapture() : WindowFromPoint(pointer);
  const platform::WindowRecord* window = platform::FindWindowRecord(target);
  if (window == nullptr || !window->client) return former;
  const PointerPicture* picture = Pictures().Get(cursor);
  window->client->setCursor(picture == nullptr ? QCursor(Qt::BlankCursor) : picture->cursor);
  return former;
}

HCURSOR GetCursor() {
  return g_cursor;
}
