#pragma once

#include <cmath>
#include <utility>

#include "imaging/ltwrap.h"

// What a record's resolution says of its pixels once these aren't the file's any more.
namespace page_as_shown {

/// Dots per inch of `shown` pixels that stand where the file has `stored` ones.
inline int DotsPerInch(int dpi, int shown, int stored) {
  if (stored <= 0 || shown <= 0) return dpi;
  return std::max(1, static_cast<int>(std::lround(static_cast<double>(dpi) * shown / stored)));
}

/// A header of a page that a viewer shows, with the resolution that its pixels have: the viewer has repeated
/// rows or columns to make them square, and may have turned the page, which exchanges the sides. The pixels
/// stay the page's. A page of one resolution, and one that isn't that file's any more, keep what they tell.
inline struct_LEAD_Bitmap Header(const struct_LEAD_Bitmap& page, const struct_file_information& file) {
  struct_LEAD_Bitmap header = page;
  std::pair<int, int> size(file.Width, file.Height);
  std::pair<int, int> dpi(file.XResolution, file.YResolution);
  if (dpi.first == dpi.second) return header;
  if (std::pair(page.YResolution, page.XResolution) == dpi) {
    std::swap(size.first, size.second);
    std::swap(dpi.first, dpi.second);
  }
  if (std::pair(page.XResolution, page.YResolution) != dpi) return header;
  header.XResolution = DotsPerInch(dpi.first, page.Width, size.first);
  header.YResolution = DotsPerInch(dpi.second, page.Height, size.second);
  return header;
}

}  // namespace page_as_shown
