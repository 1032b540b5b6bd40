#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "imaging/pixels/storage.h"

namespace imaging {

/// The logical screen of a GIF file, on which frames are drawn one after the other: red, green, blue and
/// alpha of each pixel. Rectangles may hang over its edges.
class GifCanvas {
 public:
  GifCanvas(int width, int height);
  explicit GifCanvas(const PixelStorage& pixels);

  const PixelStorage& Pixels() const { return *m_pixels; }
  std::unique_ptr<PixelStorage> Take() { return std::move(m_pixels); }
  /// transparent: the index that leaves what is there, or -1.
  void DrawLine(int left, int y, std::span<const std::uint8_t> indices, std::span<const RGBQUAD, 256> colors,
                int transparent);
  void Clear(const RECT& area);
  std::vector<std::uint8_t> Save(const RECT& area) const;
  void Restore(const RECT& area, const std::vector<std::uint8_t>& saved);

 private:
  RECT Within(const RECT& area) const;

  std::unique_ptr<PixelStorage> m_pixels;
};

/// An opaque screen of at most 256 colours as 8 bits; null if it is none.
std::unique_ptr<PixelStorage> ReduceToPalette(const PixelStorage& screen);

/// Screens of one file as they were before some of its frames, as many as a budget of memory holds: the last
/// one and, evenly spread, those that make it cheap to page back.
class GifScreens {
 public:
  GifScreens(int width, int height);
  /// False for a screen of which not even one fits into the budget.
  bool Holds() const { return m_room != 0; }
  /// Whether a copy of the screen before that frame is wanted, beside the last one.
  bool Wants(int number) const { return Holds() && number % m_step == 0 && !m_screens.contains(number); }
  void Keep(int number, std::unique_ptr<PixelStorage> screen);
  /// The same for the one before the page that is likely to be asked for next.
  void KeepLast(int number, std::unique_ptr<PixelStorage> screen);
  /// The latest one before a frame from first to last; its number is written. Null if there is none.
  const PixelStorage* Latest(int first, int last, int& number) const;

 private:
  void Thin();

  std::size_t m_room;  ///< screens
  std::map<int, std::unique_ptr<PixelStorage>> m_screens;
  int m_step = 1;
  int m_last = 0;
};

}  // namespace imaging
