#pragma once

#include <functional>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/core/exception.h"

namespace imaging {

/// A page of a plain raster as its header tells it, and what makes pixels of the bytes behind. All else is
/// alike for these kinds: limits, colour tables, the order of rows, rows that a cut file lacks.
struct RasterPage {
  PageInfo info;
  int memoryBits = 8;           ///< 1, 4, 8, 24 or 32
  std::vector<RGBQUAD> colors;  ///< of 1 to 8 bits; none: grey from black to white
  std::int64_t dataOffset = 0;
  int expansion =
      64;  ///< how many bytes the coding makes of one at most; 64 for a plain file that is cut off
  bool bottomUp = false;
  /// Makes the next row in the order of the file. False: nothing sound is left in it.
  std::function<bool(ByteReader& data, std::uint8_t* row)> nextRow;
};

/// A page of that depth in the file and in memory. Throws for a size that can't be.
RasterPage MakePage(const Source& source, FileFormat format, std::int64_t width, std::int64_t height,
                    int bits, const char* compression);

using RasterParser = RasterPage (*)(const Source& source);

/// The reader of a kind with one page, which the parser makes of its header anew for each call.
std::unique_ptr<Reader> OpenRaster(const Source& source, RasterParser parse);

template <RasterParser parse>
std::unique_ptr<Reader> OpenRasterAs(const Source& source) {
  return OpenRaster(source, parse);
}

/// Pictures that stand one after another in a file, each a page of its own.
struct AlbumPart {
  std::int64_t offset;
  std::int64_t size;
};
/// Opens page 1 of what a part holds when the page is asked for, and reports it under the album's code.
std::unique_ptr<Reader> OpenAlbum(const Source& source, std::vector<AlbumPart> parts, int format,
                                  std::unique_ptr<Reader> (*open)(const Source& part));

/// A header of a fixed size.
template <std::size_t size>
std::array<std::uint8_t, size> ReadHeader(const Source& source, std::int64_t offset = 0) {
  std::array<std::uint8_t, size> header;
  if (!source.ReadExactly(offset, header))
    Fail(kErrorCorrupt, "%s: the header is cut off", source.Name().c_str());
  return header;
}

}  // namespace imaging
