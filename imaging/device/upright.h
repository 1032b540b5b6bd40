#pragma once

#include <memory>
#include <utility>

#include "imaging/pixels/orient.h"
#include "imaging/pixels/record.h"

namespace imaging {

/// A picture to draw: the bitmap itself, or an upright copy of one whose file says that it is stored turned.
class Upright {
 public:
  /// Throws if there are no pixels; operation names what was to be done, for the text.
  Upright(Bitmap* bitmap, const char* operation) : m_shown(bitmap) {
    const PixelStorage& pixels = RequirePixels(bitmap, operation);
    const Turn turn = TurnToNormal(bitmap->ViewPerspective);
    if (turn.IsNone()) return;
    m_turned = Turned(pixels, turn);
    m_copy = *bitmap;
    m_copy.ViewPerspective = 0;
    m_copy.Width = m_turned->Width();
    m_copy.Height = m_turned->Height();
    m_copy.pStorage = m_turned.get();
    if (turn.transpose) std::swap(m_copy.XResolution, m_copy.YResolution);
    m_shown = &m_copy;
  }
  Upright(const Upright&) = delete;
  Upright& operator=(const Upright&) = delete;
  ~Upright() = default;

  Bitmap* Get() const { return m_shown; }

 private:
  std::unique_ptr<PixelStorage> m_turned;
  Bitmap m_copy{};
  Bitmap* m_shown;
};

}  // namespace imaging
