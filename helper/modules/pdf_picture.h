#pragma once

#include <optional>
#include <qpdf/QPDFPageObjectHelper.hh>

namespace helper {

/// The one picture that a page consists of.
struct PagePicture {
  QPDFObjectHandle image;
  int perspective = 1;     ///< as TIFF and Exif count
  double widthPoints = 0;  ///< of the picture's own sides
  double heightPoints = 0;
};

/// Nothing if the page is anything else than one upright picture that fills it; hidden text may lie beside
/// it.
std::optional<PagePicture> FindPagePicture(QPDFPageObjectHelper page);

}  // namespace helper
