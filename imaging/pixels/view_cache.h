#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "imaging/pixels/scaler.h"

namespace imaging {

/// A bitmap as it is painted: the pixels, their record's order and the scale.
struct Picture {
  const PixelStorage& pixels;
  int order;
  Scaling scaling;
};

/// A rectangle of the scaled picture, and what of it needn't be drawn.
struct PartToDraw {
  RECT rect;
  RECT there{};
};

/// The visible part of one scaled picture. Pixel (x, y) of the picture stands at (x mod width, y mod height)
/// of the buffer, so that scrolling replaces what went out of view and moves nothing.
class ScaledView {
 public:
  bool IsOf(const Picture& picture) const;
  bool IsOfStorage(std::uint64_t serial) const { return m_serial == serial; }
  std::size_t Capacity() const { return m_width * m_height; }
  /// Forgets the former picture and makes room for a part of this size.
  void Reset(const Picture& picture, std::size_t width, std::size_t height);
  std::uint64_t Number() const { return m_number; }
  /// Renders what is missing of the part and copies out all but what stands there already. Gives the count of
  /// pixels rendered.
  std::size_t Draw(const Picture& picture, const PartToDraw& part, std::uint32_t* out, std::ptrdiff_t stride);
  bool Fits(const RECT& part) const;
  /// A small part away from a large view isn't worth losing the view.
  bool IsWorthKeeping(const RECT& part) const;

 private:
  std::size_t Bring(const Picture& picture, const RECT& part);
  std::size_t Render(const Picture& picture, const RECT& area);
  void CopyOut(const RECT& part, std::uint32_t* out, std::ptrdiff_t stride);
  template <typename Visit>
  void ForPieces(const RECT& area, Visit visit);

  std::uint64_t m_number = 0;  ///< another one for each picture
  std::uint64_t m_serial = 0;
  std::uint64_t m_revision = 0;
  int m_order = 0;
  Scaling m_scaling;
  RECT m_valid{};
  std::size_t m_width = 0;
  std::size_t m_height = 0;
  std::unique_ptr<std::uint32_t[]> m_buffer;
};

/// Keeps the visible parts of the pictures painted last, so that a repaint is a copy and a scroll renders the
/// newly exposed strip alone. Notices changed pixels by the storage's revision.
class ViewCache {
 public:
  static ViewCache& Instance();
  /// Draws a rectangle of the scaled picture; out is the place of its first pixel. Gives a number that stands
  /// for this picture, its pixels unchanged, at this scale; 0: nothing is kept of it.
  std::uint64_t Draw(const Picture& picture, const PartToDraw& part, std::uint32_t* out,
                     std::ptrdiff_t stride);
  /// The number that Draw gave, while the view is kept.
  std::uint64_t NumberOf(const Picture& picture) const;
  /// Gives back the memory kept for a storage that ends.
  static void Drop(std::uint64_t serial) noexcept;
  std::uint64_t RenderedPixels() const { return m_rendered; }  ///< since the process began

 private:
  ScaledView* ViewFor(const Picture& picture, const RECT& part);

  /// Made by the first paint, never ended: storages may outlive the process' statics.
  static std::atomic<ViewCache*> s_instance;
  /// One thread paints, but storages end on those that decode, too, and within a paint.
  mutable std::recursive_mutex m_mutex;
  std::vector<std::unique_ptr<ScaledView>> m_views;  ///< the one used last stands last
  std::uint64_t m_rendered = 0;
};

}  // namespace imaging
