#include "platform/graphics/detail/window_surface.h"

#include <cstdlib>
#include <cstring>

namespace platform {
namespace {

constexpr std::size_t kSpareParts = 8;  ///< the room left for moves is such a part of the surface

std::size_t SizeOf(const QImage& image) {
  return static_cast<std::size_t>(image.sizeInBytes()) / sizeof(std::uint32_t);
}

QImage ImageAt(std::uint32_t* pixels, const QImage& like) {
  QImage image(reinterpret_cast<uchar*>(pixels), like.width(), like.height(), like.bytesPerLine(),
               like.format());
  image.setDevicePixelRatio(like.devicePixelRatio());
  return image;
}

}  // namespace

void WindowSurface::Set(const QImage& pixels) {
  image = pixels;
  mark = {};
  m_room.reset();
  m_roomSize = 0;
}

/// The image leaves the block if somebody has shared it and Qt gave it pixels of its own.
bool WindowSurface::MakeRoom() {
  const std::size_t size = SizeOf(image);
  const auto* pixels = reinterpret_cast<const std::uint32_t*>(image.constBits());
  const bool inside = m_room && pixels >= m_room.get() && pixels + size <= m_room.get() + m_roomSize;
  if (inside) return true;
  m_roomSize = size + size / kSpareParts;
  auto room = std::make_unique_for_overwrite<std::uint32_t[]>(m_roomSize);
  std::memcpy(room.get(), pixels, size * sizeof *pixels);
  image = ImageAt(room.get(), image);
  m_room = std::move(room);
  return true;
}

bool WindowSurface::Move(int dx, int dy) {
  if (image.isNull()) return false;
  const auto size = static_cast<std::ptrdiff_t>(SizeOf(image));
  const std::ptrdiff_t shift = -(dy * (image.bytesPerLine() / std::ptrdiff_t{4}) + dx);
  if (std::abs(shift) > size / static_cast<std::ptrdiff_t>(kSpareParts) || !MakeRoom()) return false;
  auto* pixels = reinterpret_cast<std::uint32_t*>(image.bits());
  const std::ptrdiff_t last = static_cast<std::ptrdiff_t>(m_roomSize) - size;
  std::ptrdiff_t begin = pixels - m_room.get() + shift;
  if (begin < 0 || begin > last) {
    begin = shift > 0 ? 0 : last;
    std::uint32_t* target = m_room.get() + begin;
    // Of what is seen at the new place only that part is there already.
    const std::ptrdiff_t kept = size - std::abs(shift);
    std::memmove(target + (shift > 0 ? 0 : -shift), pixels + (shift > 0 ? shift : 0),
                 static_cast<std::size_t>(kept) * sizeof *pixels);
  }
  image = ImageAt(m_room.get() + begin, image);
  return true;
}

}  // namespace platform
