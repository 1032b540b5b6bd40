#include "imaging/pixels/view_cache.h"

#include <algorithm>
#include <cstring>

namespace imaging {
namespace {

constexpr std::size_t kMaxViews = 4;
constexpr std::size_t kMaxPixels = std::size_t{1} << 23;  // of all views: one screen of 3840 by 2160
constexpr LONG kBandRows = 48;
constexpr std::size_t kGrowth = 128;  // a window that is drawn larger makes a new buffer now and then

std::size_t RoundUp(std::size_t length) {
  return (length + kGrowth - 1) / kGrowth * kGrowth;
}

std::size_t WidthOf(const RECT& r) {
  return static_cast<std::size_t>(std::max(0, r.right - r.left));
}
std::size_t HeightOf(const RECT& r) {
  return static_cast<std::size_t>(std::max(0, r.bottom - r.top));
}
std::size_t AreaOf(const RECT& r) {
  return WidthOf(r) * HeightOf(r);
}

RECT Intersect(const RECT& a, const RECT& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

bool Contains(const RECT& outer, const RECT& inner) {
  return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
         outer.bottom >= inner.bottom;
}

/// Calls visit with the pieces of a rectangle around an inner one, which may be empty.
template <typename Visit>
void ForBorders(const RECT& outer, const RECT& inner, Visit visit) {
  if (AreaOf(inner) == 0) {
    visit(outer);
    return;
  }
  visit(RECT{outer.left, outer.top, outer.right, inner.top});
  visit(RECT{outer.left, inner.bottom, outer.right, outer.bottom});
  visit(RECT{outer.left, inner.top, inner.left, inner.bottom});
  visit(RECT{inner.right, inner.top, outer.right, inner.bottom});
}

/// What stays of the valid interval when it grows by a part that overlaps or touches it, within a capacity.
void Trim(LONG& begin, LONG& end, LONG partBegin, LONG partEnd, std::size_t capacity) {
  const auto room = static_cast<LONG>(capacity);
  begin = std::max(begin, partEnd - room);
  end = std::min(end, partBegin + room);
}

}  // namespace

bool ScaledView::IsOf(const Picture& picture) const {
  return m_serial == picture.pixels.Serial() && m_revision == picture.pixels.Revision() &&
         m_order == picture.order && m_scaling == picture.scaling;
}

bool ScaledView::Fits(const RECT& part) const {
  return WidthOf(part) <= m_width && HeightOf(part) <= m_height;
}

bool ScaledView::IsWorthKeeping(const RECT& part) const {
  return Contains(m_valid, part) || AreaOf(part) * 4 >= AreaOf(m_valid);
}

void ScaledView::Reset(const Picture& picture, std::size_t width, std::size_t height) {
  static std::uint64_t last = 0;
  m_number = ++last;
  m_valid = {};
  if (width > m_width || height > m_height) {
    m_width = std::max(m_width, RoundUp(width));
    m_height = std::max(m_height, RoundUp(height));
    m_buffer.reset();
    m_buffer = std::make_unique_for_overwrite<std::uint32_t[]>(m_width * m_height);
  }
  m_serial = picture.pixels.Serial();
  m_revision = picture.pixels.Revision();
  m_order = picture.order;
  m_scaling = picture.scaling;
}

/// Calls visit with each piece of the area that stands in one place of the buffer, and that place.
template <typename Visit>
void ScaledView::ForPieces(const RECT& area, Visit visit) {
  for (LONG y = area.top; y < area.bottom;) {
    const std::size_t row = static_cast<std::size_t>(y) % m_height;
    const LONG bottom = std::min(area.bottom, y + static_cast<LONG>(m_height - row));
    for (LONG x = area.left; x < area.right;) {
      const std::size_t column = static_cast<std::size_t>(x) % m_width;
      const LONG right = std::min(area.right, x + static_cast<LONG>(m_width - column));
      visit(RECT{x, y, right, bottom}, m_buffer.get() + row * m_width + column);
      x = right;
    }
    y = bottom;
  }
}

std::size_t ScaledView::Render(const Picture& picture, const RECT& area) {
  ForPieces(area, [&](const RECT& piece, std::uint32_t* at) {
    RenderScaled(picture.pixels, picture.order, picture.scaling, piece, at,
                 static_cast<std::ptrdiff_t>(m_width));
  });
  return AreaOf(area);
}

std::size_t ScaledView::Bring(const Picture& picture, const RECT& part) {
  if (Contains(m_valid, part)) return 0;
  RECT keep = Intersect(m_valid, part);
  RECT grown = part;
  // Along one axis the view grows by the part and may stay larger than it; otherwise it becomes the part.
  if (part.left >= m_valid.left && part.right <= m_valid.right && part.top <= m_valid.bottom &&
      part.bottom >= m_valid.top) {
    keep = {part.left, m_valid.top, part.right, m_valid.bottom};
    Trim(keep.top, keep.bottom, part.top, part.bottom, m_height);
    grown.top = std::min(part.top, keep.top);
    grown.bottom = std::max(part.bottom, keep.bottom);
  } else if (part.top >= m_valid.top && part.bottom <= m_valid.bottom && part.left <= m_valid.right &&
             part.right >= m_valid.left) {
    keep = {m_valid.left, part.top, m_valid.right, part.bottom};
    Trim(keep.left, keep.right, part.left, part.right, m_width);
    grown.left = std::min(part.left, keep.left);
    grown.right = std::max(part.right, keep.right);
  }
  if (AreaOf(keep) == 0) {
    keep = {part.left, part.top, part.left, part.top};
    grown = part;
  }
  // The new pixels take the place of those outside the kept part.
  m_valid = keep;
  std::size_t rendered = 0;
  ForBorders(grown, keep, [&](const RECT& border) { rendered += Render(picture, border); });
  m_valid = grown;
  return rendered;
}

std::size_t ScaledView::Draw(const Picture& picture, const PartToDraw& part, std::uint32_t* out,
                             std::ptrdiff_t stride) {
  const RECT& rect = part.rect;
  if (AreaOf(Intersect(m_valid, rect)) != 0) {
    const std::size_t rendered = Bring(picture, rect);
    ForBorders(rect, Intersect(rect, part.there), [&](const RECT& border) {
      CopyOut(border, out + (border.top - rect.top) * stride + (border.left - rect.left), stride);
    });
    return rendered;
  }
  // All of it is new: each band is copied while the processor's cache holds it.
  std::size_t rendered = 0;
  RECT band = rect;
  for (; band.top < rect.bottom; band.top = band.bottom) {
    band.bottom = std::min(rect.bottom, band.top + kBandRows);
    rendered += Bring(picture, band);
    CopyOut(band, out + (band.top - rect.top) * stride, stride);
  }
  return rendered;
}

void ScaledView::CopyOut(const RECT& part, std::uint32_t* out, std::ptrdiff_t stride) {
  ForPieces(part, [&](const RECT& piece, const std::uint32_t* at) {
    std::uint32_t* target = out + (piece.top - part.top) * stride + (piece.left - part.left);
    for (LONG y = piece.top; y < piece.bottom; ++y, target += stride, at += m_width)
      std::memcpy(target, at, WidthOf(piece) * sizeof *target);
  });
}

std::atomic<ViewCache*> ViewCache::s_instance = nullptr;

ViewCache& ViewCache::Instance() {
  if (s_instance == nullptr) s_instance = new ViewCache;
  return *s_instance;
}

ScaledView* ViewCache::ViewFor(const Picture& picture, const RECT& part) {
  const std::size_t needed = RoundUp(WidthOf(part)) * RoundUp(HeightOf(part));
  if (needed > kMaxPixels) return nullptr;
  auto found =
      std::find_if(m_views.begin(), m_views.end(), [&](const auto& view) { return view->IsOf(picture); });
  if (found != m_views.end() && !(*found)->IsWorthKeeping(part)) return nullptr;
  if (found == m_views.end())
    found = std::find_if(m_views.begin(), m_views.end(),
                         [&](const auto& view) { return view->IsOfStorage(picture.pixels.Serial()); });
  auto view = std::make_unique<ScaledView>();
  if (found != m_views.end()) {
    view = std::move(*found);
    m_views.erase(found);
  }
  if (!view->IsOf(picture) || !view->Fits(part)) view->Reset(picture, WidthOf(part), HeightOf(part));
  std::size_t total = view->Capacity();
  for (const auto& other : m_views) total += other->Capacity();
  while (!m_views.empty() && (total > kMaxPixels || m_views.size() >= kMaxViews)) {
    total -= m_views.front()->Capacity();
    m_views.erase(m_views.begin());
  }
  m_views.push_back(std::move(view));
  return m_views.back().get();
}

std::uint64_t ViewCache::Draw(const Picture& picture, const PartToDraw& part, std::uint32_t* out,
                              std::ptrdiff_t stride) {
  const std::lock_guard lock(m_mutex);
  ScaledView* view = ViewFor(picture, part.rect);
  if (view != nullptr) {
    m_rendered += view->Draw(picture, part, out, stride);
    return view->Number();
  }
  RenderScaled(picture.pixels, picture.order, picture.scaling, part.rect, out, stride);
  m_rendered += AreaOf(part.rect);
  return 0;
}

std::uint64_t ViewCache::NumberOf(const Picture& picture) const {
  const std::lock_guard lock(m_mutex);
  const auto found =
      std::find_if(m_views.begin(), m_views.end(), [&](const auto& view) { return view->IsOf(picture); });
  return found == m_views.end() ? 0 : (*found)->Number();
}

// Storages end in destructors, where nothing may be allocated: no cache is made for this.
void ViewCache::Drop(std::uint64_t serial) noexcept {
  ViewCache* const cache = s_instance;
  if (cache == nullptr) return;
  const std::lock_guard lock(cache->m_mutex);
  std::erase_if(cache->m_views, [serial](const auto& view) { return view->IsOfStorage(serial); });
}

}  // namespace imaging
