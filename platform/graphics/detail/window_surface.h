#pragma once

#include <QtGui/QImage>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/graphics/surface.h"

namespace platform {

/// What a window shows. A scroll moves it as a whole: the image then begins elsewhere in a block that is a
/// bit larger, and only at the block's end its pixels are copied.
class WindowSurface {
 public:
  QImage image;
  SurfaceMark mark;

  void Set(const QImage& pixels);
  /// What comes in at an edge is anything. False: it doesn't go, and all is as before.
  bool Move(int dx, int dy);

 private:
  bool MakeRoom();

  std::unique_ptr<std::uint32_t[]> m_room;  ///< none before the first move
  std::size_t m_roomSize = 0;
};

}  // namespace platform
