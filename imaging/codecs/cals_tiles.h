#pragma once

#include <cstdint>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/fax_page.h"

namespace imaging {

/// What a CALS file of type II holds: the content portion of a document of the Open Document Architecture, in
/// the raster coding of ITU-T T.417. There was no file of another writer to try.
struct CalsTiles {
  int width = 0;  ///< of the picture; 0: as the records of text say
  int height = 0;
  int tileWidth = 0;  ///< 0: not in tiles
  int tileHeight = 0;
  std::vector<int> types;  ///< by rows of tiles; none: all are coded
  FaxData coded{{}};       ///< of the tiles that are coded, one behind the other, each on a whole byte
};

/// Throws if there is no content portion with a picture behind the offset.
CalsTiles ReadCalsTiles(const Source& source, std::int64_t offset);

/// Draws the tiles on white; gives the count of rows of tiles, and of the picture, that are damaged.
int DecodeCalsTiles(const CalsTiles& tiles, PixelStorage& pixels);

}  // namespace imaging
