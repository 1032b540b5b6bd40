#pragma once

#include <cstdint>
#include <vector>

#include "imaging/core/source.h"

namespace imaging {

/// Where a frame stands in the file and on the screen.
struct GifFrame {
  std::int64_t start = 0;  ///< offset of its first block, an extension or the descriptor
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  int disposal = 0;  ///< GIF89a, section 23
  bool hasTransparent = false;
  /// The last frame up to this one before which the screen doesn't count: it is empty, or all of it is drawn
  /// over. The pictures up to this frame can be composed from there on.
  int composedFrom = 1;
};

/// The frames of a GIF file, found block by block without unpacking any, as far as they were asked for.
class GifFrames {
 public:
  /// screen: its size in pixels; begin: offset behind the global colour table.
  GifFrames(int width, int height, std::int64_t begin) : m_width(width), m_height(height), m_next(begin) {}
  /// Counts from 1; null where the file has no such frame, or is damaged before it.
  const GifFrame* Find(const Source& source, int number);
  int Count(const Source& source);

 private:
  void ReadUpTo(const Source& source, std::size_t count);
  bool ReadFrame(ByteReader& reader);
  bool Covers(const GifFrame& frame) const {
    return frame.left == 0 && frame.top == 0 && frame.width == m_width && frame.height == m_height;
  }

  int m_width;
  int m_height;
  std::int64_t m_next;  ///< offset of the blocks that were not looked at yet
  bool m_complete = false;
  int m_composedFrom = 1;  ///< of the next frame, unless it covers the screen
  std::vector<GifFrame> m_frames;
};

}  // namespace imaging
