#pragma once

#include "imaging/ltwrap.h"
#include "platform/base/geometry.h"

namespace thumbs {

/// Fills an empty record with the mark of a page that can't be shown, as large as the room.
void DrawCrossedBox(struct_LEAD_Bitmap* picture, SIZE room);

/// A small picture of a page of a document, or of none. It frees what it holds. The functions throw what the
/// imaging service throws. The page keeps its pixels.
class PagePicture {
 public:
  PagePicture() = default;
  PagePicture(const PagePicture&) = delete;
  PagePicture& operator=(const PagePicture&) = delete;
  ~PagePicture();

  /// Of an empty picture: the page scaled to the room (FitLongerSide). A bilevel page that is reduced gets
  /// shades.
  void MakeOfCopy(struct_LEAD_Bitmap& page, SIZE room);
  /// The same without a copy at full size.
  void MakeScaled(struct_LEAD_Bitmap& page, SIZE room);
  /// The mark of a page that can't be shown, as large as the room.
  void MakeCrossedBox(SIZE room);

  /// Stays this object's.
  struct_LEAD_Bitmap* Bitmap() { return &m_bitmap; }

 private:
  bool Reduce(struct_LEAD_Bitmap& page, double factor);

  struct_LEAD_Bitmap m_bitmap{};
  HPALETTE m_palette = nullptr;  ///< of its own; a copied header shows the page's
};

}  // namespace thumbs
